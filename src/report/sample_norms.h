// Table 20.3: how the sample spreads over the scores on the complete test, and where each score
// stands in it.
#pragma once

#include "report/report_context.h"

namespace vardento {

void PrintSampleNorms(ReportContext& context);

}  // namespace vardento
