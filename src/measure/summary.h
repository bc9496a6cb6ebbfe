// The summary of the sample and of the test: statistics over persons and over items, separation and
// reliability. Made behind the fit pass, and anew whenever a selection changes who counts.
#pragma once

#include "run/run.h"

namespace vardento {

// Sums both sides up into results.summary, in the user's units.
void SumUp(Run& run);

// Separation and reliability (Wright & Masters 1982): the mean square error of the measures is
// taken off their variance, and what is left is set against it. All but the RMSE are 0 when the
// errors are larger than the spread.
SeparationValues Separation(double seSD, double seMean, double measureSD);

}  // namespace vardento
