// The end of the report: what was written before the Tables goes behind them, and the Control File
// behind that.
#pragma once

#include "run/run.h"

namespace vardento {

// Moves what the report holds so far into the work file "ZFR" and begins the report anew, so that
// the Tables come first.
void SaveReportFront(Run& run);

// Completes and closes the report and says how the run ended. Only the first call does anything.
void FinishRun(Run& run);

}  // namespace vardento
