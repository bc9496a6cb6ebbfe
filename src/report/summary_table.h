// Table 3.1: the statistics of the sample and of the test as a whole.
#pragma once

#include "report/report_context.h"

namespace vardento {

void PrintSummaryTable(ReportContext& context);

}  // namespace vardento
