#include "report/convergence_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/small_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

const std::string kRule(76, '-');
constexpr char kProxHead[] =
    "|    PROX          ACTIVE COUNT       EXTREME 5 RANGE      MAX LOGIT CHANGE  |";
constexpr char kProxNames[] =
    "| ITERATION   PERSONS ITEMS   CATS     PERSONS ITEMS      MEASURES     STEPS |";
constexpr char kUconHead[] =
    "|    UCON     MAX SCORE   MAX LOGIT    LEAST CONVERGED     CATEGORY    STEP  |";
constexpr char kUconNames[] =
    "| ITERATION   RESIDUAL*    CHANGE    PERSON ITEMS    CAT   RESIDUAL   CHANGE |";

ProxRecord Prox(int iteration, float stepChange) {
  return {iteration, 35, 18, 2, 3.5F, 4.25F, -1.2345F, stepChange};
}

UconRecord Ucon(float stepChange, bool personIsWorse) {
  return {3, 1.5F, -0.0123F, 12, 4, personIsWorse, 2, -3.25F, stepChange};
}

TEST(ConvergenceTable, PrintsBothPhasesOnReportAndConsole) {
  SmallRun small(35, 18);
  ConvergenceTable table(small.run);
  table.BeginProx();
  table.BeginProxPass();
  table.EndProxPass(Prox(1, 0));
  table.EndProxPass(Prox(2, 0.0512F));
  table.BeginUcon();
  table.BeginUconIteration();
  table.EndUconIteration(Ucon(0.0456F, true));
  table.EndUconIteration(Ucon(0, false));
  table.EndTable();
  const std::vector<std::string> lines = small.ReportLines();
  EXPECT_THAT(lines[1], StartsWith("\fTABLE 0.2 Fruit"));
  const auto rows =
      ElementsAre(kProxHead, kProxNames,
                  "|        1       35      18     2       3.50    4.25       -1.2345           |",
                  "|        2       35      18     2       3.50    4.25       -1.2345    .0512  |",
                  "|" + kRule + "|", kUconHead, kUconNames,
                  "|       3         1.50      -.0123      12*     4       2      -3.25    .0456|",
                  "|       3         1.50      -.0123      12      4*                           |",
                  "+" + kRule + "+");
  EXPECT_EQ(lines[5], std::string(29, ' ') + "CONVERGENCE TABLE");
  EXPECT_EQ(lines[6], "+" + kRule + "+");
  EXPECT_THAT(std::vector(lines.begin() + 7, lines.end()), rows);

  std::vector<std::string> screen = small.console.lines;
  EXPECT_EQ(screen[0].substr(1), lines[5]);
  EXPECT_EQ(screen[1].size(), 79U) << "the names stand inside the rule";
  EXPECT_NE(screen[1].find("Control: "), std::string::npos);
  EXPECT_NE(screen[1].find("Output: "), std::string::npos);
  for (std::string& line : screen) line.erase(0, 1);
  EXPECT_THAT(std::vector(screen.begin() + 2, screen.end()), rows);
}

TEST(ConvergenceTable, RepeatsTheHeadOnANewSheet) {
  SmallRun small(35, 18);
  small.run.DraftSettings().MAXPAGE = 20;
  ConvergenceTable table(small.run);
  table.BeginProx();
  table.BeginUcon();
  small.run.report.LinesOnPage = 18;
  table.BeginUconIteration();
  EXPECT_EQ(small.run.report.LinesOnPage, 18) << "a row and the closing rule still fit";
  small.run.report.LinesOnPage = 19;
  table.BeginUconIteration();
  const std::vector<std::string> lines = small.ReportLines();
  EXPECT_THAT(std::vector(lines.end() - 5, lines.end()),
              ElementsAre("\f**CONTINUED FROM PREVIOUS SHEET**   PAGE 2", " ", "+" + kRule + "+",
                          kUconHead, kUconNames));
}

}  // namespace
}  // namespace vardento::test
