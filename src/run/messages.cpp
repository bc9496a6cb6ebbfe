#include "run/messages.h"

#include <algorithm>
#include <system_error>

#include "platform/directories.h"
#include "platform/io_status.h"
#include "platform/standard_streams.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kLongestMessage = 1024;
constexpr int kBarWidth = 75;

// Messages start on a line of their own, also when they break into a progress bar.
void LeaveProgressBar(Run& run) {
  if (!run.progress.active) return;
  run.progress.active = false;
  run.console->WriteLine("");
}

std::string SystemText(int status) {
  if (status < 0) return "End of file (" + IntegerText(status) + ")";
  return std::generic_category().message(status);
}

std::string FailureText(int status, char operation) {
  switch (status) {
    case kIoNoFinalLineEnd:
      return "Use File Menu to add BLANK LINE at end of ";
    case 2:
    case kIoFileNotFound:
      return operation == 'I' ? "Input File Not Found. Please specify full path."
                              : "Unusable Output File Name";
    case kIoDirectoryNotFound:
      return "Drive or Directory Not Found";
    case kIoDiskFull:
      return "Not Enough Disk Space";
    case 0:
      return "Processing has stopped";
    case 1:
      return "Invalid function";
    default:
      return SystemText(status);
  }
}

std::string MessageText(std::string_view text) {
  return WithoutControls(TrimRight(text.substr(0, kLongestMessage)));
}

// Where the user wrote what stands there; no place for a work file of the program's own.
SourceLine UsersPlace(const Run& run, const SourceLine& where) {
  if (!run.workDirectory.IsWorkFile(where.file)) return where;
  for (const SubListSource& list : run.input.subLists) {
    if (list.workFile != where.file) continue;
    const auto line = static_cast<std::size_t>(where.line);
    return {list.file, line > 0 && line <= list.lines.size() ? list.lines[line - 1] : 0};
  }
  return {};
}

// "control.txt:12: "
std::string PlaceText(const Run& run, const SourceLine& where) {
  const SourceLine place = UsersPlace(run, where);
  if (place.file.empty()) return "";
  const std::string directory = DirectoryOf(run.startUp.ControlFileName);
  const bool isBeside = !directory.empty() && place.file.starts_with(directory);
  const std::string name = place.file.substr(isBeside ? directory.size() : 0);
  return name + (place.line > 0 ? ":" + IntegerText(place.line) : "") + ": ";
}

[[noreturn]] void LeaveProcess(Run& run) {
  run.leaving = true;
  run.RunIoStatus = -1;
  EndRun(run);
}

}  // namespace

void WriteConsole(Run& run, std::string_view text) {
  LeaveProgressBar(run);
  run.console->WriteLine(text);
}

void TellUser(Run& run, std::string_view text) {
  const std::string shown = MessageText(text);
  WriteConsole(run, shown);
  if (run.batch) WriteToStandardError(shown + "\n");
}

void ReportMessage(Run& run, std::string_view text) {
  TellUser(run, text);
  // A report that fails is told about elsewhere: its own messages must not come back here.
  if (!run.batch || !run.report.IsOpen()) return;
  static_cast<void>(run.report.PutLine(" " + MessageText(text), run.settings));
}

void Warn(Run& run, const SourceLine& where, std::string_view text) {
  ReportMessage(run, " WARNING: " + PlaceText(run, where).append(text));
}

bool TellReportFailure(Run& run, int status) {
  if (status == kIoOk) return false;
  run.outputFailed = true;
  if (run.report.failureTold) return false;
  run.report.failureTold = true;
  run.RunIoStatus = status;
  ReportFileFailure(run, run.report.Name(), 'W');
  return true;
}

void WriteReportText(Run& run, std::string_view line) { WriteReportText(run, line, line); }

void WriteReportText(Run& run, std::string_view line, std::string_view onConsole) {
  // A Table of many lines must not keep the user waiting; the end of the report is always written.
  if (!run.finished) PumpMessages(run);
  if (!TellReportFailure(run, run.report.PutLine(line, run.settings))) return;
  WriteConsole(run, " FAILED TO WRITE:");
  WriteConsole(run, onConsole);
  static_cast<void>(run.report.PutLine(line, run.settings));
  --run.report.LinesOnPage;  // the line counts once
  ReportFileFailure(run, run.report.Name(), 'W');
  run.RunIoStatus = 0;
}

void ReportFileFailure(Run& run, std::string_view name, char operation) {
  if (operation == 'O' || operation == 'W') run.outputFailed = true;
  ReportMessage(run, TrimRight(name.substr(0, name.find('\0'))));
  ReportMessage(run, FailureText(run.RunIoStatus, operation));
}

void FatalFileFailure(Run& run, std::string_view name, char operation) {
  ReportFileFailure(run, name, operation);
  run.RunIoStatus = -1;
  EndRun(run);
}

void EndRun(Run&) { throw RunEnded(); }

void FailRun(Run& run, std::string_view text) {
  ReportMessage(run, text);
  run.RunIoStatus = -1;
  EndRun(run);
}

void AddEditEntry(Run& run, std::string_view caption, std::string_view fileName) {
  if (run.workDirectory.IsWorkFile(fileName)) return;
  run.console->AddMenuEntry(std::string(caption).append(TrimRight(fileName)));
}

std::string AskLine(Run& run, std::string_view prompt) {
  std::string answer;
  run.console->WritePart(prompt);
  if (!run.console->ReadLine(answer)) LeaveProcess(run);
  return answer;
}

void PumpMessages(Run& run) {
  run.console->PumpMessages();
  const int interrupts = run.console->Interrupts();
  if (run.console->IsClosing() || interrupts > (run.batch ? 0 : 1)) LeaveProcess(run);
  if (interrupts > run.console->interruptsSeen) {
    run.console->interruptsSeen = interrupts;
    run.StopRequest = 1;
  }
}

void ShowProgress(Run& run, int done, int total) {
  PumpMessages(run);
  if (run.batch || total < 1) return;
  if (!run.progress.active || done == 1) {
    run.console->WritePart(">");
    run.progress = {true, 1};
  }
  const long long target = (2LL * done * kBarWidth + total) / (2LL * total);
  std::string marks;
  for (; run.progress.place <= std::min<long long>(target, kBarWidth); ++run.progress.place) {
    marks.push_back(run.StopRequest == 1 ? '#' : '=');
  }
  if (!marks.empty()) run.console->WritePart(marks);
  if (done >= total) {
    run.console->WriteLine("<");
    run.progress.active = false;
  }
}

}  // namespace vardento
