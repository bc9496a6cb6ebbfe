// Selection of items by label, ISELECT=, and the values that IWEIGHT= and IAFILE= name as a field
// of the item labels.
#pragma once

#include "run/run.h"

namespace vardento {

// True when a setting asks for SelectItems.
bool NeedsItemSelection(const Run& run);

// Deletes the items whose labels do not fit ISELECT= and writes the fields of the labels to "ZIW"
// and "ZIA", which then stand in the place of IWEIGHT= and IAFILE=. Needs the item labels.
void SelectItems(Run& run);

}  // namespace vardento
