#include "report/table_requests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/dispatch.h"
#include "report/small_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;

struct RequestCase {
  const char* line;
  int table;
  const char* set;  // the eight flags
  std::vector<std::pair<int, float>> values;
};

TEST(ParseTableRequest, FillsTheSlots) {
  const RequestCase cases[] = {
      {"6", 6, "        ", {}},
      {"10.3", 10, "U       ", {{1, 3}}},
      {"3.0 - 5", 3, "  U     ", {{3, 5}}},
      {"1.0", 1, "U       ", {{1, 0}}},
      {"1.", 1, "        ", {}},
      {"20.12 -3.5 .5 10", 20, "UUUU    ", {{1, 12}, {2, -3.5F}, {3, 0.5F}, {4, 10}}},
      {"TABLE=2.5,1;2", 2, "UUU     ", {{1, 5}, {2, 1}, {3, 2}}},
      {"4 1-2 -- 5- . 7", 4, "     U  ", {{6, 7}}},
      {"1 2 3 4 5 6 7 8 9 10",
       1,
       " UUUUUUU",
       {{2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, 6}, {7, 7}, {8, 8}}},
      {"-", 0, "        ", {}},
      {"", 0, "        ", {}},
      {"99999999999999999999.1 1", 0, "UU      ", {{1, 1}, {2, 1}}},
      {"-6", -6, "        ", {}},
  };
  for (const RequestCase& c : cases) {
    TableRequest request;
    request.TableArgumentSet.fill('Y');
    request.TableArgument.fill(77);
    ParseTableRequest(request, c.line);
    EXPECT_EQ(request.CurrentTable, c.table) << c.line;
    EXPECT_EQ(std::string(request.TableArgumentSet.data(), 8), c.set) << c.line;
    std::array<float, 8> values{};
    for (const auto& [slot, value] : c.values) values[static_cast<std::size_t>(slot) - 1] = value;
    EXPECT_EQ(request.TableArgument, values) << c.line;
  }
}

// The headings of a report, as "6.1".
std::vector<std::string> Headings(const std::vector<std::string>& lines) {
  std::vector<std::string> headings;
  for (const std::string& line : lines) {
    if (line.substr(0, 7) == "\fTABLE ") headings.push_back(line.substr(7, line.find(' ', 7) - 7));
  }
  return headings;
}

TEST(RunRequestedTables, PrintsInAscendingOrderThenTheList) {
  SmallRun small(3, 3);
  auto& run = small.run;
  run.DraftSettings().STEPT3 = false;
  run.inForce.TABLES = "0010010001001111111000001100000000000001";
  run.DraftSettings().TFILE = small.directory.Write(
      "tables.txt", "6.4\n  \n; a comment 6\n18 ; 6\n0\n41\n13.1 \"6\"\n32\n3.1 - - 4");
  run.request.TableArgumentSet[0] = 'Y';
  RunRequestedTables(small.context);
  EXPECT_THAT(
      Headings(small.ReportLines()),
      ElementsAre("3.1", "6.1", "6.4", "6.5", "10.1", "10.4", "10.5", "13.1", "14.1", "15.1",
                  "16.3", "17.1", "18.1", "19.1", "25.1", "26.1", "6.4", "18.1", "13.1", "3.1"));
  EXPECT_EQ(std::string(run.request.TableArgumentSet.data(), 8), std::string(8, ' '));
  std::string processed;
  for (const std::string& line : small.console.lines) {
    if (line.starts_with("  Processing Table ")) processed += line.substr(19) + " ";
  }
  EXPECT_EQ(processed, "3 6 10 13 14 15 16 17 18 19 25 26 40 6 18 13 32 3 ");
}

// A list that is not there, or that grows by each Table it asks for.
TEST(RunRequestedTables, TellsOfAListThatItCantTake) {
  for (const bool absent : {false, true}) {
    SmallRun small(3, 3);
    std::string& list = small.run.DraftSettings().TFILE;
    list = absent ? small.directory.NameOf("absent.txt") : small.run.report.Name();
    RunRequestedTables(small.context);
    EXPECT_THAT(small.console.lines, ElementsAre("PROBLEM OPENING TABLE FILE: " + list));
    EXPECT_TRUE(small.run.outputFailed);
  }
}

// A stop that the user asks for while Tables are printed leaves the rest out.
TEST(RunRequestedTables, StopsBetweenTables) {
  SmallRun small(3, 3);
  small.run.inForce.TABLES = "111";
  small.run.StopRequest = 1;
  RunRequestedTables(small.context);
  EXPECT_TRUE(small.console.lines.empty());
}

// Without item labels the alphabetical order is the entry order, and not printed twice.
TEST(DispatchTable, AlphabeticalItemsWithoutLabels) {
  for (const bool both : {false, true}) {
    SmallRun small(3, 3);
    small.run.DraftSettings().INUMB = true;
    small.run.inForce.ITLEN = 8;
    small.run.inForce.TABLES = both ? "000000000000011" : "000000000000001";
    RunRequestedTables(small.context);
    const std::string report = small.Report();
    EXPECT_EQ(report.find("TABLE 15.1") == std::string::npos, both);
    EXPECT_NE(report.find("ITEM STATISTICS:  ENTRY ORDER"), std::string::npos);
    EXPECT_NE(report.find("| I0002   |\n"), std::string::npos);
  }
}

// Each request of the entry order lists everybody, also those that the last one has marked; a fit
// list is kept from Table to Table.
TEST(DispatchTable, ListsSurviveAsFarAsTheyMay) {
  SmallRun small(3, 3);
  small.run.arrays.PersonStatus[2] = Status::Deleted;
  for (const int table : {18, 18, 6, 6}) {
    small.run.request.CurrentTable = table;
    DispatchTable(small.context);
  }
  const std::string report = small.Report();
  const std::size_t first = report.find("DELETED");
  EXPECT_NE(report.find("DELETED", first + 1), std::string::npos);
  EXPECT_EQ(std::count(small.console.lines.begin(), small.console.lines.end(),
                       "  Sorting by Fit for Table 6"),
            1);
  EXPECT_TRUE(small.run.request.TableSubjectIsPerson);
}

}  // namespace
}  // namespace vardento::test
