// docs/TABLES.md shows the Tables of an example: what stands there is what the program prints. A
// section "## Table N.M: title" shows the lines of that Table behind its heading; a line of three
// dots stands for lines that are left out.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "report/small_run.h"
#include "support/whole_run.h"

namespace vardento::test {
namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

constexpr char kPage[] = VARDENTO_SOURCE_DIR "/docs/TABLES.md";
constexpr char kExample[] = VARDENTO_SOURCE_DIR "/examples/verbal-aggression";
constexpr char kDots[] = "...";

Lines LinesOf(const std::string& text) {
  Lines lines = SmallRun::LinesOf(text);
  for (std::string& line : lines) line.erase(line.find_last_not_of(" \f") + 1);
  return lines;
}

// The number behind `mark` at the start of a line; empty on other lines.
std::string NumberBehind(const std::string& line, std::string_view mark) {
  if (!line.starts_with(mark)) return {};
  return line.substr(mark.size(), line.find_first_of(": ", mark.size()) - mark.size());
}

std::map<std::string, Lines> ShownTables() {
  std::map<std::string, Lines> tables;
  std::string table;
  bool shown = false;
  for (const std::string& line : LinesOf(TempDirectory::ReadFile(kPage))) {
    if (const std::string number = NumberBehind(line, "## Table "); !number.empty()) table = number;
    if (line == "```") {
      shown = !shown;
    } else if (shown) {
      tables[table].push_back(line);
    }
  }
  return tables;
}

// The lines of each Table behind the rule of its heading, without blank lines at either end.
std::map<std::string, Lines> PrintedTables(const std::string& report) {
  std::map<std::string, Lines> tables;
  Lines* table = nullptr;
  bool heading = false;
  for (const std::string& line : LinesOf(report)) {
    const std::size_t start = line.starts_with('\f') ? 1 : 0;
    const std::string number = NumberBehind(line.substr(start), "TABLE ");
    if (!number.empty() && number.find('.') != number.npos) {
      table = &tables[number];
      heading = true;
    } else if (heading) {
      heading = !line.starts_with("-----");
    } else if (table != nullptr && !(table->empty() && line.empty())) {
      table->push_back(line);
    }
  }
  for (auto& [number, lines] : tables) {
    while (!lines.empty() && lines.back().empty()) lines.pop_back();
  }
  return tables;
}

// Lines up to the next dots, which are taken off too.
Lines TakePart(Lines& lines) {
  const auto dots = std::find(lines.begin(), lines.end(), kDots);
  Lines part(lines.begin(), dots);
  lines.erase(lines.begin(), dots == lines.end() ? dots : dots + 1);
  return part;
}

// The first line of a shown part that isn't printed where it ought to be; empty when there is none.
std::string FindStaleLine(Lines shown, const Lines& printed) {
  const bool open = !shown.empty() && shown.back() == kDots;
  auto place = printed.begin();
  for (bool first = true; !shown.empty(); first = false) {
    const Lines part = TakePart(shown);
    const bool atEnd = shown.empty() && !open;
    const auto found = atEnd ? std::find_end(place, printed.end(), part.begin(), part.end())
                             : std::search(place, printed.end(), part.begin(), part.end());
    if (found == printed.end() || (first && found != place)) {
      return part.front() + "   (or a line behind it)";
    }
    place = found + static_cast<long>(part.size());
  }
  return open || place == printed.end() ? "" : *place + "   (printed, but not shown)";
}

TEST(TablesPage, ShowsWhatTheExamplePrints) {
  const auto shown = ShownTables();
  ASSERT_GT(shown.size(), 10U);
  WholeRun whole;
  fs::copy(kExample, whole.directory.Path());
  std::string requests;
  for (const auto& [table, lines] : shown) requests += table + "\n";
  whole.directory.Write("tables.txt", requests);
  ASSERT_EQ(whole.Execute({"TFILE=tables.txt"}), kExitGood);
  const auto printed = PrintedTables(whole.directory.Read("report.txt"));
  for (const auto& [table, lines] : shown) {
    ASSERT_TRUE(printed.contains(table)) << "Table " << table;
    EXPECT_EQ(FindStaleLine(lines, printed.at(table)), "") << "Table " << table;
  }
}

TEST(TablesPage, FindsWhatIsStale) {
  const Lines printed{"a", "b", "c", "d"};
  EXPECT_EQ(FindStaleLine(printed, printed), "");
  EXPECT_EQ(FindStaleLine({"a", kDots, "d"}, printed), "");
  EXPECT_EQ(FindStaleLine({"a", kDots}, printed), "");
  EXPECT_NE(FindStaleLine({"a", "c", "d"}, printed), "");
  EXPECT_NE(FindStaleLine({"a", "b"}, printed), "");
  EXPECT_NE(FindStaleLine({kDots, "b", "a"}, printed), "");
  EXPECT_NE(FindStaleLine({"b", kDots}, printed), "");
}

}  // namespace
}  // namespace vardento::test
