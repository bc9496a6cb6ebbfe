#include "program/start_up.h"

#include "platform/directories.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kExtraSpecificationsLength = 80;
constexpr std::string_view kReportStem = "ZOU";

void WriteConsoleBanner(Run& run) {
  WriteConsole(run, " VARDENTO " VARDENTO_VERSION "  Rasch measurement analysis");
}

// A file of the user failed: in batch mode the run is over, otherwise the dialogue asks again.
void EndBatchRun(Run& run) {
  if (!run.batch) return;
  run.RunIoStatus = -1;
  EndRun(run);
}

void CheckCommandLine(Run& run, const CommandLine& line) {
  if (!line.surplusWord.empty()) {
    run.usageError = true;
    FailRun(run, " Unknown Command on DOS prompt line: \"" + line.surplusWord + "\"");
  }
  if (run.batch && (line.ControlFileName.empty() || line.ReportFileName.empty())) {
    run.usageError = true;
    FailRun(run, "BATCH MODE REQUIRES CONTROL AND OUTFILES. CONTROL: " + line.ControlFileName +
                     " OUTPUT: " + line.ReportFileName);
  }
}

// A name, or the choice of a dialog when the user typed none.
void AskForControlFile(Run& run, std::string& name) {
  name = Trim(AskLine(run, " Control file name? (e.g., KCT.DAT). Press Enter for Dialog Box: "));
  if (!name.empty()) return;
  name = Trim(run.console->AskForFile("Control File"));
  if (!name.empty()) WriteConsole(run, name);
}

bool CanOpen(Run& run, const std::string& name) {
  TextReader file;
  run.RunIoStatus = file.Open(name);
  if (run.RunIoStatus == kIoOk) return true;
  ReportFileFailure(run, name, 'I');
  return false;
}

void EnterControlMenus(Run& run, const std::string& name) {
  AddEditEntry(run, "Edit Control File=", name);
  const std::string quoted = "\"vardento\" \"" + name + "\"";
  run.console->AddMenuEntry("Exit, &then Restart " + quoted);
  run.console->AddMenuEntry("&Restart " + quoted);
}

void MoveToControlFile(Run& run, const std::string& name) {
  const std::string directory = DirectoryOf(name);
  if (directory == CurrentDirectory() || !ChangeDirectory(directory)) return;
  WriteConsole(run, " Current Directory: " + directory);
}

// Until a Control File can be read; its name is then a full path.
void FindControlFile(Run& run) {
  std::string& name = run.startUp.ControlFileName;
  for (;; name.clear()) {
    if (Trim(name).empty()) AskForControlFile(run, name);
    if (name.empty()) continue;
    // A relative name is taken from the start, also when a first choice has led elsewhere.
    if (!IsFullPath(name)) name = run.startUp.StartDirectory + name;
    PrepareFile(run, name, "CONTROL FILE");
    if (run.RunIoStatus != kIoOk) continue;  // PrepareFile has told it
    if (!IsFullPath(name)) name = CurrentDirectory() + name;
    if (CanOpen(run, name)) break;
    EndBatchRun(run);
  }
  run.files.Clear();
  EnterInput(run, name, "CONTROL FILE");
  EnterControlMenus(run, name);
  MoveToControlFile(run, name);
}

// A blank name stands for the temporary report.
void AskForReport(Run& run, std::string& name) {
  name = Trim(AskLine(run, " Report output file name (or press Enter for temporary file): "));
  if (name == "*") name = Trim(run.console->AskForFile("Report Output File"));
}

// The temporary report lies in the start directory or, where that can't be written, among the work
// files; in both places it stays behind at the end.
void OpenTemporaryReport(Run& run) {
  StartUp& startUp = run.startUp;
  startUp.reportIsTemporary = true;
  startUp.ReportFileName =
      startUp.StartDirectory + std::string(kReportStem) + run.workDirectory.Tail();
  run.RunIoStatus = OpenReport(run, startUp.ReportFileName, FileMode::CreateExclusive);
  if (run.RunIoStatus == kIoOk) return;
  startUp.ReportFileName = run.workDirectory.NameOf(kReportStem);
  run.workDirectory.Keep(startUp.ReportFileName);
  run.RunIoStatus = OpenReport(run, startUp.ReportFileName, FileMode::CreateExclusive);
}

// Until a report can be written; its name is then a full path.
void FindReport(Run& run) {
  std::string& name = run.startUp.ReportFileName;
  bool known = !Trim(name).empty();
  for (;; name.clear(), known = false) {
    if (!known) AskForReport(run, name);
    if (!name.empty() && !IsFullPath(name)) name = run.startUp.StartDirectory + name;
    if (const RunFile* input = run.files.Find(name, FileUse::Read)) {
      ReportMessage(run, "PROBLEM: REPORT FILE HAS SAME NAME AS " + input->caption);
      EndBatchRun(run);
      continue;
    }
    run.startUp.reportIsTemporary = false;
    if (name.empty()) {
      OpenTemporaryReport(run);
    } else {
      run.RunIoStatus = OpenReport(run, name, FileMode::Keep);
    }
    if (run.RunIoStatus == kIoOk) break;
    ReportFileFailure(run, name, 'O');
    EndBatchRun(run);
  }
  run.outputFailed = false;  // what failed on the way was not the report
}

void AskForExtraSpecifications(Run& run) {
  const std::string answer = AskLine(run, " Extra specifications (or press Enter): ");
  run.startUp.ExtraSpecifications = TrimRight(answer.substr(0, kExtraSpecificationsLength));
}

}  // namespace

CommandLine ScanCommandLine(const std::vector<std::string>& words) {
  CommandLine line;
  bool inSubList = false;
  for (const std::string& word : words) {
    const bool hasEquals = word.find('=') != std::string::npos;
    const bool hasStar = word.find('*') != std::string::npos;
    line.hasVariables = line.hasVariables || hasEquals;
    if (word.find("=*") != std::string::npos) {
      inSubList = true;
    } else if (hasEquals) {
      if (UpperCase(word[0]) == 'B') line.batch = UpperCase(word).find("=Y") != std::string::npos;
    } else if (hasStar) {
      inSubList = false;
    } else if (inSubList) {
      continue;
    } else if (line.ControlFileName.empty()) {
      line.ControlFileName = word;
    } else if (line.ReportFileName.empty()) {
      line.ReportFileName = word;
    } else if (line.surplusWord.empty()) {
      line.surplusWord = word;
    }
  }
  return line;
}

void CheckWorkDirectory(Run& run) {
  for (const std::string& directory : {DefaultWorkDirectory(), SecondWorkDirectory()}) {
    if (run.workDirectory.Prepare(directory)) return;
    ReportMessage(run, "Work file not useable. Please specify a different TEMP directory.");
    ReportMessage(
        run,
        " Use \"Edit\" pull-down menu. Click on \"Edit initial settings\".  Type different "
        "directory name in \"Temporary directory for work files.\".");
  }
  run.RunIoStatus = -1;
  EndRun(run);
}

void StartDialogue(Run& run) {
  StartUp& startUp = run.startUp;
  const CommandLine line = ScanCommandLine(startUp.words);
  if (line.batch) run.SetBatchMode(true);
  startUp.ControlFileName = line.ControlFileName;
  startUp.ReportFileName = line.ReportFileName;
  startUp.StartDirectory = CurrentDirectory();
  const bool namesGiven = !line.ControlFileName.empty() && !line.ReportFileName.empty();

  WriteConsoleBanner(run);
  CheckWorkDirectory(run);
  CheckCommandLine(run, line);
  WriteConsole(run, " Current Directory: " + startUp.StartDirectory);
  if (!startUp.ControlFileName.empty()) {
    WriteConsole(run, " Control file name: " + startUp.ControlFileName);
  }
  for (;;) {
    FindControlFile(run);
    if (!line.ReportFileName.empty()) {
      WriteConsole(run, " Report output file name: " + startUp.ReportFileName);
    }
    FindReport(run);
    run.RunIoStatus = run.input.control.Open(startUp.ControlFileName);
    if (run.RunIoStatus == kIoOk) break;
    ReportFileFailure(run, startUp.ControlFileName, 'I');
    EndBatchRun(run);
    startUp.ControlFileName.clear();
  }
  startUp.ExtraSpecifications.clear();
  if (!line.hasVariables && !namesGiven) AskForExtraSpecifications(run);
  WriteConsole(run, " Temporary Workfile Directory: " + run.workDirectory.Path());
}

std::string MakeRunStamp(int month, int day, int hour, int minute, int year) {
  constexpr std::string_view kMonths = "JanFebMarAprMayJunJulAugSepOctNovDec";
  std::string minutes = integer_text(minute, 2);
  if (minutes[0] == ' ') minutes[0] = '0';
  return std::string(kMonths.substr(static_cast<std::size_t>(month - 1) * 3, 3)) + " " +
         integer_text(day, 2) + " " + integer_text(hour, 2) + ":" + minutes + " " +
         integer_text(year, 4);
}

}  // namespace vardento
