// One run of the program: everything it owns, passed by reference.
#pragma once

#include <cassert>
#include <string>
#include <vector>

#include "platform/console.h"
#include "platform/memory.h"
#include "platform/silent_console.h"
#include "platform/text_file.h"
#include "run/control_settings.h"
#include "run/given_entries.h"
#include "run/in_force.h"
#include "run/phase_clock.h"
#include "run/report_output.h"
#include "run/results.h"
#include "run/run_arrays.h"
#include "run/run_files.h"
#include "run/source_line.h"
#include "run/table_request.h"
#include "run/work_directory.h"
#include "run/work_stores.h"

namespace vardento {

// What the command line and the start-up dialogue found out.
struct StartUp {
  std::vector<std::string> words;  // the words of the command line behind the program's name
  std::string ControlFileName;
  std::string ReportFileName;
  std::string StartDirectory;       // ends in "/"; the report's relative name is based on it
  std::string ExtraSpecifications;  // up to 80 characters from the prompt; blank: use the words
  bool reportIsTemporary = false;
};

// The Control File while it is being read: unit 3. It stays open behind its last control line,
// since item labels and data may follow there.
struct ControlInput {
  TextReader control;
  TextWriter copy;          // ZIN: the control lines as read
  std::string ControlLine;  // the line in hand
  std::vector<SubListSource> subLists;
};

struct ProgressBar {
  bool active = false;
  int place = 1;
};

class Run {
 public:
  explicit Run(Console& user) : userConsole(&user), console(&user) {}
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  // Batch mode or not from here on: in it nothing is shown and nobody is asked.
  void SetBatchMode(bool on) {
    batch = on;
    console = on ? &silentConsole : userConsole;
  }
  // The settings while the Control File is read and checked; for `control` alone.
  ControlSettings& DraftSettings() {
    assert(!settingsFixed_);
    return settings_;
  }
  // From here on the settings are what the user gave, and nothing changes them.
  void FixSettings() {
    settingsFixed_ = true;
    inForce = VariablesInForce(settings_);
  }

  // Nothing of the analysis is wanted any more: lets go of arrays, stores and lists.
  void GiveMemoryBack() {
    for (MemoryBlock* block : {&itemBlock, &groupBlock, &categoryBlock, &personStatusTrial,
                               &personBlock, &weightBlock}) {
      block->Free();
    }
    arrays = RunArrays();
    given = GivenEntries();
    stores.scoredRows.Forget();
    stores.personWork.Forget();
  }

  Console* userConsole;         // the one that the process was started at
  Console* console;             // never null; a silent one in batch mode
  SilentConsole silentConsole;  // takes the console's place in batch mode
  bool batch = false;
  MemoryBudget memory;
  std::string RunStamp;  // 17 characters: "Nov 22 2026"-like stamp with hour and minute

  WorkDirectory workDirectory;  // declared before the files in it: it is destroyed after them
  StartUp startUp;
  const ControlSettings& settings = settings_;
  VariablesInForce inForce;
  ControlInput input;
  ReportOutput report;
  RunFiles files;
  TextWriter summaryLines;  // ZRR: the lines shown on the screen at the end of the run
  TableRequest request;

  // Blocks, in the order in which they are allocated, and the arrays cut from them.
  MemoryBlock itemBlock, groupBlock, categoryBlock, personStatusTrial, personBlock, weightBlock;
  GivenEntries given;
  RunArrays arrays;
  Results results;
  WorkStores stores;

  int RunIoStatus = 0;
  int StopRequest = 0;
  ProgressBar progress;
  PhaseClock phases;

  // Counts, set during intake.
  int NGROUPS = 0;
  int NCATS = 0;
  int MAXCAT = 0;
  int NPERS = 0;            // persons held
  int personsRead = 0;      // persons read, also those beyond capacity
  int personCapacity = 0;   // length of the person status trial
  int LongestLabel = 1;     // longest person label
  int HighestMarked = 0;    // highest person number marked by a deletion list or selection
  bool DefaultKept = true;  // a person not listed is active

  bool finished = false;  // FinishRun has run
  bool complete = false;  // the analysis is over, menus may ask for more

  bool outputFailed = false;  // the report or an output file could not be written completely
  bool usageError = false;    // the command line can't be used
  bool leaving = false;       // the user or the system wants the process to end: no idle state

 private:
  ControlSettings settings_;
  bool settingsFixed_ = false;
};

// Thrown by EndRun alone and caught by MainRun alone: the run is over.
struct RunEnded {};

}  // namespace vardento
