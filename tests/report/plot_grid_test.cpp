#include "report/plot_grid.h"

#include <gtest/gtest.h>

#include "report/character_plot.h"
#include "report/distribution_strip.h"
#include "report/small_run.h"
#include "text/number_text.h"

namespace vardento::test {
namespace {

std::string RowOf(const PlotGrid& grid, int row) {
  ReportLine line;
  grid.PutRow(line, row);
  return line.Plain();
}

// Letters spread over the eight neighbours in their order and never cover each other; the ninth
// one more makes a count of the place itself.
TEST(PlotGrid, SpreadsEntriesThatStandClose) {
  PlotGrid grid(4, 3);
  for (const char mark : std::string("ABCDEFGHI")) grid.PutEntry(2, 1, mark);
  EXPECT_EQ(RowOf(grid, 2), " FDE");
  EXPECT_EQ(RowOf(grid, 1), " CAB");
  EXPECT_EQ(RowOf(grid, 0), " IGH");
  grid.PutEntry(2, 1, 'J');
  EXPECT_EQ(grid.At(2, 1), '2');
  grid.PutEntry(2, 1, 'K');
  EXPECT_EQ(grid.At(2, 1), '3');
  grid.PutEntry(2, 1, '7');
  EXPECT_EQ(grid.At(2, 1), '*');
}

TEST(PlotGrid, CountsEntriesWithoutALetter) {
  PlotGrid grid(3, 0);
  for (int n = 1; n <= 9; ++n) grid.PutEntry(0, 0, ' ');
  EXPECT_EQ(RowOf(grid, 0), "9");
  grid.PutEntry(0, 0, ' ');
  grid.PutEntry(0, 0, ' ');
  EXPECT_EQ(RowOf(grid, 0), "*");
  grid.PutEntry(0, 0, 'A');  // a letter stands beside a count
  EXPECT_EQ(RowOf(grid, 0), "*A");
}

TEST(PlotGrid, JoinsGuideLinesBehindOtherMarks) {
  struct Meeting {
    const char *there, *comes, *result;
  };
  const Meeting meetings[] = {
      {" ", "-", "-"},       {"-", "|", "+"},       {"|", "-", "+"},       {"-", "\xB3", "\xC5"},
      {"\xC4", "-", "\xC4"}, {"\xC4", "|", "\xC5"}, {"\xB3", "|", "\xB3"}, {"\xB3", "-", "\xC5"},
      {"+", "\xC4", "\xC5"}, {"+", "|", "+"},       {"A", "-", "A"},       {"3", "\xC5", "3"},
      {"-", "\xC5", "\xC5"}, {"\xC5", "-", "\xC5"}, {"-", " ", "-"},       {"-", ".", "-"},
  };
  for (const Meeting& m : meetings) {
    PlotGrid grid(0, 0);
    grid.FillBlank(0, 0, *m.there);
    grid.MergeGuide(0, 0, *m.comes);
    EXPECT_EQ(grid.At(0, 0), *m.result) << m.there << " and " << m.comes;
  }
}

// Thirty persons of weight .2 are six: the sum of 32-bit weights is a little more.
TEST(PlotGrid, CountsWeightsAsWholeEntries) {
  double sum = 0;
  for (int n = 0; n < 30; ++n) sum += 0.2F;
  EXPECT_EQ(CountOfWeights(sum), 6);
  EXPECT_EQ(CountOfWeights(6.01), 7);
  EXPECT_EQ(CountOfWeights(0.001), 1);
  EXPECT_EQ(CountOfWeights(0), 0);
}

// Two categories over five rows: rows that are no tenth or half have no number.
TEST(CharacterPlot, FramesTheCells) {
  SmallRun small(1, 1);
  PlotAxis axis{.columns = 12, .tickWidth = 6, .ticks = 2, .unit = 1};
  PlotGrid grid(12, 4);
  grid.PutCurve(0, 0, '0');
  grid.PutCurve(12, 4, '1');
  grid.PutCurve(12, 4, '0');
  PutCharacterPlot(small.run, grid,
                   {.axis = axis, .low = -1, .axisLabel = "LABEL", .caption = "POX"});
  EXPECT_EQ(small.ReportLines(), (std::vector<std::string>{
                                     "       ++-----+-----++",
                                     "   1.0 +            *+",
                                     "P      |             |",
                                     "O   .5 +             +",
                                     "X      |             |",
                                     "    .0 +0            +",
                                     "       ++-----+-----++",
                                     "       -1     0     1",
                                     "            LABEL",
                                 }));
}

TEST(CharacterPlot, NumbersScoresInHalvesWhereThereIsRoom) {
  struct Case {
    int scale, lowest, height;
    std::vector<std::string> numbers;  // from the top down
  };
  const Case cases[] = {
      {2, 1, 4, {"    3", "  2.5", "    2", "  1.5", "    1"}},
      {2, 0, 8, {"    2", "", "  1.5", "", "    1", "", "   .5", "", "    0"}},
      {4, 10, 4, {"   14", "   13", "   12", "   11", "   10"}},
      {1001, 0, 2, {" 1001", "  501", "    0"}},
  };
  for (const Case& c : cases) {
    SmallRun small(1, 1);
    const PlotAxis axis{.columns = 6, .tickWidth = 6, .ticks = 1};
    PutCharacterPlot(
        small.run, PlotGrid(6, c.height),
        {.axis = axis, .axisLabel = {}, .caption = {}, .scale = c.scale, .lowest = c.lowest});
    const std::vector<std::string> lines = small.ReportLines();
    for (std::size_t row = 0; row < c.numbers.size(); ++row) {
      const std::string field = lines.at(row + 1).substr(1, 6);
      EXPECT_EQ(Trim(field), Trim(c.numbers[row])) << c.scale << " row " << row;
    }
  }
}

// Ticks that stand closer than their numbers are wide leave numbers out, not digits.
TEST(CharacterPlot, LeavesOutNumbersWithoutRoom) {
  const PlotAxis axis{.columns = 12, .tickWidth = 3, .ticks = 4, .unit = 100};
  ReportLine line;
  PutAxisNumbers(line, axis, -100, 10);
  EXPECT_EQ(line.View(), "      -100  0   200");
}

// Nine persons and one of weight .5 at 0, shown as 10; one at 2, and an extreme one each way; two
// of weight 0 count for nothing. Mean 2 / 10.5 = .19, S.D. .59: the marks stand at -.98, -.40, .19,
// .78 and 1.36, two columns a logit.
TEST(DistributionStrip, WritesCountsDownwardAndTheirSpread) {
  SmallRun small(15, 1);
  small.GivePersonWeights();
  RunArrays& a = small.run.arrays;
  for (int n = 11; n <= 12; ++n) small.run.given.PersonWeight[n] = 0;
  a.PersonStatus[13] = Status::ExtremeHigh;
  a.PersonStatus[14] = Status::ExtremeLow;
  small.run.given.PersonWeight[15] = 0.5F;
  a.PersonMeasure[10] = 2;
  PlotAxis axis{.columns = 8, .tickWidth = 4, .ticks = 2, .unit = 2, .columnsPerMeasure = 2};
  a.PersonMeasure[13] = 9;
  PutDistributionStrip(small.run, Facet::Persons, {.axis = axis, .low = -2, .firstColumn = 10});
  EXPECT_EQ(small.ReportLines(),
            (std::vector<std::string>{"            1", "PERSON  1   0   2", "          TSM ST"}));
}

}  // namespace
}  // namespace vardento::test
