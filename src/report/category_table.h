// The category structure of one group of items, laid out: how each category was used,
// where it lies on the scale.
#pragma once

#include "measure/category_structure.h"

namespace vardento {

// The tables of the group: one for two categories, two for more.
void PutCategoryTables(Run& run, const CategoryStructure& structure);

}  // namespace vardento
