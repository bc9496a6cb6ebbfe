// The intake: item labels, data records, scoring into the work files.
#pragma once

#include <string>
#include <string_view>

#include "run/run.h"

namespace vardento {

// The whole intake. Needs settings, groups and the person status trial; sets GroupStart, the given
// GroupTop, NCATS, MAXCAT, NPERS, personsRead and LongestLabel, writes ZJJ, ZPP, ZNN, ZMM. A raised
// StopRequest ends the reading.
void ReadData(Run& run);

// Scores the codes of every person into the scored rows; done once more before the run is measured
// again, when out-of-range responses have been taken out of the rows.
void ScorePersons(Run& run);

// The place of a response code in CODES=, counted from 1; 0 when it is not there.
int CategoryOfCode(const ControlSettings& settings, std::string_view field);

}  // namespace vardento
