// From the intake to the last Table: the phases of a measurement in their order.
#pragma once

#include "run/run.h"

namespace vardento {

// Needs the arrays and stores of the run, filled by the intake. On return the report holds all
// Tables asked for and run.complete is set.
void AnalysisDriver(Run& run);

}  // namespace vardento
