#include "program/finish_run.h"

#include <algorithm>
#include <vector>

#include "platform/directories.h"
#include "platform/io_status.h"
#include "report/page.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::string_view kFrontStem = "ZFR";
constexpr std::string_view kControlCopyStem = "ZIN";
constexpr std::size_t kFrontLineLength = 100;

// Copies the report's lines in pieces of up to 100 characters; a longer line goes on in the next
// piece.
IoStatus CopyFront(TextReader& from, TextWriter& to) {
  std::string line;
  int status = kIoOk;
  while (status == kIoOk && (status = from.ReadLine(line)) == kIoOk) {
    std::string_view rest = line;
    do {
      status = to.WriteLine(rest.substr(0, kFrontLineLength));
      rest.remove_prefix(std::min(rest.size(), kFrontLineLength));
    } while (status == kIoOk && !rest.empty());
  }
  const int closed = to.Close();
  return status == kIoEndOfFile ? closed : status;
}

void CopyReportToFront(Run& run) {
  const std::string front = run.workDirectory.NameOf(kFrontStem);
  TextReader from;
  TextWriter to;
  run.RunIoStatus = from.Open(run.report.Name());
  if (run.RunIoStatus != kIoOk) FatalFileFailure(run, run.report.Name(), 'R');
  run.RunIoStatus = to.Open(front, FileMode::ReplacePrivate);
  if (run.RunIoStatus == kIoOk) run.RunIoStatus = CopyFront(from, to);
  if (run.RunIoStatus != kIoOk) FatalFileFailure(run, front, 'W');
}

// The report is not whole without this work file.
void TellFailure(Run& run, const std::string& name, int status, char operation) {
  if (status == kIoOk) return;
  run.outputFailed = true;
  run.RunIoStatus = status;
  ReportFileFailure(run, name, operation);
}

// Adds the lines of a work file to the report, `margin` before each. Reading stops at the first
// failure; the report is then not whole.
void AppendWorkFile(Run& run, std::string_view stem, std::string_view margin) {
  const std::string name = run.workDirectory.NameOf(stem);
  if (!run.report.IsOpen() || !FileExists(name)) return;
  TextReader file;
  int status = file.Open(name);
  for (std::string line; status == kIoOk && (status = file.ReadLine(line)) == kIoOk;) {
    TellReportFailure(run, run.report.CopyLine(line.insert(0, margin)));
  }
  if (status != kIoEndOfFile) TellFailure(run, name, status, 'R');
}

void AppendControlCopy(Run& run) {
  if (!run.report.IsOpen()) return;
  if (run.input.copy.IsOpen()) {  // the run has ended while it was written
    const std::string name = run.workDirectory.NameOf(kControlCopyStem);
    TellFailure(run, name, run.input.copy.Close(), 'W');
  }
  PutControlCopyHeading(run);
  // The lines leave the column free that tells a printer what to do, when there is one.
  AppendWorkFile(run, kControlCopyStem, run.settings.FORMFD == '^' ? "" : " ");
}

void SayHowItEnded(Run& run, bool good) {
  if (good) {
    WriteConsole(run, "Measures constructed: use \"Diagnosis\" and \"Output Tables\" menus");
  } else {
    WriteConsole(run, "Oops! Use \"Edit\" menu to make corrections, then restart");
  }
}

}  // namespace

void SaveReportFront(Run& run) {
  // For the buffers of the files below: if there is no room, let it show while the report is open.
  constexpr std::size_t kBuffers = 4 << 16;
  std::vector<char>().reserve(kBuffers);
  TellReportFailure(run, run.report.Close());
  const std::string name = run.report.Name();
  // A device has taken the front already and can't give it back.
  if (IsRegularFile(name)) CopyReportToFront(run);
  const bool failureTold = run.report.failureTold;
  run.RunIoStatus = run.report.Open(name, FileMode::Replace);
  if (run.RunIoStatus != kIoOk) FatalFileFailure(run, name, 'O');
  run.report.failureTold = failureTold;
}

void FinishRun(Run& run) {
  if (run.finished) return;
  run.finished = true;
  const int status = run.RunIoStatus;
  run.console->SetMenuState(MenuState::AfterRun);
  AppendWorkFile(run, kFrontStem, "");
  AppendControlCopy(run);
  run.RunIoStatus = status;
  SayHowItEnded(run, status == 0 && run.complete);
  run.input.control.Close();
  if (run.report.IsOpen()) TellReportFailure(run, run.report.Close());
  run.RunIoStatus = status;
}

}  // namespace vardento
