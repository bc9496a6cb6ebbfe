// Tables 30 and 31: by how much the classes of DIF= or DPF= differ on each item or person.
#pragma once

#include "report/report_context.h"

namespace vardento {

// Of the Table's subject; once for each specification of the variable, or of the file it names.
void PrintBias(ReportContext& context);

}  // namespace vardento
