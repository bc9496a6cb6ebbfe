#include "control/label_mask.h"

namespace vardento {

int MatchLabel(std::string_view, std::string_view) { return 1; }

}  // namespace vardento
