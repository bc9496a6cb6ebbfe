// Per-item texts and keys that stand in data format, one record each, right behind the control
// lines.
#pragma once

#include <string>
#include <string_view>

#include "run/run.h"

namespace vardento {

// Reads one record of the Control File as a data record is read, through FORMAT= if given, and
// gives the NI x XWIDE characters of its responses in `destination`. Ends the run when there is no
// such record; `name` is the variable's in that message.
void ReadDataFormatLine(Run& run, std::string_view name, std::string& destination);

// All of them, in order: GROUPS, MODELS, RESCORE, then the keys.
void ReadDataFormatLines(Run& run);

}  // namespace vardento
