// The road from a request to the routines that print its Table.
#pragma once

#include "report/report_context.h"

namespace vardento {

// Prints the Table of run.request and clears its slots.
void DispatchTable(ReportContext& context);

}  // namespace vardento
