#include "platform/directories.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

namespace vardento {
namespace {

namespace fs = std::filesystem;

std::string UserDirectoryBelow(std::string base) {
  if (base.back() != '/') base.push_back('/');
  return base + "vardento-" + std::to_string(geteuid()) + "/";
}

// The full name of the place where writing to `path` would put a new file: links are followed, the
// last of which may lead to nothing. As given when its directory isn't there either.
fs::path PlaceOf(fs::path path) {
  constexpr int kMostLinks = 40;  // as the system follows
  std::error_code failure;
  for (int i = 0; i < kMostLinks && fs::is_symlink(path, failure); ++i) {
    path = path.parent_path() / fs::read_symlink(path, failure);
  }
  const fs::path directory = fs::canonical(path.parent_path() / ".", failure);
  return failure ? path : directory / path.filename();
}

}  // namespace

std::string CurrentDirectory() {
  std::vector<char> buffer(4096);
  while (!getcwd(buffer.data(), buffer.size())) {
    if (errno != ERANGE) return {};
    buffer.resize(2 * buffer.size());
  }
  std::string path(buffer.data());
  if (path.back() != '/') path.push_back('/');
  return path;
}

bool ChangeDirectory(const std::string& path) { return chdir(path.c_str()) == 0; }

std::string DirectoryOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? std::string() : std::string(path.substr(0, slash + 1));
}

bool IsSamePlainFile(const std::string& a, const std::string& b) {
  struct stat infoA, infoB;
  const bool isThere = stat(a.c_str(), &infoA) == 0;
  if (isThere != (stat(b.c_str(), &infoB) == 0)) return false;
  if (!isThere) return PlaceOf(a) == PlaceOf(b);
  return S_ISREG(infoA.st_mode) && infoA.st_dev == infoB.st_dev && infoA.st_ino == infoB.st_ino;
}

bool IsRegularFile(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool MakePrivateDirectory(const std::string& path) {
  // A name that ends in "/" would follow a link.
  const std::string name = path.substr(0, path.find_last_not_of('/') + 1);
  if (name.empty() || (mkdir(name.c_str(), 0700) != 0 && errno != EEXIST)) return false;
  const int descriptor = open(name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (descriptor < 0) return false;
  struct stat info;
  bool good = fstat(descriptor, &info) == 0 && info.st_uid == geteuid();
  if (good && (info.st_mode & 0777) != 0700) good = fchmod(descriptor, 0700) == 0;
  close(descriptor);
  return good;
}

std::string DefaultWorkDirectory() {
  const char* base = std::getenv("TMPDIR");
  return UserDirectoryBelow(base && *base == '/' ? base : "/tmp");
}

std::string SecondWorkDirectory() { return UserDirectoryBelow("/var/tmp"); }

}  // namespace vardento
