#include "program/main_run.h"

#include <algorithm>
#include <memory>
#include <new>

#include "control/control_reader.h"
#include "control/item_specifications.h"
#include "data/data_reader.h"
#include "data/select_items.h"
#include "data/work_files.h"
#include "files/output_files.h"
#include "lists/entry_lists.h"
#include "measure/estimation.h"
#include "platform/clock.h"
#include "program/analysis_driver.h"
#include "program/finish_run.h"
#include "program/start_up.h"
#include "report/page.h"
#include "run/allocate_blocks.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

void StampRun(Run& run) {
  if (!run.RunStamp.empty()) return;
  const ClockTime now = ReadClock();
  run.RunStamp = MakeRunStamp(now.month, now.day, now.hour, now.minute, now.year);
}

void ReadItemSettings(Run& run) {
  AllocateItemBlock(run);
  ReserveItemTexts(run);
  if (NeedsSecondPass(run.settings)) ReadPerItemVariables(run);
  ReadPerItemLists(run);
  NormalisePerItemTexts(run);
  DefaultModels(run);
}

void EnterReportMenu(Run& run) {
  const std::string& name = run.startUp.ReportFileName;
  const std::string& directory = run.workDirectory.Path();
  if (name.starts_with(directory)) {
    run.console->AddMenuEntry("Edit Report Output File==" + name.substr(directory.size()));
  } else {
    run.console->AddMenuEntry("Edit Report Output File=" + name);
  }
}

void FormGroups(Run& run) {
  AssignGroups(run, run.arrays.ItemGroup);
  AllocateGroupBlock(run);
  AssignModels(run);
  run.FixSettings();
  run.inForce.scoring = DecideRescoring(run.settings);
}

// The data, from the first record to the scored rows in the work files.
void TakeInData(Run& run) {
  ReadItemDeletions(run);
  AllocatePersonStatusTrial(run);
  ReadPersonDeletions(run);
  ReadData(run);
  WriteOutputFiles(run, OutputStage::Intake);
  if (run.StopRequest == 1) {
    run.RunIoStatus = -1;
    EndRun(run);
  }
  if (NeedsItemSelection(run)) SelectItems(run);
  ReadItemAnchors(run);
}

// What the estimation works on, now that the persons are counted.
void PrepareEstimation(Run& run) {
  HoldPersonStatus(run);
  AllocateCategoryBlock(run);
  AllocatePersonBlock(run, [&run](int persons) { return NeededByPhases(run, persons); });
  RestorePersonStatus(run);
  ReadPersonAnchors(run);
  ReadStepList(run);
  ReadPivots(run);
  AllocateWeightBlock(run);
  ReadWeights(run);
  AllocateStores(run);
}

}  // namespace

void PrepareRun(Run& run, const std::vector<std::string>& words) {
  // An empty word ends the command line.
  run.startUp.words.assign(words.begin(), std::find(words.begin(), words.end(), std::string()));
  StampRun(run);
  StartDialogue(run);
  run.phases.Enter(Phase::Intake);
  ReadControlVariables(run);
  EnterOutputFiles(run);
  ReadItemSettings(run);
  EnterReportMenu(run);
  WriteBanner(run);
  FormGroups(run);
  TakeInData(run);
  PrepareEstimation(run);
}

namespace {

// After the run: one line of the user at a time, until there are no more.
void Idle(Run& run) {
  // An interrupt that came too late to stop anything in the run does not end the program.
  run.console->interruptsSeen = run.console->Interrupts();
  run.console->WriteLine(" Type \"exit\" and press Enter to end.");
  std::string line;
  while (run.console->ReadLine(line)) {
    const std::string command = UpperCase(Trim(line));
    if (command == "EXIT") return;
    if (command.empty()) continue;
    run.console->WriteLine(
        " Tables on request come with the menus later. \"exit\" ends the program.");
  }
  // No more lines: the end of input is a good end, an interrupt or a hang-up is not.
  if (run.console->IsClosing() || run.console->Interrupts() > run.console->interruptsSeen) {
    run.leaving = true;
  }
}

int ExitStatus(const Run& run) {
  if (run.usageError) return kExitUsage;
  const bool good = run.complete && run.RunIoStatus == 0 && !run.outputFailed && !run.leaving;
  return good ? kExitGood : kExitBad;
}

}  // namespace

int MainRun(Run& run, const std::vector<std::string>& words) {
  constexpr std::size_t kReserve = 1 << 18;  // for the report's end, should memory run out
  std::unique_ptr<char[]> reserve(new (std::nothrow) char[kReserve]);
  try {
    PrepareRun(run, words);
    run.console->SetMenuState(MenuState::Running);
    AnalysisDriver(run);
  } catch (const RunEnded&) {
    if (run.RunIoStatus == 0) run.RunIoStatus = -1;
  } catch (const std::bad_alloc&) {
    // Small memory, which no block counts. What the run held is given back for the report's end.
    run.GiveMemoryBack();
    reserve.reset();
    ReportMessage(run, "NOT ENOUGH MEMORY");
    run.RunIoStatus = -1;
  }
  FinishRun(run);
  run.phases.Stop();
  if (!run.batch && !run.leaving && !run.usageError) Idle(run);
  run.workDirectory.RemoveFiles();
  return ExitStatus(run);
}

}  // namespace vardento
