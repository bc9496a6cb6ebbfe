#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <utility>

#include "platform/io_status.h"

namespace vardento {
namespace {

// The fault that a test ordered: operations left until it strikes, and its errno value.
std::atomic<int> operationsToFault{0};
std::atomic<int> faultError{0};

// True for the one operation that a test wants to fail; errno is then set.
bool FaultStrikes() {
  if (operationsToFault.load(std::memory_order_relaxed) == 0) return false;
  if (operationsToFault.fetch_sub(1) != 1) return false;
  errno = faultError.load();
  return true;
}

bool ParentExists(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos || slash == 0) return true;
  struct stat info;
  return stat(path.substr(0, slash).c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

int StatusOfFailedOpen(const std::string& path) {
  const int error = errno;
  if (error == ENOENT && !ParentExists(path)) return kIoDirectoryNotFound;
  if (error == ELOOP || error == ENXIO) return EACCES;  // a link or a pipe where none may be
  return StatusOfErrno(error);
}

int FlagsOf(FileMode mode) {
  // O_NONBLOCK: opening a pipe or a terminal by mistake must not wait.
  const int common = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  switch (mode) {
    case FileMode::Read:
      return common | O_RDONLY;
    case FileMode::Update:
      return common | O_RDWR;
    case FileMode::Replace:
    case FileMode::Keep:
      return common | O_WRONLY | O_CREAT;
    case FileMode::CreateExclusive:
    case FileMode::ReplacePrivate:
      return common | O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW;
  }
  return common;
}

// Whether what was opened may be used in this mode, as a status.
IoStatus CheckKind(int descriptor, FileMode mode) {
  struct stat info;
  if (fstat(descriptor, &info) != 0) return StatusOfErrno(errno);
  if (S_ISDIR(info.st_mode)) return EISDIR;
  if (S_ISREG(info.st_mode)) return kIoOk;
  // The user may send a report to a device (/dev/null); nothing else is read from or kept there.
  const bool isForUser = mode == FileMode::Replace || mode == FileMode::Keep;
  return isForUser && S_ISCHR(info.st_mode) ? kIoOk : IoStatus(EINVAL);
}

// The writes to a device may wait; only its opening must not.
int LetDeviceWait(int descriptor) {
  struct stat info;
  if (fstat(descriptor, &info) != 0) return StatusOfErrno(errno);
  if (S_ISREG(info.st_mode)) return kIoOk;
  return fcntl(descriptor, F_SETFL, O_WRONLY) == 0 ? kIoOk : StatusOfErrno(errno);
}

// A work file that is made anew: the old one goes first. What isn't a plain file of this user's own
// stays, and the exclusive creation behind this fails on it.
void RemoveOwnFile(const std::string& path) {
  struct stat info;
  if (lstat(path.c_str(), &info) != 0) return;
  if (S_ISREG(info.st_mode) && info.st_uid == geteuid() && info.st_nlink == 1) {
    ::unlink(path.c_str());
  }
}

}  // namespace

void FailFileOperation(int n, int error) {
  faultError = error;
  operationsToFault = n;
}

File::~File() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

File::File(File&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

File& File::operator=(File&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

IoStatus File::Open(const std::string& path, FileMode mode) {
  if (IsOpen()) static_cast<void>(Close());
  if (FaultStrikes()) return StatusOfErrno(errno);
  if (path.find('\0') != std::string::npos) return kIoFileNotFound;
  const bool isPrivate = mode == FileMode::CreateExclusive || mode == FileMode::ReplacePrivate;
  const mode_t permissions = isPrivate ? 0600 : 0666;
  if (mode == FileMode::ReplacePrivate) RemoveOwnFile(path);
  int descriptor = -1;
  do {
    descriptor = ::open(path.c_str(), FlagsOf(mode), permissions);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) return StatusOfFailedOpen(path);
  descriptor_ = descriptor;
  int status = CheckKind(descriptor, mode);
  if (status == kIoOk) status = LetDeviceWait(descriptor);
  if (status == kIoOk && mode == FileMode::Replace) status = Cut();
  if (status != kIoOk) {
    ::close(descriptor);
    descriptor_ = -1;
    return status;
  }
  return kIoOk;
}

IoStatus File::Cut() {
  struct stat info;
  if (fstat(descriptor_, &info) != 0) return StatusOfErrno(errno);
  if (!S_ISREG(info.st_mode)) return kIoOk;
  return ftruncate(descriptor_, 0) == 0 ? kIoOk : StatusOfErrno(errno);
}

IoStatus File::ReadAt(std::uint64_t offset, void* bytes, std::size_t size, std::size_t& got) {
  got = 0;
  if (FaultStrikes()) return StatusOfErrno(errno);
  while (got < size) {
    const ssize_t n = ::pread(descriptor_, static_cast<char*>(bytes) + got, size - got,
                              static_cast<off_t>(offset + got));
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return StatusOfErrno(errno);
    if (n == 0) break;
    got += static_cast<std::size_t>(n);
  }
  return kIoOk;
}

IoStatus File::WriteAt(std::uint64_t offset, const void* bytes, std::size_t size) {
  if (FaultStrikes()) return StatusOfErrno(errno);
  for (std::size_t done = 0; done < size;) {
    const ssize_t n = ::pwrite(descriptor_, static_cast<const char*>(bytes) + done, size - done,
                               static_cast<off_t>(offset + done));
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return StatusOfErrno(errno);
    done += static_cast<std::size_t>(n);
  }
  return kIoOk;
}

IoStatus File::Reserve(std::uint64_t size) {
  if (FaultStrikes()) return StatusOfErrno(errno);
  int error = 0;
  do {
    error = ::posix_fallocate(descriptor_, 0, static_cast<off_t>(size));
  } while (error == EINTR);
  // A file system that can't do it shows its lack of room later.
  if (error == 0 || error == EOPNOTSUPP || error == EINVAL) return kIoOk;
  return StatusOfErrno(error);
}

IoStatus File::Append(const void* bytes, std::size_t size) {
  if (FaultStrikes()) return StatusOfErrno(errno);
  for (std::size_t done = 0; done < size;) {
    const ssize_t n = ::write(descriptor_, static_cast<const char*>(bytes) + done, size - done);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return StatusOfErrno(errno);
    done += static_cast<std::size_t>(n);
  }
  return kIoOk;
}

IoStatus File::GetSize(std::uint64_t& size) {
  struct stat info;
  if (fstat(descriptor_, &info) != 0) return StatusOfErrno(errno);
  size = static_cast<std::uint64_t>(info.st_size);
  return kIoOk;
}

IoStatus File::Close() {
  if (descriptor_ < 0) return kIoOk;
  const int descriptor = std::exchange(descriptor_, -1);
  // An interrupted close has closed the file all the same.
  const int error = ::close(descriptor) == 0 || errno == EINTR ? 0 : errno;
  if (FaultStrikes()) return StatusOfErrno(errno);
  return StatusOfErrno(error);
}

bool FileExists(const std::string& path) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0;
}

IoStatus RemoveFile(const std::string& path) {
  return ::unlink(path.c_str()) == 0 ? kIoOk : StatusOfErrno(errno);
}

}  // namespace vardento
