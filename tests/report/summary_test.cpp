#include "measure/summary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/run_summary.h"
#include "report/small_run.h"
#include "report/summary_table.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;

// Persons whose measures spread beyond their errors, items whose measures don't.
Summary MakeSummary(const Run& run) {
  Summary s;
  FacetSummary& p = s.persons;
  p.measured = run.results.ActivePersons;
  p.score = {12.3F, 4.5F, 19, 2};
  p.count = {18.5F, 0.5F, 20, 15};
  p.measure = {0.5F, 1.2F, 2.75F, -3.25F};
  p.error = {0.55F, 0.08F, 1.0F, 0.4F};
  p.infit = {1, 0.2F, 1.9F, 0.5F};
  p.infitZ = {-0.1F, 1.1F, 3.2F, -2.5F};
  p.outfit = {1.05F, 0.4F, 9.9F, 0.1F};
  p.outfitZ = {0.04F, 0.9F, 4.1F, -1.4F};
  p.realError = {0.6F, 0.1F, 1.25F, 0.45F};
  p.realSeparation = Separation(0.1, 0.6, 1.2);
  p.meanError = 1.2;
  s.items.measured = run.results.ActiveItems;
  s.items.measure = {0, 0.5F};
  s.items.realError = {0.6F, 0.1F};
  s.items.realSeparation = Separation(0.1, 0.6, 0.5);
  return s;
}

// Error of persons: sqrt(.6^2 + .1^2) = .608, against an S.D. of 1.2: sqrt(1.44 - .37) = 1.034.
TEST(RunSummary, PrintsTheBoxAndTheDigest) {
  SmallRun small(35, 18);
  small.run.personsRead = 40;
  small.run.results.summary = MakeSummary(small.run);
  WriteRunSummary(small.run);
  ShowRunSummary(small.run);
  const std::string rule(76, '-');
  const std::vector<std::string> lines = small.ReportLines();
  const std::string heads =
      "|          SCORE     COUNT     MEASURE   ERROR     IMNSQ   ZSTD  OMNSQ   ZSTD|";
  EXPECT_THAT(
      lines,
      ElementsAre(
          "Fruit", "+" + rule + "+",
          "|PERSONS     40 INPUT      35 MEASURED                INFIT         OUTFIT   |", heads,
          "| MEAN      12.3      18.5         .50     .60      1.00    -.1   1.05     .0|",
          "| S.D.       4.5        .5        1.20     .10       .20    1.1    .40     .9|",
          "| REAL RMSE    .61  ADJ.SD    1.03  SEPARATION  1.70  PERSON RELIABILITY  .74|",
          "|" + rule + "|",
          "|ITEMS     18 INPUT      18 MEASURED                  INFIT         OUTFIT   |", heads,
          "| MEAN        .0        .0         .00     .60       .00     .0    .00     .0|",
          "| S.D.        .0        .0         .50     .10       .00     .0    .00     .0|",
          "| REAL RMSE    .61  ADJ.SD     .00  SEPARATION   .00  ITEM   RELIABILITY  .00|",
          "+" + rule + "+"));
  EXPECT_EQ(RunDigest(small.run),
            "PERSON: REAL SEP.: 1.70  REL.: .74 ... ITEM: REAL SEP.: .00  REL.: .00");
  ASSERT_EQ(small.console.lines.size(), lines.size() + 1);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(small.console.lines[i], " " + lines[i]);
  }
  EXPECT_EQ(small.console.lines.back(), " Output written to " + small.run.startUp.ReportFileName);
}

// ASCII=N leaves the box characters to the report; a screen would show them as rubbish.
TEST(RunSummary, ScreenHasPlainRulesUnderAsciiNo) {
  SmallRun small(35, 18);
  small.run.DraftSettings().ASCII = false;
  small.run.results.summary = MakeSummary(small.run);
  WriteRunSummary(small.run);
  ShowRunSummary(small.run);
  ASSERT_GT(small.console.lines.size(), 2U);
  EXPECT_EQ(small.console.lines[1], " +" + std::string(76, '-') + "+");
  EXPECT_EQ(small.ReportLines()[1], "\xDA" + std::string(76, '\xC4') + "\xBF");
}

TEST(SummaryTable, CountsThoseLeftOut) {
  SmallRun small(9, 20);
  auto& run = small.run;
  run.results.ActivePersons = 5;
  run.results.summary = MakeSummary(run);
  run.results.summary.beyondCapacity = 2;
  run.results.summary.validResponses = 92.5;
  run.results.summary.cutBelow = 20;
  FacetSummary& persons = run.results.summary.persons;
  persons.maximum = persons.minimum = persons.lacking = persons.deleted = 1;
  PrintSummaryTable(small.context);
  const std::vector<std::string> lines = small.ReportLines();
  ASSERT_GT(lines.size(), 29U);
  EXPECT_THAT(std::vector(lines.begin() + 22, lines.begin() + 28),
              ElementsAre("  MAXIMUM EXTREME SCORE:      1 PERSONS",
                          "  MINIMUM EXTREME SCORE:      1 PERSONS",
                          "      LACKING RESPONSES:      1 PERSONS",
                          "        BEYOND CAPACITY:      2 PERSONS",
                          "                DELETED:      1 PERSONS",
                          "        VALID RESPONSES:  92.5%CUTLO= 20.0 CUTHI=   .0"));
  EXPECT_EQ(lines[29], "     SUMMARY OF     20 MEASURED ITEMS");
}

// With every entry extreme nothing is divided by a count of 0; REALSE= changes heads and rows.
TEST(SummaryTable, AllExtremeAndRealErrors) {
  SmallRun small(2, 2);
  auto& run = small.run;
  run.results.ActivePersons = 0;
  run.DraftSettings().REALSE = true;
  run.DraftSettings().PERSON_LABEL = "SCHOOLCHILD";
  run.results.summary = MakeSummary(run);
  run.results.summary.persons.maximum = run.results.summary.persons.minimum = 1;
  PrintSummaryTable(small.context);
  const std::string report = small.Report();
  for (const char* text :
       {"SUMMARY OF      0 MEASURED (NON-EXTREME) PERSONS\n",
        "|           RAW                           REAL ", "2.75    1.25      1.90",
        "| S.E. OF SCHOOLCHILD MEAN = 1.20 ", "SCHOOLC RELIABILITY  .74|\n"}) {
    EXPECT_NE(report.find(text), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace vardento::test
