#include "report/category_pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/category_table.h"
#include "report/group_identity.h"
#include "report/small_run.h"
#include "support/whole_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

CategoryRow RowOf(int value, double count, double residual, double average) {
  CategoryRow row;
  row.value = row.score = value;
  row.status = StepStatus::Active;
  row.count = count;
  row.percent = count;
  row.residual = residual;
  row.average = average;
  row.expected = average + 0.1;
  row.infit = 0.95;
  row.outfit = 1.2;
  row.predicted = 10;
  row.matches = count > 0 ? 5 : 0;
  row.code = std::to_string(value);
  return row;
}

CategoryStructure StructureOf(std::vector<CategoryRow> rows) {
  CategoryStructure structure;
  structure.group = 1;
  structure.groupCode = 'A';
  structure.items = {1, 2};
  structure.rows = std::move(rows);
  return structure;
}

// What stands from the title of the tables on.
std::vector<std::string> Print(SmallRun& small, const CategoryStructure& structure) {
  PutCategoryTables(small.run, structure);
  std::vector<std::string> lines = small.ReportLines();
  lines.erase(lines.begin());
  return lines;
}

TEST(CategoryTables, OfTwoCategoriesShowResidualsThatMatter) {
  SmallRun small(3, 2);
  CategoryStructure structure = StructureOf({RowOf(0, 60, 2, -12.345), RowOf(1, 40, -2, -12.346)});
  structure.rows[1].disordered = true;
  structure.rows[1].words = "yes";
  structure.missingCount = 3;
  structure.missingPercent = 2.9;
  structure.missingAverage = 0.5;
  structure.pivot = 0.5F;
  // 100 x 2 / 58, 100 x -2 / 42; 5 of 10 and of 60 or 40.
  EXPECT_THAT(
      Print(small, structure),
      ElementsAre("SUMMARY OF MEASURED STEPS", "RATING SCALE PIVOTED AT .50",
                  "+------------------------------------------------------------------+",
                  "|CATEGORY   OBSERVED|OBSVD SAMPLE|INFIT OUTFIT| COHERENCE| OBS-EXP |",
                  "|LABEL SCORE COUNT %|AVRGE EXPECT|  MNSQ  MNSQ| M->C C->M|RESIDUAL%|",
                  "|-------------------+------------+------------+----------+---------|",
                  "|  0   0      60  60|-12.35 -12.2|   .95  1.20|  50%   8%|    3.4% | 0",
                  "|  1   1      40  40|-12.35*-12.2|   .95  1.20|  50%  13%|   -4.8% | 1 yes",
                  "|-------------------+------------+------------+----------+---------|",
                  "|MISSING       3   3|   .50      |            |          |         |",
                  "+------------------------------------------------------------------+",
                  "AVERAGE MEASURE is mean of measures in category.",
                  "M->C = Does Measure imply Category?", "C->M = Does Category imply Measure?"));
}

TEST(CategoryTables, LeaveOutWhatAnUnusedCategoryHasNot) {
  SmallRun small(3, 2);
  CategoryStructure structure =
      StructureOf({RowOf(0, 60, 0, -1), RowOf(1, 0, -0.4, 0), RowOf(2, 40, 0, 1)});
  structure.items = {2};
  structure.difficulty = 0.75F;
  structure.model = Model::Failures;
  structure.rows[0].status = StepStatus::Anchored;
  structure.rows[1].status = StepStatus::Kept;
  structure.rows[1].halfPoint = -0.5;
  structure.rows[1].measurePoint = 123456.789;
  CategoryRow& top = structure.rows[2];
  top.status = StepStatus::Anchored;
  top.step = -0.25;
  top.stepError = 0.1;
  top.measurePoint = 2.5;
  top.halfPoint = 1234.5;
  top.thurstone = 0.5;
  const std::vector<std::string> lines = Print(small, structure);
  ASSERT_EQ(lines.size(), 22U);
  EXPECT_EQ(lines[1], "ITEM DIFFICULTY OF .75 ADDED TO MEASURES");
  EXPECT_EQ(lines[6], "|  0   0      60  60| -1.00  -.90|   .95  1.20||  NONE A |(   .00)| 0");
  EXPECT_EQ(lines[7], "|  1   1       0   0|            |   .95  1.20||  HARD   |123457. | 1");
  EXPECT_EQ(lines[8], "|  2   2      40  40|  1.00  1.10|   .95  1.20||    -.25A|(  2.50)| 2");
  EXPECT_EQ(lines[9], "+-----------------------------------------------------------------+");
  EXPECT_EQ(lines[14],
            "| LABEL   MEASURE   S.E. | AT CAT. ----ZONE----|THRESHOLD| M->C C->M|RESIDUAL |");
  EXPECT_EQ(lines[16],
            "|   0      NONE A        |(   .00) -INF    -.50|         |  50%   8%|     .0% | 0");
  EXPECT_EQ(lines[17],
            "|   1      HARD          |123457.   -.501234.50|     .00 |   0%   0%|     .4  | 1");
  EXPECT_EQ(lines[18],
            "|   2         .50    .10 |(  2.50)1234.5  +INF |     .50 |  50%  13%|     .0% | 2");
}

TEST(GroupIdentity, ListsRunsOfItemsOverSeveralLines) {
  SmallRun small(3, 2, 2);
  CategoryStructure structure = StructureOf({RowOf(0, 1, 0, 0), RowOf(1, 1, 0, 0)});
  structure.model = Model::Successes;
  structure.items = {2};
  PutGroupIdentity(small.run, structure);
  structure.model = Model::Rating;
  structure.items = {1, 2, 4, 6, 7, 8};
  PutGroupIdentity(small.run, structure);
  structure.items.clear();
  for (int i = 101; i <= 199; i += 2) structure.items.push_back(i);
  structure.items.push_back(200);
  PutGroupIdentity(small.run, structure);
  small.run.NGROUPS = 1;
  PutGroupIdentity(small.run, structure);  // one group needs no name
  EXPECT_THAT(
      small.ReportLines(),
      ElementsAre("FOR GROUP \"A\"  MODEL \"S\" ITEM NUMBER: 2  Item2", " ",
                  "FOR GROUP \"A\" ITEM NUMBERS: 1-2 4 6-8", " ",
                  "FOR GROUP \"A\" ITEM NUMBERS: 101 103 105 107 109 111 113 115 117 119 121 123",
                  "125 127 129 131 133 135 137 139 141 143 145 147 149 151 153 155 157 159 161",
                  "163 165 167 169 171 173 175 177 179 181 183 185 187 189 191 193 195 197 199-200",
                  " "));
}

// A request's own adjustments hold for its Table and no longer; STEPT3= says which of the two
// Tables tells the structure.
TEST(CategoryPages, TakeTheRequestsAdjustmentsForOneTable) {
  WholeRun whole;
  whole.directory.Write("tables.txt", "21 - - - - .4 .1\n21.1\n3.2 - - - - - .001\n");
  whole.directory.Write("control.txt",
                        "TITLE=T\nNI=2\nITEM1=1\nNAME1=1\nNAMLEN=1\nCODES=012\nINUMB=Y\n"
                        "STEPT3=N\nTFILE=tables.txt\n&END\n01\n10\n12\n21\n20\n02\n");
  ASSERT_EQ(whole.Execute(), 0);
  const std::string report = whole.directory.Read("report.txt");
  const auto section = [&](const char* from, const char* to) {
    const std::size_t start = report.find(from);
    return report.substr(start, report.find(to, start + 1) - start);
  };
  const auto ends = [](const std::string& text) {
    std::vector<std::string> found;
    for (std::size_t at = 0; (at = text.find("|(", at)) != text.npos; ++at) {
      found.push_back(text.substr(at + 2, 6));
    }
    return found;
  };
  const std::vector<std::string> asked = ends(section("TABLE 21.1", "TABLE 21.2"));
  const std::size_t again = report.find("TABLE 21.1", report.find("TABLE 21.3"));
  const std::vector<std::string> usual =
      ends(report.substr(again, report.find("TABLE 21.2", again) - again));
  ASSERT_EQ(asked.size(), 4U);  // two ends in each of two tables
  ASSERT_EQ(usual.size(), 4U);
  EXPECT_LT(std::stod(asked[0]), std::stod(usual[0]));  // .1 lies further off than .25
  EXPECT_LT(std::stod(asked[1]), std::stod(usual[1]));  // .4 lies nearer
  EXPECT_THAT(section("TABLE 3.2", "TABLE 0.1"), Not(HasSubstr("SUMMARY OF MEASURED STEPS")));
}

}  // namespace
}  // namespace vardento::test
