// The checks that turn the raw values of the first pass into the settings that the run uses.
#pragma once

#include "run/run.h"

namespace vardento {

// Checks and completes run.settings; ends the run on the first value that can't be used.
void CheckSettings(Run& run);

// The part of the checks that a single line given after the run needs as well: limits of lines,
// title, flags, fit label, masks, words for items and persons.
void NormaliseSettings(Run& run);

}  // namespace vardento
