#include "platform/directories.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

namespace vardento {
namespace {

std::string UserDirectoryBelow(std::string base) {
  if (base.back() != '/') base.push_back('/');
  return base + "vardento-" + std::to_string(geteuid()) + "/";
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

bool IsSameFile(const std::string& a, const std::string& b) {
  struct stat infoA, infoB;
  return stat(a.c_str(), &infoA) == 0 && stat(b.c_str(), &infoB) == 0 &&
         infoA.st_dev == infoB.st_dev && infoA.st_ino == infoB.st_ino;
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
