// What the program offers and what is written and tested about it must not drift apart.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "control/keyword_table.h"
#include "files/output_files.h"
#include "support/temp_directory.h"

namespace vardento::test {
namespace {

namespace fs = std::filesystem;

// The first two cells of each row of docs/CONTROL_VARIABLES.md: variable and its short forms.
std::map<std::string, std::set<std::string>> DocumentedVariables() {
  std::map<std::string, std::set<std::string>> variables;
  std::istringstream page(
      TempDirectory::ReadFile(VARDENTO_SOURCE_DIR "/docs/CONTROL_VARIABLES.md"));
  for (std::string line; std::getline(page, line);) {
    std::istringstream cells(line);
    std::string empty, name, prefixes;
    if (!std::getline(cells, empty, '|') || !std::getline(cells, name, '|') ||
        !std::getline(cells, prefixes, '|')) {
      continue;
    }
    std::istringstream words(prefixes);
    std::set<std::string>& forms = variables[name.substr(1, name.find_first_of("= ", 1) - 1)];
    for (std::string word; std::getline(words >> std::ws, word, ',');) {
      forms.insert(word.substr(0, word.find(' ')));
    }
  }
  return variables;
}

TEST(Completeness, EveryControlVariableStandsInTheManual) {
  const auto documented = DocumentedVariables();
  for (const KeywordRow& row : KeywordTable()) {
    if (row.kind == KeywordKind::Ignored || row.stage == KeywordStage::PerItem) continue;
    const auto entry = documented.find(std::string(row.name));
    if (entry == documented.end()) {
      ADD_FAILURE() << row.name << "= has no line in docs/CONTROL_VARIABLES.md";
      continue;
    }
    std::istringstream prefixes{std::string(row.prefixes)};
    for (std::string prefix; prefixes >> prefix;) {
      EXPECT_TRUE(entry->second.contains(prefix)) << row.name << "= as " << prefix;
    }
  }
}

// The list of output files names each by the variable that holds its name, and leaves none out.
TEST(Completeness, EveryOutputFileIsListedUnderItsVariable) {
  const auto isListed = [](const KeywordRow& row) {
    return std::ranges::any_of(OutputFiles(), [&row](const OutputFileRow& file) {
      return file.Variable() == std::string(row.name) + "=" &&
             row.target == KeywordTarget(file.name);
    });
  };
  const auto outputs = std::ranges::count_if(KeywordTable(), isListed);
  EXPECT_EQ(outputs, std::ssize(OutputFiles()));
  EXPECT_EQ(outputs, std::ranges::count(KeywordTable(), KeywordKind::File, &KeywordRow::kind));
}

// Every Table that prints and every file that is written has a whole run that shows its layout.
TEST(Completeness, EveryTableAndFileHasAWholeRun) {
  std::string expected, names = "\n";
  for (const auto& entry :
       fs::recursive_directory_iterator(fs::path(VARDENTO_SOURCE_DIR) / "tests/runs")) {
    if (entry.path().parent_path().filename() != "expected") continue;
    expected += TempDirectory::ReadFile(entry.path());
    names += entry.path().filename().string() + "\n";
  }
  for (const char* table :
       {"0.1",  "0.2",  "0.3",  "1.0",  "1.1",  "1.2",  "1.3",  "1.4",  "1.10", "1.12",
        "3.1",  "3.2",  "4.1",  "5.1",  "5.2",  "6.1",  "6.4",  "6.5",  "7.1",  "8.1",
        "9.1",  "9.2",  "10.1", "10.4", "10.5", "11.1", "12.2", "12.5", "12.6", "12.12",
        "13.1", "14.1", "15.1", "16.3", "17.1", "18.1", "19.1", "20.1", "20.2", "20.3",
        "21.1", "23.1", "23.2", "24.1", "24.2", "25.1", "26.1", "30.1", "31.1"}) {
    EXPECT_NE(expected.find(std::string("TABLE ") + table + " "), std::string::npos) << table;
  }
  for (const char* form : {".txt", ".csv", ".tab"}) {
    for (const char* file :
         {"persons", "items", "steps", "itemsteps", "scores", "observations", "scored"}) {
      EXPECT_NE(names.find(std::string("\n") + file + form + "\n"), std::string::npos)
          << file << form;
    }
  }
}

}  // namespace
}  // namespace vardento::test
