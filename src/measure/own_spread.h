// LOCAL=Y: standardised fit values rescaled by their own spread in the sample, so that they tell
// which entries are unusual here instead of whether the model holds. A settled form, without a
// published source.
#pragma once

#include "run/run.h"

namespace vardento {

// Rescales INFIT and OUTFIT standardised, of active items (NI) and active persons (NPERS), behind
// the fit pass. Values lose the mean-square in their lower digits (ZCode): ties are ties again.
void RescaleByOwnSpread(Run& run);

}  // namespace vardento
