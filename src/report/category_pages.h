// The pages on how response categories work, a sequence for each group of items.
#pragma once

#include "report/report_context.h"

namespace vardento {

// Table 3.2 and on: what was found of the categories, and their probability curves.
void PrintCategoryStructures(ReportContext& context);
// Table 21: the curves that CURVES= asks for; what was found of the categories stands there with
// STEPT3=N.
void PrintCategoryCurves(ReportContext& context);

}  // namespace vardento
