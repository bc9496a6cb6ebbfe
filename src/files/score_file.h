// SCFILE=: one row for each raw score on the complete test, with measure, information, norms and
// frequency.
#pragma once

#include "run/run.h"

namespace vardento {

void WriteScoreFile(Run& run);  // to settings.SCFILE

}  // namespace vardento
