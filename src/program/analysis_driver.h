// From the intake to the last Table: the phases of a measurement in their order.
#pragma once

#include "run/run.h"

namespace vardento {

// Start values, joint iteration, fit and summary of the run's data with what is given for entries,
// into run.results. May be done again, with other deletions or anchors.
void MeasureRun(Run& run);

// The whole road behind the intake. Needs the arrays and stores of the run, filled by the intake.
// On return the report holds all Tables asked for and run.complete is set.
void AnalysisDriver(Run& run);

}  // namespace vardento
