// Every file of the program is opened, read, written and closed here, so that a test can make the
// n-th operation fail and so that one place knows the flags (no symbolic links for work files, mode
// 0600, no waiting on a pipe).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/io_status.h"

namespace vardento {

enum class FileMode {
  Read,             // an existing regular file; a directory, pipe or device is refused
  Update,           // an existing regular file, to read and write
  Replace,          // created or cut to nothing, for a file the user named
  Keep,             // as Replace, but left as it is until Cut()
  CreateExclusive,  // must not exist; mode 0600; links are not followed
  ReplacePrivate,   // a work file: as CreateExclusive, after removing one of this user's own
};

// Makes the n-th file operation (open, read, write, close, counted from 1) from now on fail with
// `error` (an errno value). n = 0 switches it off. For tests only.
void FailFileOperation(int n, int error);

// One open file. All operations return a status of io_status.h. Movable; the destructor closes and
// drops the result, so a writer must call Close() itself to learn whether its data arrived.
class File {
 public:
  File() = default;
  ~File();
  File(File&& other) noexcept;
  File& operator=(File&& other) noexcept;
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  IoStatus Open(const std::string& path, FileMode mode);
  bool IsOpen() const { return descriptor_ >= 0; }
  // Reads at most `size` bytes at `offset`; `got` is what was read, less than asked only at the
  // end.
  IoStatus ReadAt(std::uint64_t offset, void* bytes, std::size_t size, std::size_t& got);
  IoStatus WriteAt(std::uint64_t offset, const void* bytes, std::size_t size);
  // Makes the file at least so long, with zeros, and takes the room for it.
  IoStatus Reserve(std::uint64_t size);
  // Writes at the current end of what was written in sequence (works for devices too).
  IoStatus Append(const void* bytes, std::size_t size);
  // Cuts a regular file to nothing; a device has nothing to cut.
  IoStatus Cut();
  IoStatus GetSize(std::uint64_t& size);
  IoStatus Close();

 private:
  int descriptor_ = -1;
};

bool FileExists(const std::string& path);
IoStatus RemoveFile(const std::string& path);

}  // namespace vardento
