#include "data/data_edits.h"

namespace vardento {

void ConvertForms(Run&) {}
void EditData(Run&) {}
void MakeKey(Run&) {}

}  // namespace vardento
