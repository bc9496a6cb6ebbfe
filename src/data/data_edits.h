// Changes of the data around the intake: MFORMS= before it, EDFILE= and MAKEKEY= behind it.
#pragma once

#include "run/run.h"

namespace vardento {

// Rewrites the input records by the instructions of MFORMS= into the work file "ZMF" and names it
// in DATA=. A fault in an instruction or a file ends the run.
void ConvertForms(Run& run);

// Changes category numbers of coded rows by EDFILE=. Lines whose entries can't be read are skipped
// with one warning; a file that can't be read ends the run.
void EditData(Run& run);

// Builds key 1, of score 1, from the most frequent code of each item among the persons and items
// that aren't deleted; it takes the place of all other keys. Without a choice of codes or without
// memory the keys stay as they were given; when none was given the codes score for themselves.
void MakeKey(Run& run);

}  // namespace vardento
