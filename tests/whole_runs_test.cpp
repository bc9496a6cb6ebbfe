// Whole runs of the program, each a directory of tests/runs: control.txt, its data, and under
// expected/ the files that must come out, to the byte but for date, version and place. A file
// "words" holds further words of the command line. The expected "tables.txt" is the report without
// the part behind the Tables, whose convergence table hangs on every digit of the iteration.

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <sstream>

#include "support/program.h"

namespace vardento::test {
namespace {

namespace fs = std::filesystem;

const fs::path kRuns = fs::path(VARDENTO_SOURCE_DIR) / "tests/runs";
// Long enough that the 40 characters of the report's name that page headings show are the same on
// every machine.
constexpr char kDirectory[] = "the-directory-in-which-this-test-is-run";

std::vector<std::string> NamesOfRuns() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(kRuns)) {
    if (entry.is_directory()) names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

// What differs from run to run and from version to version.
std::string Mask(std::string text, const std::string& directory) {
  const std::pair<const char*, const char*> changes[] = {
      {"[A-Z][a-z]{2} [ 1-3][0-9] [ 12][0-9]:[0-9]{2} 20[0-9]{2}", "Mon DD HH:MM YYYY"},
      {"VARDENTO [ 0-9.]{4}", "VARDENTO V.VV"},
      {"version [ 0-9.]{4}", "version V.VV"}};
  for (const auto& [pattern, mask] : changes) {
    text = std::regex_replace(text, std::regex(pattern), mask);
  }
  for (std::size_t at; (at = text.find(directory)) != std::string::npos;) {
    text.replace(at, directory.size(), "/");
  }
  return text;
}

std::string UnifiedDiff(const TempDirectory& directory, const std::string& expected,
                        const std::string& actual) {
  const std::string command = "diff -u " + directory.Write("expected", expected) + " " +
                              directory.Write("actual", actual) + " > " +
                              directory.NameOf("difference");
  if (std::system(command.c_str()) < 0) return "diff can't be run";
  return directory.Read("difference");
}

std::string ReadResult(const fs::path& place, const std::string& name) {
  if (name != "tables.txt") return TempDirectory::ReadFile(place / name);
  const std::string report = TempDirectory::ReadFile(place / "report.txt");
  return report.substr(0, report.find("TABLE 0.1"));
}

class WholeRuns : public testing::TestWithParam<std::string> {};

TEST_P(WholeRuns, GiveTheFilesExpected) {
  const fs::path source = kRuns / GetParam();
  const TempDirectory directory;
  const TempDirectory scratch;
  const fs::path place = fs::path(directory.Path()) / kDirectory;
  fs::copy(source, place, fs::copy_options::recursive);
  fs::remove_all(place / "expected");

  std::vector<std::string> words{std::string(kDirectory) + "/control.txt",
                                 std::string(kDirectory) + "/report.txt", "BATCH=Y"};
  std::istringstream more(TempDirectory::ReadFile(source / "words"));
  for (std::string word; more >> word;) words.push_back(word);
  const ProgramResult result = Launch(directory, words, scratch.Path());

  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(result.output, "");
  int compared = 0;
  for (const auto& entry : fs::directory_iterator(source / "expected")) {
    const std::string name = entry.path().filename().string();
    const std::string expected = TempDirectory::ReadFile(entry.path());
    const std::string actual = Mask(ReadResult(place, name), directory.Path());
    EXPECT_TRUE(expected == actual) << name << ":\n" << UnifiedDiff(scratch, expected, actual);
    ++compared;
  }
  EXPECT_GT(compared, 0) << "nothing is expected of this run";
}

INSTANTIATE_TEST_SUITE_P(Cases, WholeRuns, testing::ValuesIn(NamesOfRuns()),
                         [](const auto& parameter) {
                           std::string name = parameter.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace vardento::test
