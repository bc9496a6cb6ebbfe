// Principal components of the residuals of items or persons, and the residuals that correlate most:
// Tables 23 and 24.
#pragma once

#include "report/report_context.h"

namespace vardento {

// For each component a page with its plot, and one with its loadings and contrasts: Tables 23.2 and
// 24.2.
void PrintComponents(ReportContext& context);
// Tables 23.1 and 24.1.
void PrintLargestCorrelations(ReportContext& context);

}  // namespace vardento
