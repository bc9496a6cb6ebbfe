#include "platform/direct_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/io_status.h"

namespace vardento {
namespace {

constexpr std::size_t kWindowSize = 64 * 1024;

}  // namespace

IoStatus DirectFile::Create(const std::string& path, std::size_t recordLength) {
  recordLength_ = std::max<std::size_t>(recordLength, 1);
  windowCapacity_ = std::max<std::size_t>(kWindowSize / recordLength_, 1);
  window_.assign(windowCapacity_ * recordLength_, 0);
  windowFirst_ = 0;
  windowFilled_ = 0;
  dirty_ = false;
  return file_.Open(path, FileMode::ReplacePrivate);
}

// Brings the window over the record (counted from 0). Windows begin at multiples of their capacity,
// so that a walk in either direction moves rarely.
IoStatus DirectFile::MoveWindow(std::uint64_t record) {
  if (record >= windowFirst_ && record - windowFirst_ < windowCapacity_) return kIoOk;
  if (const int status = Flush(); status != kIoOk) return status;
  windowFirst_ = record / windowCapacity_ * windowCapacity_;
  windowFilled_ = 0;
  std::size_t got = 0;
  const int status =
      file_.ReadAt(windowFirst_ * recordLength_, window_.data(), window_.size(), got);
  if (status != kIoOk) {
    windowFirst_ = UINT64_MAX;  // the window holds nothing that can be used
    return status;
  }
  windowFilled_ = got / recordLength_;
  return kIoOk;
}

IoStatus DirectFile::Write(int record, const void* bytes) {
  if (record < 1 || !IsOpen()) return EINVAL;
  const std::uint64_t number = static_cast<std::uint64_t>(record) - 1;
  if (const int status = MoveWindow(number); status != kIoOk) return status;
  const std::size_t index = static_cast<std::size_t>(number - windowFirst_);
  if (index > windowFilled_) {  // records skipped within the window are zero
    std::fill(window_.begin() + static_cast<std::ptrdiff_t>(windowFilled_ * recordLength_),
              window_.begin() + static_cast<std::ptrdiff_t>(index * recordLength_), 0);
  }
  std::memcpy(window_.data() + index * recordLength_, bytes, recordLength_);
  windowFilled_ = std::max(windowFilled_, index + 1);
  dirty_ = true;
  return kIoOk;
}

IoStatus DirectFile::Read(int record, void* bytes) {
  if (record < 1 || !IsOpen()) return EINVAL;
  const std::uint64_t number = static_cast<std::uint64_t>(record) - 1;
  if (const int status = MoveWindow(number); status != kIoOk) return status;
  const std::size_t index = static_cast<std::size_t>(number - windowFirst_);
  if (index >= windowFilled_) return kIoEndOfFile;
  std::memcpy(bytes, window_.data() + index * recordLength_, recordLength_);
  return kIoOk;
}

IoStatus DirectFile::Reserve(int records) {
  if (records < 1 || !IsOpen()) return EINVAL;
  return file_.Reserve(static_cast<std::uint64_t>(records) * recordLength_);
}

IoStatus DirectFile::Flush() {
  if (!dirty_) return kIoOk;
  const int status =
      file_.WriteAt(windowFirst_ * recordLength_, window_.data(), windowFilled_ * recordLength_);
  if (status == kIoOk) dirty_ = false;
  return status;
}

IoStatus DirectFile::Close() {
  if (!IsOpen()) return kIoOk;
  const int flushed = Flush();
  dirty_ = false;
  const int closed = file_.Close();
  return flushed != kIoOk ? flushed : closed;
}

}  // namespace vardento
