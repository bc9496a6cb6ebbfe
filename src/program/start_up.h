// What a run must know before it can read its Control File: the two file names, the mode, the
// directory of the work files. Asked of the command line, then of the user.
#pragma once

#include <string>
#include <vector>

#include "run/run.h"

namespace vardento {

// What the words of a command line say, before anything is done about it.
struct CommandLine {
  std::string ControlFileName, ReportFileName;
  bool batch = false;
  bool hasVariables = false;  // a word with "=" stands there
  std::string surplusWord;    // the third file name, an error
};
// A word without "=" and "*" is a file name, unless it stands in a sub-list. An empty word ends the
// scan.
CommandLine ScanCommandLine(const std::vector<std::string>& words);

// The whole dialogue, from run.startUp.words: on return both files are open, the current directory
// is that of the Control File, and startUp is complete. Ends the run when that can't be reached.
void StartDialogue(Run& run);

// Prepares the work directory, in the default place or in the second one; ends the run when neither
// can be used.
void CheckWorkDirectory(Run& run);

// "Nov 22  9:05 2026", 17 characters, from a month (1 to 12), day, hour, minute and year.
std::string MakeRunStamp(int month, int day, int hour, int minute, int year);

}  // namespace vardento
