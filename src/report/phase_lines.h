// What the report, the console and, in batch mode, the standard error stream are told of a phase
// when it is over, from what it left in the run's results.
#pragma once

#include "run/run.h"

namespace vardento {

// Subsets of disconnected data, with the first members of each; nothing when all are connected.
// Leaves the text that every page head repeats.
void TellConnectivity(Run& run);
// How far from convergence an iteration was that ended otherwise; nothing when it converged.
void TellConvergence(Run& run);
// Mean and S.D. of the standardised residuals.
void TellResiduals(Run& run);

}  // namespace vardento
