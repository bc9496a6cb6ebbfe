// Selection of items by label: ISELECT=, and the label fields named by IWEIGHT= and IAFILE=. A
// later piece of work builds it; until then every item stays.
#pragma once

#include "run/run.h"

namespace vardento {

// True when a setting asks for SelectItems.
bool NeedsItemSelection(const ControlSettings& settings);
void SelectItems(Run& run);

}  // namespace vardento
