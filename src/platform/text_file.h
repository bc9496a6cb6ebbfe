// Text files by lines: what a Control File, a label list or a data file is read through, and what
// reports and output files are written through.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/io_status.h"

namespace vardento {

// No record of any file is longer; what stands behind is cut.
inline constexpr int kMaxLineLength = 32000;

// Reads lines of any file, however long. Windows line ends and a UTF-8 byte order mark at the start
// of the file are read as if they were not there; every other byte arrives as it stands.
class TextReader {
 public:
  IoStatus Open(const std::string& path);
  bool IsOpen() const { return file_.IsOpen(); }
  // The file opened last, and the number of the line that was given last, counted from the start;
  // GoTo doesn't count back.
  const std::string& Name() const { return name_; }
  int LineNumber() const { return lineNumber_; }
  // The next line without its end, cut at `maxLength` bytes. Returns kIoOk, kIoEndOfFile or a
  // failure; a last line without a line end counts as a line.
  IoStatus ReadLine(std::string& line, int maxLength = kMaxLineLength);
  // Starts again at the first line.
  IoStatus Rewind();
  // Where the next line begins, and the way back to there.
  std::uint64_t Place() const { return offset_ - (end_ - next_); }
  void GoTo(std::uint64_t place) {
    offset_ = place;
    next_ = end_ = 0;
  }
  void Close();  // nothing can be lost

 private:
  bool FillBuffer(int& status);

  File file_;
  std::string name_;
  int lineNumber_ = 0;
  std::vector<char> buffer_;
  std::size_t next_ = 0;
  std::size_t end_ = 0;
  std::uint64_t offset_ = 0;
};

// Writes lines, buffered: the report, output files, and every work file of lines. Each call returns
// the status of the first failure since Open. Close() completes the file, which is whole only when
// it returned kIoOk; a writer that goes without it gives up what it still holds.
class TextWriter {
 public:
  IoStatus Open(const std::string& path, FileMode mode);
  bool IsOpen() const { return file_.IsOpen(); }
  IoStatus WriteLine(std::string_view line);
  IoStatus Flush();
  IoStatus Close();
  // Closes the file and forgets what was not written yet: a file opened with FileMode::Keep, to
  // which no more than a buffer has gone, is then as it was.
  void Abandon();

 private:
  IoStatus CutWhenDue();

  File file_;
  bool cutIsDue_ = false;
  std::string buffer_;
  int status_ = 0;
};

}  // namespace vardento
