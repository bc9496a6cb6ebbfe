// What the run says: lines on the console, messages that reach a batch run's report too, and the
// words for a file that failed.
#pragma once

#include <string>
#include <string_view>

#include "run/run.h"

namespace vardento {

// Whom messages ask the user to send a file to.
inline constexpr std::string_view kSupportAddress = "the developers of Vardento";

// One line on the console, less its trailing blanks. Nothing in batch mode.
void WriteConsole(Run& run, std::string_view text);
// Text of up to 1,024 characters to the console, in batch mode to the standard error stream.
void TellUser(Run& run, std::string_view text);
// As TellUser; in batch mode also to the report, when it is open.
void ReportMessage(Run& run, std::string_view text);
// The message " WARNING: ", file and line of what is told, then `text`: what was found and what was
// done. A line of a work file is told as the line of the Control File that it comes from. A file
// beside the Control File needs no directory.
void Warn(Run& run, const SourceLine& where, std::string_view text);
// One plain line of the report, by the rules of ReportOutput::PutLine, with the report's own
// failure words when it can't be written. Pumps messages until the run is finished.
void WriteReportText(Run& run, std::string_view line);
// The same for a line that looks different on the console, which shows what can't be written.
void WriteReportText(Run& run, std::string_view line, std::string_view onConsole);

// Marks the run as one whose report is not whole and tells it, once. True when it was told just
// now; a status of 0 is no failure.
bool TellReportFailure(Run& run, int status);

// The message for the file `name` after run.RunIoStatus; operation is 'I', 'O', 'R' or 'W'.
void ReportFileFailure(Run& run, std::string_view name, char operation);
[[noreturn]] void FatalFileFailure(Run& run, std::string_view name, char operation);

// Leaves the run at once: unwinds to MainRun, which finishes the report.
[[noreturn]] void EndRun(Run& run);
// A fatal condition in its own words: the message, RunIoStatus = -1, EndRun.
[[noreturn]] void FailRun(Run& run, std::string_view text);

// Makes sure that a text file the user named can be read and ends with a line end, adding one when
// it has none. `name` may come back changed by the user. RunIoStatus is 0 when the file is fit, and
// it is then one of the run's files under its caption; in batch mode a file that isn't ends the
// run. Text in UTF-16 ends any run, and the file stays as it is.
void PrepareFile(Run& run, std::string& name, std::string_view caption);

// Shows the prompt and takes one line of the user. An interrupt, or no more input, ends the run and
// the process with it.
std::string AskLine(Run& run, std::string_view prompt);

// Registers a file of the run with the Edit menu (captions such as "Edit TFILE="), unless it is one
// of the run's own work files.
void AddEditEntry(Run& run, std::string_view caption, std::string_view fileName);

// Handles waiting user messages: raises StopRequest after the first interrupt, ends the run after
// the second or when the process was told to end.
void PumpMessages(Run& run);
// Draws the progress bar up to done of total, pumping messages on the way. For batch runs as well:
// it then only pumps.
void ShowProgress(Run& run, int done, int total);

}  // namespace vardento
