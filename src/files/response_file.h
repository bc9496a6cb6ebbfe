// RFILE=: the scored responses, a line for each person.
#pragma once

#include <string>

#include "run/run.h"

namespace vardento {

// To settings.RFILE, behind the intake: deleted is what the user deleted.
void WriteResponseFile(Run& run);
// The same with these statuses, such as those that the measurement left in run.arrays; 1..NPERS and
// 1..NI.
void WriteResponseFile(Run& run, const std::string& name, const Array1<StatusByte>& persons,
                       const Array1<StatusByte>& items);

}  // namespace vardento
