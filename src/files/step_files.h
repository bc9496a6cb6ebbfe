// SFILE=, the steps of every scale in the form in which SAFILE= takes them back, and ISFILE=, one
// row for each item with the measures of all its steps.
#pragma once

#include "run/run.h"

namespace vardento {

void WriteStepFile(Run& run);      // to settings.SFILE
void WriteItemStepFile(Run& run);  // to settings.ISFILE

}  // namespace vardento
