// PFILE= and IFILE=: one row for each person or item, with measure and fit statistics.
#pragma once

#include "run/run.h"

namespace vardento {

void WritePersonMeasureFile(Run& run);  // to settings.PFILE
void WriteItemMeasureFile(Run& run);    // to settings.IFILE

}  // namespace vardento
