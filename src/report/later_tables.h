// Services of the report that are not built yet: named calls in their places, which do nothing.
// Each moves to a file of its own when it is built.
#pragma once

#include "report/report_context.h"

namespace vardento {

// After the run: the statistics comparison, an output file, or the file that takes the Table.
// False when the request ends there.
inline bool BeginAfterRunRequest(ReportContext&) { return true; }
inline void EndAfterRunRequest(ReportContext&) {}

}  // namespace vardento
