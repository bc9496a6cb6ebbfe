#include "lists/list_file.h"

#include "lists/list_line.h"
#include "platform/io_status.h"
#include "run/messages.h"

namespace vardento {

bool OpenListFile(Run& run, TextReader& reader, std::string& fileName, std::string_view caption,
                  std::string_view announcement) {
  AddEditEntry(run, caption, fileName);
  WriteConsole(run, std::string(announcement) + fileName);
  PrepareFile(run, fileName);
  if (run.RunIoStatus != kIoOk) return false;
  run.RunIoStatus = reader.Open(fileName);
  if (run.RunIoStatus == kIoOk) return true;
  ReportFileFailure(run, fileName, 'I');
  return false;
}

void OpenListFileOrEnd(Run& run, TextReader& reader, std::string& fileName,
                       std::string_view caption, std::string_view announcement) {
  if (OpenListFile(run, reader, fileName, caption, announcement)) return;
  run.RunIoStatus = -1;
  EndRun(run);
}

bool ReadListLine(Run& run, TextReader& reader, const std::string& fileName, std::string& line,
                  bool skipTitles) {
  for (;;) {
    PumpMessages(run);
    const int status = reader.ReadLine(line);
    if (status == kIoEndOfFile) return false;
    if (status != kIoOk) {
      run.RunIoStatus = status;
      FatalFileFailure(run, fileName, 'I');
    }
    if (CleanListLine(line, skipTitles)) return true;
  }
}

}  // namespace vardento
