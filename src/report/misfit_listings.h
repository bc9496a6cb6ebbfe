// Responses of those that fit badly: in full, and the most unexpected ones as a grid.
#pragma once

#include "report/report_context.h"

namespace vardento {

// The responses and standardised residuals of each poorly fitting entry: Tables 7.1 and 11.1.
void PrintPoorFitList(ReportContext& context);
// The worst fitting entries against the most unexpected entries of the other side: Tables 6.4 and
// 10.4; the most unexpected entries of both sides: Tables 6.5 and 10.5.
void PrintMisfittingStrings(ReportContext& context);
void PrintUnexpectedResponses(ReportContext& context);

}  // namespace vardento
