// The road of a run from an empty process to a finished report, and what comes after it.
#pragma once

#include <string>
#include <vector>

#include "run/run.h"

namespace vardento {

inline constexpr int kExitGood = 0;
inline constexpr int kExitBad = 1;
inline constexpr int kExitUsage = 2;  // a command line that can't be used

// From the words of the command line (without the program's name) to data that are ready to be
// measured: both files open, settings fixed, persons and items in the work files, what is given for
// them read. Ends the run by throwing RunEnded.
void PrepareRun(Run& run, const std::vector<std::string>& words);

// Takes one run from the words of the command line to its end and,
// unless in batch mode, through the idle state behind it. `run.RunStamp` is made when it is empty.
// Returns the process's exit status. The process's current directory may have changed.
int MainRun(Run& run, const std::vector<std::string>& words);

// The way in: --help, --version, the console that fits, MainRun.
int RunProgram(int argc, char** argv);

}  // namespace vardento
