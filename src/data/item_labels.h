// The item labels: from the Control File behind its last control line, or from ILFILE=, into the
// item work file.
#pragma once

#include "run/run.h"

namespace vardento {

// No label is used beyond this length.
inline constexpr int kMaxLabel = 300;

// Moves the Control File past the item labels, stores one label for each item in "ZJJ" and settles
// ITLEN=. Labels found in the Control File are copied to "ZIL", which ILFILE= then names. A wrong
// number of labels is told, and numbers stand for those that are missing. With INUMB=Y there are no
// labels to read.
void ReadItemLabels(Run& run);

// Stores the labels of ILFILE= in a new "ZJJ" and returns the length of the longest, 5 to 300.
int StoreItemLabels(Run& run);

}  // namespace vardento
