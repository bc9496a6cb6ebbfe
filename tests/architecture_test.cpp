// The folders of src stand in an order, and no file includes a header from a folder on its right.
// The table here is that of docs/ARCHITECTURE.md.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>

namespace vardento::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

const fs::path kSource = fs::path(VARDENTO_SOURCE_DIR) / "src";

// Folder: the folders whose headers it may include, besides its own.
const std::map<std::string, Names> kMayInclude = [] {
  std::map<std::string, Names> table;
  Names before;
  for (const char* folder : {"text", "platform", "run", "control", "lists", "data", "measure",
                             "analysis", "report", "files", "shell", "program"}) {
    table[folder] = before;
    before.insert(folder);
  }
  table["files"].erase("report");
  return table;
}();

bool IsAllowed(const std::string& file, const std::string& header) {
  const std::string from = file.substr(0, file.find('/'));
  const std::string to = header.substr(0, header.find('/'));
  if (from == to) return true;
  if (from == "main.cpp") return to == "program";
  const auto row = kMayInclude.find(from);
  return row != kMayInclude.end() && row->second.contains(to);
}

TEST(Architecture, EveryIncludeFollowsTheTable) {
  int includes = 0;
  for (const auto& entry : fs::recursive_directory_iterator(kSource)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".h" && extension != ".cpp") continue;
    const std::string file = fs::relative(entry.path(), kSource).string();
    std::ifstream text(entry.path());
    for (std::string line; std::getline(text, line);) {
      if (!line.starts_with("#include \"")) continue;
      const std::string header = line.substr(10, line.find('"', 10) - 10);
      ++includes;
      EXPECT_TRUE(IsAllowed(file, header)) << "src/" << file << " includes " << header;
      EXPECT_TRUE(fs::exists(kSource / header)) << "src/" << file << " includes " << header;
    }
  }
  EXPECT_GT(includes, 50) << "the walk has missed the sources";
}

// The limits that keep a file readable; 500 lines is the habit, 800 the end.
TEST(Architecture, NoSourceFileOutgrowsItsLimit) {
  for (const auto& entry : fs::recursive_directory_iterator(kSource)) {
    if (entry.is_directory()) continue;
    std::ifstream text(entry.path());
    int lines = 0;
    for (std::string line; std::getline(text, line);) ++lines;
    EXPECT_LE(lines, 800) << entry.path();
  }
}

}  // namespace
}  // namespace vardento::test
