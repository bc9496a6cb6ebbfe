// Which items a page on response categories is about.
#pragma once

#include "measure/category_structure.h"

namespace vardento {

// The line that tells the group and its active items, and a blank line; nothing when all items
// share one group.
void PutGroupIdentity(Run& run, const CategoryStructure& structure);

}  // namespace vardento
