// LOCAL=Y: standardised fit values rescaled by their own spread in the sample.
#pragma once

#include "run/run.h"

namespace vardento {

// Rescales INFIT and OUTFIT standardised, of items and of persons.
void RescaleByOwnSpread(Run& run);

}  // namespace vardento
