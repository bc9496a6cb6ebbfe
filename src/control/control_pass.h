// One complete pass over the control lines, and what one logical line does.
#pragma once

#include "control/control_source.h"

namespace vardento {

// Reads all control lines: the Control File, what it draws in, then the extra words. In the first
// pass every keyword sets its raw value and all lines are copied; in the second only what is said
// item by item is stored. Ends the run on the first faulty line. The Control File stays open
// behind its &END.
void ReadControlPass(Run& run, int pass);

// Does what run.input.ControlLine says: sets state.EndFlag, or applies its keyword.
void ParseControlLine(Run& run, ControlState& state);

}  // namespace vardento
