// The summary of the sample and of the test: statistics over persons and over items, separation and
// reliability. Made behind the fit pass, and anew whenever a selection changes who counts.
#pragma once

#include "run/run.h"

namespace vardento {

// Sums both sides up into results.summary, in the user's units: means and S.D. over the population
// (divisor: the sum of weights) of active persons (NPERS) and items (NI), and of all with a
// measure. Reads every person's record, and ends the run in the words of its file when that fails.
void SumUp(Run& run);

// Separation and reliability (Wright & Masters 1982): the mean square error of the measures is
// taken off their variance, and what is left is set against it. Mean and S.D. of the standard
// errors and S.D. of the measures in one unit, whichever. The squares of mean and S.D. of the
// errors make the mean of their squares. Separation is true S.D. over RMSE, reliability true over
// observed variance (the ratio of classical test theory). All but the RMSE are 0 when the errors
// are larger than the spread.
SeparationValues Separation(double seSD, double seMean, double measureSD);

}  // namespace vardento
