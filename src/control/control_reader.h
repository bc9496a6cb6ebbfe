// Reads the Control File: its lines, supplemental files, sub-lists and the extra words of the
// command line or prompt, and hands each logical line to the keyword table.
#pragma once

#include <string>
#include <string_view>

#include "run/run.h"

namespace vardento {

// The first pass over the Control File (already open on run.input.control), then the checks that
// turn raw values into settings. Ends the run on the first faulty line.
void ReadControlVariables(Run& run);

// True when the second pass is needed: keys, per-item texts or IVALUE lines exist.
bool NeedsSecondPass(const ControlSettings& settings);

// The second pass (per-item texts, keys, IVALUE rows) and the data-format records behind it.
void ReadPerItemVariables(Run& run);

// Shows on the console, at the end of a good run, the settings that shape the scoring.
void EchoSettings(Run& run);

}  // namespace vardento
