// Plots of fit: a letter for each person or item, as in the Tables in fit order.
#pragma once

#include "report/report_context.h"

namespace vardento {

// INFIT or OUTFIT over the measure, with the strip of the other side below: Tables 4.1, 5.1, 8.1
// and 9.1.
void PrintInfitPlot(ReportContext& context);
void PrintOutfitPlot(ReportContext& context);
// OUTFIT over INFIT on one scale: Tables 5.2 and 9.2.
void PrintOutfitAgainstInfit(ReportContext& context);

}  // namespace vardento
