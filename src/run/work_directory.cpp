#include "run/work_directory.h"

#include <algorithm>
#include <random>

#include "platform/directories.h"
#include "platform/file.h"
#include "platform/io_status.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kNumbers = 1000;  // three digits

std::string TailOf(int number) {
  std::string digits = integer_text(number, 3);
  std::replace(digits.begin(), digits.end(), ' ', '0');
  return digits + "kq.txt";
}

}  // namespace

bool WorkDirectory::Prepare(const std::string& path) {
  RemoveFiles();
  path_ = path;
  tail_.clear();
  if (path_.empty() || path_.back() != '/') path_.push_back('/');
  if (!MakePrivateDirectory(path_)) return false;
  const int start = static_cast<int>(std::random_device()() % kNumbers);
  for (int i = 0; i < kNumbers; ++i) {
    const std::string tail = TailOf((start + i) % kNumbers);
    // A report that an earlier run left behind keeps its number.
    if (FileExists(path_ + "ZOU" + tail)) continue;
    File file;
    const int status = file.Open(path_ + "ZIN" + tail, FileMode::CreateExclusive);
    if (status != kIoOk) {
      if (FileExists(path_ + "ZIN" + tail)) continue;  // another run's
      return false;
    }
    tail_ = tail;
    NameOf("ZIN");
    if (file.Close() == kIoOk) return true;
    RemoveFiles();
    return false;
  }
  return false;
}

std::string WorkDirectory::NameOf(std::string_view stem) {
  std::string name = path_ + std::string(stem) + tail_;
  if (std::find(names_.begin(), names_.end(), name) == names_.end()) names_.push_back(name);
  return name;
}

bool WorkDirectory::IsWorkFile(std::string_view name) const {
  return !tail_.empty() && name.find(tail_) != std::string_view::npos;
}

void WorkDirectory::Keep(const std::string& name) { std::erase(names_, name); }

void WorkDirectory::Remove(std::string_view stem) {
  const std::string name = path_ + std::string(stem) + tail_;
  static_cast<void>(RemoveFile(name));
  Keep(name);
}

void WorkDirectory::RemoveFiles() {
  // "ZIN" holds the run's number: it goes last.
  while (!names_.empty()) {
    static_cast<void>(RemoveFile(names_.back()));  // nothing can be done about one that stays
    names_.pop_back();
  }
}

}  // namespace vardento
