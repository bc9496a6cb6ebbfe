// The residuals of all responses as a person-by-item matrix in a work file: NI 2-byte integers for
// each person. It is made when the first Table needs it, from the measures and statuses that the
// estimation left, whatever has been selected since; a run that needs none writes none.
#pragma once

#include <cstdint>

#include "run/run.h"

namespace vardento {

// Where there is no residual: no response, or not of an active person on an active item.
inline constexpr std::int16_t kNoResidual = -32768;

// The 2-byte entry of one observation of an active pair. `kind` is PRCOMP=: by default z in units
// of 1/1500; R: y as a share of T; L: y / V, the residual in logits, in units of 1/100; O: the
// category; K: its probability p; H and G: the logarithm and the log-odds of p as shares of what p
// = 0.002 (odds of 1 to 499) gives. Shares are of 32767. z and y / V are held within 16 bits and G
// within its share; an H of p below 0.002 is stored in 16 bits as it falls.
struct ResidualTerms {
  int x, top;
  double y, z, variance, probability;  // residual, standardised residual, V, p(x)
};
std::int16_t ResidualEntry(char kind, const ResidualTerms& terms);

// Makes the file unless it is there. False when it can't be made: that is told, and PRCOMP= is N
// from then on.
bool MakeResidualFile(Run& run);

// Tells the failure of the file at a person's record after run.RunIoStatus; operation: O, R or W.
void TellResidualFailure(Run& run, int person, char operation);

}  // namespace vardento
