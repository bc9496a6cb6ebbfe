// Changes of the data around the intake: MFORMS= before it, EDFILE= and MAKEKEY= behind it. A later
// piece of work builds them; until then the data stay as they are.
#pragma once

#include "run/run.h"

namespace vardento {

void ConvertForms(Run& run);  // rewrites the input records by MFORMS= and names them in DATA=
void EditData(Run& run);      // changes single category numbers by EDFILE=
void MakeKey(Run& run);       // builds key 1 from the most frequent codes

}  // namespace vardento
