// Selection by label: ISELECT= and PSELECT= masks.
#pragma once

#include <string_view>

namespace vardento {

// 1 or 2 when the label fits the mask, a negative code when not. A later piece of work builds it;
// until then every label fits.
int MatchLabel(std::string_view mask, std::string_view label);

}  // namespace vardento
