// Lists that change single entries before estimation: deletions, anchors, weights, pivots, steps.
// Each is a file or a sub-list of the Control File; deletions and anchors can be typed as well,
// when the run is not in batch mode and the variable for it is on. Lines that make no sense are
// passed over, with one warning for the list; in PIVOT= they end the run. All of them
// fill run.given.
#pragma once

#include "run/run.h"

namespace vardento {

// IDFILE=, PDFILE=: sets every status to Active, or to Deleted by the list. A list whose lines hold
// a "+" tells the entries to keep; all others go. Sets run.HighestMarked and run.DefaultKept.
void ReadItemDeletions(Run& run);
void ReadPersonDeletions(Run& run);

// IAFILE=, PAFILE=: an active entry becomes Anchored at its value, taken from the user's scale
// (UANCHOR=Y: UMEAN=, USCALE=; otherwise UASCALE=) to logits.
void ReadItemAnchors(Run& run);
void ReadPersonAnchors(Run& run);

// SDFILE=, SAFILE=: item, category and, for SAFILE=, the step calibration into that category; the
// item may be left out when all items share one scale. Needs the groups and the category block.
void ReadStepList(Run& run);

// PIVOT=: the score point at which the difficulty of the items of a group stands.
void ReadPivots(Run& run);

// PWEIGHT=, IWEIGHT=: weights of 0 and more; needs the weight block. A list that changes no weight
// is dropped, together with its array.
void ReadWeights(Run& run);

}  // namespace vardento
