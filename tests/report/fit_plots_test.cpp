#include "report/fit_plots.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "measure/fit_plot.h"
#include "report/small_run.h"

namespace vardento::test {
namespace {

// The extremes of INFIT and OUTFIT, and what of them is shown.
TEST(FitAxis, TakesInBothStatistics) {
  struct {
    const char* name;
    bool squares;
    char local;
    float frange, infitLow, infitHigh, outfitLow, outfitHigh, low, high;
  } const cases[] = {
      {"mean-squares near 1", true, 'N', 0, .8F, 1.1F, .9F, 1.2F, 0, 2},
      {"OUTFIT reaches further", true, 'N', 0, .8F, 1.1F, .3F, 4.2F, 0, 5},
      {"INFIT reaches further", true, 'L', 0, .8F, 9.9F, .3F, 1, 0, 10},
      {"standardised near 0", false, 'N', 0, -1, 1, -1, 1, -3, 3},
      {"standardised far off", false, 'Y', 0, -3.01F, 1, -1, 12.5F, -4, 10},
      {"logarithms", false, 'L', 0, -.2F, .3F, -1.2F, .6F, -2, 1},
      {"logarithms near 0", false, 'L', 0, 0, 0, 0, 0, -1, 1},
      {"FRANGE= is rounded outward", true, 'N', 1.5F, .8F, 9, .3F, 9, -2, 2},
      {"FRANGE= of 20", false, 'N', 20, 0, 0, 0, 0, -10, 10},
  };
  for (const auto& c : cases) {
    SmallRun small(2, 2);
    ControlSettings& settings = small.run.DraftSettings();
    settings.MNSQ = c.squares;
    settings.LOCAL = c.local;
    settings.FRANGE = c.frange;
    FacetSummary& items = small.run.results.summary.items;
    items.measured = 2;
    (c.squares ? items.infit : items.infitZ) = {0, 0, c.infitHigh, c.infitLow};
    (c.squares ? items.outfit : items.outfitZ) = {0, 0, c.outfitHigh, c.outfitLow};
    const FitAxis axis = FindFitAxis(small.run, Facet::Items);
    EXPECT_EQ(axis.low, c.low) << c.name;
    EXPECT_EQ(axis.high, c.high) << c.name;
    EXPECT_EQ(FindComparisonAxis(small.run, Facet::Items).low, c.squares ? 0 : c.low) << c.name;
  }
}

TEST(Misfits, ReachTheThreshold) {
  SmallRun small(1, 4);
  RunArrays& a = small.run.arrays;
  small.run.DraftSettings().FITI = 5;
  for (int i = 1; i <= 4; ++i) a.ItemInfit[i] = a.ItemOutfit[i] = 1.49F;
  a.ItemOutfit[2] = a.ItemInfit[3] = 1.5F;
  a.ItemInfit[4] = 9;
  a.ItemStatus[4] = Status::ExtremeLow;
  a.ItemInfitZ[1] = 5;
  const auto found = [&] {
    std::string text;
    for (const Misfit& m : FindMisfits(small.run, Facet::Items, std::vector{4, 3, 2, 1})) {
      text += std::to_string(m.fit.entry) + "@" + std::to_string(m.place) + " ";
    }
    return text;
  };
  EXPECT_EQ(found(), "3@2 2@3 ");
  small.run.DraftSettings().MNSQ = false;
  EXPECT_EQ(found(), "1@4 ");
}

// Item 1 stands at measure 0 with a mean-square of 2, items 2 and 3 beside each other at 1.2, .5;
// item 4 is extreme. Twenty rows to 5 units and 11 columns to a logit: on a page of 50 lines a plot
// could have 34 rows.
TEST(FitPlot, PutsEntriesAtTheirMeasureAndFit) {
  SmallRun small(2, 4);
  RunArrays& a = small.run.arrays;
  const float measures[] = {0, 1.2F, 1.2F, -2}, squares[] = {2, .5F, .5F, 5};
  for (int i = 1; i <= 4; ++i) {
    a.ItemMeasure[i] = measures[i - 1];
    a.ItemInfit[i] = squares[i - 1];
    a.ItemInfitZ[i] = -squares[i - 1];
  }
  a.PersonMeasure[1] = -2.5F;
  a.PersonMeasure[2] = 2.5F;
  a.ItemStatus[4] = Status::ExtremeHigh;
  FacetSummary& items = small.run.results.summary.items;
  items.measured = 3;
  items.infit = {1, 0, 4.5F, .5F};
  items.outfit = {1, 0, 1, 1};
  items.measure.mean = -1;
  small.run.DraftSettings().MAXPAGE = 50;
  small.run.request.CurrentTable = 8;
  PrintInfitPlot(small.context);
  const std::vector<std::string> lines = small.ReportLines();
  const std::size_t top = static_cast<std::size_t>(
      std::ranges::find(lines, "   5 ", [](const std::string& line) { return line.substr(1, 5); }) -
      lines.begin());
  ASSERT_LT(top + 20, lines.size());
  EXPECT_EQ(lines[top - 2],
            "      -3         -2         -1          0          1          2          3");
  EXPECT_EQ(lines[top - 1],
            "      ++----------+----------+----------+----------+----------+----------++");
  EXPECT_EQ(lines[top],
            "    5 +                      |                                            +   5");
  // 12 rows below 5: mean-square 2, on its guide.
  EXPECT_EQ(lines[top + 12],
            "    2 +----------------------|----------1---------------------------------+   2");
  // 18 rows below: .5; item 3 goes to the right of item 2.
  EXPECT_EQ(lines[top + 18].substr(6, 60),
            "|                      |                       23           ");
  EXPECT_EQ(lines[top + 20].substr(0, 7), "    0 +");
  EXPECT_EQ(lines[top + 23], "                                 ITEM MEASURE");
}

// A scale that is high and a page that is low still give a plot; entries beyond FRANGE= and MRANGE=
// stand at its edges.
TEST(FitPlot, HoldsEntriesWithinTheFrame) {
  SmallRun small(30, 12);
  RunArrays& a = small.run.arrays;
  ControlSettings& settings = small.run.DraftSettings();
  settings.MNSQ = false;
  settings.MAXPAGE = 20;
  settings.FRANGE = 10;
  settings.MRANGE = 1;
  for (int n = 1; n <= 30; ++n) {
    a.PersonMeasure[n] = 1e6F;
    a.PersonInfitZ[n] = -1e6F;
  }
  small.context.needs.subject = Facet::Persons;
  PrintInfitPlot(small.context);
  PrintOutfitAgainstInfit(small.context);
  const std::string report = small.Report();
  EXPECT_NE(report.find(" -10 +"), std::string::npos);
  // Thirty at one corner: its four cells take letters, then the corner counts.
  EXPECT_NE(report.find("DC+  -5"), std::string::npos) << report;
  EXPECT_NE(report.find("B*+ -10"), std::string::npos) << report;
}

}  // namespace
}  // namespace vardento::test
