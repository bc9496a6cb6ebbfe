// Sub-lists: the lines behind "VARIABLE=*" up to a line "*", kept in a work file of their own.
#pragma once

#include <string>
#include <string_view>

#include "control/control_source.h"

namespace vardento {

// Copies the sub-list behind the line in hand to its work file, whose name, made from the two
// letters of `tag`, is stored in `fileName`; a list without lines leaves `fileName` as it is. Ends
// the run when the list isn't closed or the work file fails.
void ReadSubList(Run& run, ControlState& state, std::string& fileName, std::string_view tag);

// Moves past the sub-list behind the line in hand.
void SkipSubList(Run& run, ControlState& state);

}  // namespace vardento
