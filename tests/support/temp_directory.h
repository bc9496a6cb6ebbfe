// A directory that lives as long as the test that made it.
#pragma once

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vardento::test {

class TempDirectory {
 public:
  TempDirectory() {
    std::string form = (std::filesystem::temp_directory_path() / "vardento-test-XXXXXX").string();
    if (mkdtemp(form.data()) == nullptr) throw std::runtime_error("no temporary directory");
    path_ = form + "/";
  }
  ~TempDirectory() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;

  const std::string& Path() const { return path_; }  // ends in "/"
  std::string NameOf(std::string_view name) const { return path_ + std::string(name); }
  // Writes the bytes as they stand and returns the full name; sub-directories are made.
  std::string Write(std::string_view name, std::string_view text) const {
    const std::string full = NameOf(name);
    std::filesystem::create_directories(std::filesystem::path(full).parent_path());
    std::ofstream(full, std::ios::binary) << text;
    return full;
  }
  // The bytes of the file, "" when it isn't there.
  std::string Read(std::string_view name) const { return ReadFile(NameOf(name)); }
  bool Exists(std::string_view name) const { return std::filesystem::exists(NameOf(name)); }
  // Names of all files below, relative and sorted.
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path_)) {
      if (!entry.is_directory()) names.push_back(entry.path().string().substr(path_.size()));
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  static std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  std::string path_;
};

}  // namespace vardento::test
