// Lists that change single entries before estimation: deletions, anchors, weights, pivots, steps.
// A later piece of work builds them; until then each call leaves every entry as it is, active and
// of weight 1.
#pragma once

#include "run/run.h"

namespace vardento {

// Sets every status to Active, run.HighestMarked to 0 and run.DefaultKept to true; lists come
// later.
void ReadItemDeletions(Run& run);
void ReadPersonDeletions(Run& run);
void ReadItemAnchors(Run& run);
void ReadPersonAnchors(Run& run);
void ReadStepList(Run& run);
void ReadPivots(Run& run);
void ReadWeights(Run& run);

}  // namespace vardento
