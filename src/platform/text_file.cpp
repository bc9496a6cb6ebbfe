#include "platform/text_file.h"

#include <algorithm>
#include <cstring>

#include "platform/io_status.h"

namespace vardento {
namespace {

constexpr std::size_t kBufferSize = 64 * 1024;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

IoStatus TextReader::Open(const std::string& path) {
  if (const int status = file_.Open(path, FileMode::Read); status != kIoOk) return status;
  name_ = path;
  buffer_.resize(kBufferSize);
  return Rewind();
}

IoStatus TextReader::Rewind() {
  if (!file_.IsOpen()) return kIoEndOfFile;
  next_ = end_ = 0;
  offset_ = 0;
  lineNumber_ = 0;
  int status = kIoOk;
  if (!FillBuffer(status)) return status;
  const std::string_view start(buffer_.data(), end_);
  if (start.substr(0, kByteOrderMark.size()) == kByteOrderMark) next_ = kByteOrderMark.size();
  return kIoOk;
}

// False at the end of the file (status kIoOk) or on a failure.
bool TextReader::FillBuffer(int& status) {
  std::size_t got = 0;
  next_ = end_ = 0;
  status = file_.ReadAt(offset_, buffer_.data(), buffer_.size(), got);
  if (status != kIoOk) return false;
  offset_ += got;
  end_ = got;
  return got > 0;
}

IoStatus TextReader::ReadLine(std::string& line, int maxLength) {
  line.clear();
  if (!file_.IsOpen()) return kIoEndOfFile;
  const std::size_t limit = static_cast<std::size_t>(std::max(maxLength, 0));
  ++lineNumber_;
  std::uint64_t length = 0;  // of the whole line, what is cut included
  for (;;) {
    if (next_ == end_) {
      int status = kIoOk;
      if (!FillBuffer(status)) {
        if (status != kIoOk) return status;
        return length > 0 ? kIoOk : kIoEndOfFile;
      }
    }
    const char* from = buffer_.data() + next_;
    const void* found = std::memchr(from, '\n', end_ - next_);
    const std::size_t piece =
        found ? static_cast<std::size_t>(static_cast<const char*>(found) - from) : end_ - next_;
    line.append(from, std::min(piece, limit - line.size()));
    length += piece;
    next_ += piece;
    if (!found) continue;
    ++next_;
    if (length == line.size() && !line.empty() && line.back() == '\r') line.pop_back();
    return kIoOk;
  }
}

void TextReader::Close() {
  next_ = end_ = 0;
  static_cast<void>(file_.Close());
}

IoStatus TextWriter::Open(const std::string& path, FileMode mode) {
  Abandon();
  status_ = file_.Open(path, mode);
  cutIsDue_ = status_ == kIoOk && mode == FileMode::Keep;
  return status_;
}

IoStatus TextWriter::CutWhenDue() {
  if (!cutIsDue_) return kIoOk;
  cutIsDue_ = false;
  return file_.Cut();
}

void TextWriter::Abandon() {
  buffer_.clear();
  cutIsDue_ = false;
  static_cast<void>(file_.Close());
}

IoStatus TextWriter::WriteLine(std::string_view line) {
  if (status_ != kIoOk) return status_;
  buffer_.append(line);
  buffer_.push_back('\n');
  return buffer_.size() < kBufferSize ? kIoOk : Flush();
}

IoStatus TextWriter::Flush() {
  if (status_ == kIoOk) status_ = CutWhenDue();
  if (status_ == kIoOk && !buffer_.empty()) {
    status_ = file_.Append(buffer_.data(), buffer_.size());
  }
  buffer_.clear();
  return status_;
}

IoStatus TextWriter::Close() {
  if (!IsOpen()) return status_;
  static_cast<void>(Flush());  // status_ keeps it
  const int closed = file_.Close();
  if (status_ == kIoOk) status_ = closed;
  return status_;
}

}  // namespace vardento
