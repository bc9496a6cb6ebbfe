// Values that are used otherwise than they were written: numbers with text behind them or out of
// their range, flags that are neither yes nor no. Found while the lines are read, told behind the
// last of them, since of two lines for one variable only the last counts.
#pragma once

#include <string_view>

#include "control/keyword_values.h"

namespace vardento {

// Notes the value just stored if it is doubtful; what was noted of an earlier one is dropped.
void NoteValue(KeywordCall& call);

// Notes that the line in hand is not used, and why.
void NoteUnusedLine(KeywordCall& call, std::string_view reason);

// One warning for each note that is left, in the order of the lines.
void TellDoubts(Run& run, const ControlState& state);

}  // namespace vardento
