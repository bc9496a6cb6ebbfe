// Correlations of residuals between the entries of one side, over the other side: what is left of
// dependence when the measures are taken out. Items whose residuals correlate highly ask for the
// same thing twice.
#pragma once

#include <vector>

#include "run/facet.h"
#include "run/run.h"

namespace vardento {

// Makes the correlations of the side's active entries, unless they stand from before. False when
// they are not complete: there are no residuals or no room for the file, which is told, or the user
// stopped it.
bool CorrelateResiduals(Run& run, Facet facet);

// The pairs of largest |r|, largest first, at most 10, once the correlations are complete. Of pairs
// with the same |r| the one found last goes first; of entries that are all alike (r = 1) each is
// named once.
const std::vector<ResidualCorrelation>& LargestCorrelations(Run& run, Facet facet);

// What is told when the file of correlations fails: the record in hand, and I, O, R or W.
void TellCorrelationFailure(Run& run, IoStatus status, long long record, char operation);

}  // namespace vardento
