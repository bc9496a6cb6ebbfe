// Makes sure that a text file the user named is one that can be read by bytes, and ends with a line
// end.
#include <algorithm>

#include "platform/file.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kPiece = 4096;
constexpr std::size_t kStart = 512;  // bytes that tell UTF-16

// A byte order mark, or NULs in every second place alone: most of the characters of a list or of
// data have a code below 256, and of a list in another script its line ends and blanks have. A
// stray NUL in a text of bytes is no such thing.
bool IsUtf16(std::string_view start) {
  if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF")) return true;
  constexpr std::size_t kFewestBytes = 4;
  std::size_t nuls[2] = {0, 0};  // at even and at odd offsets
  for (std::size_t i = 0; i < start.size(); ++i) nuls[i % 2] += start[i] == '\0';
  int wideEnds = 0;  // line ends of two bytes
  for (std::size_t i = 0; i + 1 < start.size(); i += 2) {
    const std::string_view pair = start.substr(i, 2);
    wideEnds += pair == std::string_view("\n\0", 2) || pair == std::string_view("\0\n", 2);
  }
  const auto [fewer, more] = std::minmax(nuls[0], nuls[1]);
  return start.size() >= kFewestBytes && fewer == 0 && (more * 4 > start.size() || wideEnds > 1);
}

// Read by bytes such a file would be rubbish that looks like missing responses.
IoStatus RefuseUtf16(Run& run, File& file, const std::string& name) {
  char start[kStart];
  std::size_t got = 0;
  const int status = file.ReadAt(0, start, sizeof start, got);
  if (status == kIoOk && IsUtf16({start, got})) {
    FailRun(run, name + " IS UTF-16 TEXT: SAVE IT AS UTF-8");
  }
  return status;
}

// kIoOk when a line end stands behind the last text of the file or there is no text,
// kIoNoFinalLineEnd when there is none, or the failure.
IoStatus FindFinalLineEnd(File& file) {
  std::uint64_t left = 0;
  if (const int status = file.GetSize(left); status != kIoOk) return status;
  unsigned char bytes[kPiece];
  while (left > 0) {
    const std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(left, kPiece));
    left -= size;
    std::size_t got = 0;
    if (const int status = file.ReadAt(left, bytes, size, got); status != kIoOk) return status;
    for (std::size_t i = got; i > 0; --i) {
      if (bytes[i - 1] == '\n') return kIoOk;
      if (bytes[i - 1] > ' ') return kIoNoFinalLineEnd;
    }
  }
  return kIoOk;
}

// A file that can't be written may still be read.
IoStatus OpenForCheck(File& file, const std::string& name) {
  if (file.Open(name, FileMode::Update) == kIoOk) return kIoOk;
  return file.Open(name, FileMode::Read);
}

IoStatus AddLineEnd(File& file) {
  std::uint64_t size = 0;
  if (const int status = file.GetSize(size); status != kIoOk) return status;
  const int written = file.WriteAt(size, "\n", 1);
  const int closed = file.Close();
  return written != kIoOk ? written : closed;
}

// Asks for a mended or another file; a blank answer keeps the name.
void AskForFitFile(Run& run, std::string& name) {
  run.console->AddMenuEntry("Select here then add blank line at end of " + name);
  WriteConsole(run, "Use last entry in File Menu to add final blank line to:");
  WriteConsole(run, name);
  const std::string answer = AskLine(run, "Then press Enter key, or enter a different file name:");
  if (!Trim(answer).empty()) name = Trim(answer);
}

// In batch mode nobody can put the file right.
void EndBatch(Run& run) {
  if (!run.batch) return;
  run.RunIoStatus = -1;
  EndRun(run);
}

}  // namespace

void PrepareFile(Run& run, std::string& name, std::string_view caption) {
  KeepFromReport(run, name, caption);
  std::string tried;
  for (;;) {
    File file;
    run.RunIoStatus = OpenForCheck(file, name);
    if (run.RunIoStatus == kIoOk) run.RunIoStatus = RefuseUtf16(run, file, name);
    if (run.RunIoStatus == kIoOk) run.RunIoStatus = FindFinalLineEnd(file);
    if (run.RunIoStatus == kIoOk) {
      EnterInput(run, name, caption);
      return;
    }
    if (run.RunIoStatus != kIoNoFinalLineEnd) {
      ReportFileFailure(run, name, 'I');
      EndBatch(run);
      return;
    }
    if (tried != name) {
      tried = name;
      if (AddLineEnd(file) == kIoOk) continue;
      ReportMessage(run, "Failed to read last line of file: " + name);
      EndBatch(run);
    }
    AskForFitFile(run, name);
  }
}

}  // namespace vardento
