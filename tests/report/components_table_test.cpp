#include "report/components_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "report/component_pages.h"
#include "report/small_run.h"

namespace vardento::test {
namespace {

using Lines = std::vector<std::string>;
using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

// A run with one component of all entries of a side, in the order of `loadings`.
struct ComponentRun : SmallRun {
  ComponentRun(int persons, int items, const std::vector<double>& loadings,
               Facet facet = Facet::Items)
      : SmallRun(persons, items) {
    const int count = static_cast<int>(loadings.size());
    found.facet = facet;
    context.needs.subject = facet;
    run.inForce.PRCOMP = 'S';
    for (int i = 1; i <= count; ++i) found.entries.push_back(i);
    found.order = found.entries;
    found.explained = 300;
    found.noise = 100;
    component.number = 1;
    component.eigenvalue = 1.25;
    component.loadings = Vector1<double>(count);
    for (int i = 1; i <= count; ++i)
      component.loadings[i] = loadings[static_cast<std::size_t>(i - 1)];
    const auto [low, high] = std::ranges::minmax(loadings);
    component.smallest = low;
    component.largest = high;
    std::ranges::stable_sort(found.order, std::ranges::greater(),
                             [&](int i) { return component.loadings[i]; });
  }

  // What `put` adds to the report, without the heading of a page.
  template <class Writer>
  Lines LinesOf(Writer put) {
    OpenReport();
    run.request.HeadingPending = true;
    put();
    Lines lines = ReportLines();
    const auto rule = std::ranges::find_if(
        lines, [](const std::string& line) { return line.starts_with("----------"); });
    if (rule != lines.end()) lines.erase(lines.begin(), rule + 2);
    return lines;
  }
  Lines Plot() {
    return LinesOf([&] { PutLoadingPlot(context, found, component); });
  }
  Lines ByLoading() {
    return LinesOf([&] { LoadingLists(context, found).PutByLoading(component); });
  }

  ResidualComponents found;
  Component component;
};

// By the order of loadings, here from the last entry to the first.
TEST(MarkEntries, GoFromTheTopDownThenFromTheBottomUp) {
  const struct {
    int entries;
    std::string marks;
  } cases[] = {{9, "123456789"},
               {10, "JIHGFEDCBA"},
               {30, "abcdZYXWVUTSRQPONMLKJIHGFEDCBA"},
               {53, "abcdefghijklmnopqrstuvwxyz ZYXWVUTSRQPONMLKJIHGFEDCBA"}};
  for (const auto& c : cases) {
    ResidualComponents found;
    for (int entry = 1; entry <= c.entries; ++entry) found.entries.push_back(entry);
    found.order.assign(found.entries.rbegin(), found.entries.rend());
    const Vector1<char> marks = MarkEntries(found);
    EXPECT_EQ(std::string(marks.begin(), marks.end()), c.marks);
  }
}

// Loadings of .52 to -.23 in steps of .05 lie on rows 10 to -5; measures of -2 to 2 have 16 columns
// to a logit.
TEST(LoadingPlot, PutsEntriesAtTheirMeasureAndLoading) {
  ComponentRun small(2, 4, {-.23, .52, 0, .52});
  const float measures[] = {-2, 0, 2, 0};
  for (int i = 1; i <= 4; ++i) small.run.arrays.ItemMeasure[i] = measures[i - 1];
  small.run.results.summary.items.measure.mean = .5F;
  small.context.rangeLow = -2;
  small.context.rangeHigh = 2;
  const Lines lines = small.Plot();
  const auto cells = [](std::string marks, std::size_t column, std::string more = "",
                        std::size_t place = 0) {
    std::string row(65, marks.front());
    row[40] = '|';
    row.replace(column, marks.size() - 1, marks.substr(1));
    row.replace(place, more.size(), more);
    return row;
  };
  EXPECT_EQ(lines,
            (Lines{
                "       PRINCIPAL COMPONENTS (STANDARDIZED RESIDUAL) FACTOR PLOT",
                "       Factor 1 extracts 1.3 units out of 4 units of ITEM noise.",
                "       Yardstick/This Factor ratio: 9.6/1 Yardstick/Total Noise ratio: 3.0/1",
                "      -2              -1               0               1               2",
                "      ++---------------+---------------+---------------+---------------++",
                "F     |" + cells(" ", 0) + "|",
                "A  .5 +" + cells(" 24", 32) + "+",
                "C     |" + cells(" ", 0) + "|",
                "T  .4 +" + cells(" ", 0) + "+",
                "O     |" + cells(" ", 0) + "|",
                "R  .3 +" + cells(" ", 0) + "+",
                "      |" + cells(" ", 0) + "|",
                "1  .2 +" + cells(" ", 0) + "+",
                "      |" + cells(" ", 0) + "|",
                "L  .1 +" + cells(" ", 0) + "+",
                "O     |" + cells(" ", 0) + "|",
                "A  .0 +" + cells("-", 0, "3", 64) + "+",
                "D     |" + cells(" ", 0) + "|",
                "I -.1 +" + cells(" ", 0) + "+",
                "N     |" + cells(" ", 0) + "|",
                "G -.2 +" + cells(" ", 0) + "+",
                "      |" + cells(" 1", 0) + "|",
                "      ++---------------+---------------+---------------+---------------++",
                "      -2              -1               0               1               2",
                "                                 ITEM MEASURE",
            }));
}

// The number of rows, whatever the loadings: from -1 to 1 there are 40 steps of .05 between the
// lowest row and the highest; a wider span takes wider steps, of .06 from -1 to 1.05.
TEST(LoadingPlot, FindsAStepForAnySpan) {
  const struct {
    double low, high;
    std::ptrdiff_t rows;
  } cases[] = {{-1, 1, 41}, {-1, 1.05, 36}, {.31, .32, 2}, {-30, 31, 41}, {0, 1e-9, 2}};
  for (const auto& c : cases) {
    ComponentRun small(2, 2, {c.low, c.high});
    small.context.rangeHigh = 1;
    const Lines lines = small.Plot();
    const auto rows = std::ranges::count_if(lines, [](const std::string& line) {
      return line.size() == 76 && line.find_first_of("|+") == 6 && line[7] != '+';
    });
    EXPECT_EQ(rows, c.rows) << c.low << " " << c.high;
  }
}

TEST(LoadingPlot, IsNotDrawnOfEqualLoadings) {
  ComponentRun small(2, 2, {.5, .5});
  small.component.eigenvalue = 0;
  EXPECT_THAT(small.Plot(),
              testing::ElementsAre(HasSubstr("FACTOR PLOT"), HasSubstr("extracts .0 units"),
                                   HasSubstr("This Factor ratio: ********/1 Yardstick/")));
  EXPECT_EQ(small.ByLoading().size(), 4U + 4 + 2 + 1);
}

// What PRCOMP= names the residuals; observations have no ratios.
TEST(Components, AreTitledByTheResiduals) {
  const struct {
    char kind;
    const char *title, *largest;
  } cases[] = {{'Y', "(STANDARDIZED RESIDUAL)", "LARGEST STANDARDIZED RESIDUAL C"},
               {'R', "(RESIDUAL)", "LARGEST OBSERVATION RESIDUAL C"},
               {'L', "(LOGIT RESIDUAL)", "LARGEST LOGIT RESIDUAL C"},
               {'O', "(OBSERVATION)", "LARGEST OBSERVATION C"},
               {'K', "(LIKELIHOOD)", "LARGEST LIKELIHOOD C"},
               {'H', "(LOG-LIKELIHOOD)", "LARGEST LOG-LIKELIHOOD C"},
               {'G', "(LOGIT-LIKELIHOOD)", "LARGEST LOGIT-LIKELIHOOD C"}};
  for (const auto& c : cases) {
    ComponentRun small(2, 2, {.5, -.5});
    small.run.inForce.PRCOMP = c.kind;
    const Lines plot = small.Plot(), list = small.ByLoading();
    const Lines pairs = small.LinesOf([&] {
      PutCorrelations(small.run, Facet::Items, {{1, 2, .5}});
    });
    EXPECT_THAT(plot[0], HasSubstr(c.title));
    EXPECT_EQ(plot[2].find("ratio") == std::string::npos, c.kind == 'O');
    EXPECT_EQ(list[3].find("ratio") == std::string::npos, c.kind == 'O');
    EXPECT_THAT(pairs[0], HasSubstr(c.largest));
  }
}

// Persons 4 and 5 load alike but for what calculation leaves; 3 is the strongest negative one.
TEST(LoadingLists, StandInThreeOrders) {
  ComponentRun small(5, 2, {.25, 0, -.9, -.3, -.3 - 1e-9}, Facet::Persons);
  const float measures[] = {1, 2, 1, -1.5F, 2};
  for (int n = 1; n <= 5; ++n) small.run.arrays.PersonMeasure[n] = measures[n - 1];
  PersonWorkRecord record;
  record.infit = 1.25F;
  record.outfit = .5F;
  small.SetPerson(4, "Jo", record);
  const std::string rule = "|------+-------+-------------------+-------------|";
  const Lines rows = {
      "|   1  |   .25 |    1.00  .00  .00 |1    1 Pers1 |",
      "|   1  |   .00 |    2.00  .00  .00 |2    2 Pers2 |",
      "|   1  |  -.90 |    1.00  .00  .00 |3    3 Pers3 |",
      "|   1  |  -.30 |   -1.50 1.25  .50 |4    4 Jo    |",
      "|   1  |  -.30 |    2.00  .00  .00 |5    5 Pers5 |",
  };
  EXPECT_EQ(small.ByLoading(),
            (Lines{
                " FACTOR 1 FROM PRINCIPAL COMPONENT ANALYSIS OF",
                "  STANDARDIZED RESIDUAL CORRELATIONS FOR PERSONS (SORTED BY LOADING)",
                "   Factor 1 explains 1.3 of 5 residual variance units, one per PERSON",
                "       Yardstick/This Factor ratio: 12.0/1 Yardstick/Total Noise ratio: 3.0/1",
                "+------+-------+-------------------+-------------+",
                "|      |       |       INFIT OUTFIT| ENTRY PERSO |",
                "|FACTOR|LOADING|MEASURE  MNSQ MNSQ |NUMBER PERSO |",
                rule,
                rows[0],
                rows[1],
                rule,
                rows[2],
                rows[3],
                rows[4],
                "+------+-------+-------------------+-------------+",
            }));
  LoadingLists lists(small.context, small.found);
  Lines lines = small.LinesOf([&] { lists.PutByMeasure(small.component); });
  EXPECT_THAT(lines, Contains(HasSubstr("(SORTED BY MEASURE)")));
  EXPECT_EQ(Lines(lines.end() - 6, lines.end() - 1),
            (Lines{rows[1], rows[4], rows[0], rows[2], rows[3]}));
  lines = small.LinesOf([&] { lists.PutByEntry(small.component); });
  EXPECT_THAT(lines, Contains(HasSubstr("(SORTED BY ENTRY)")));
  EXPECT_EQ(Lines(lines.end() - 6, lines.end() - 1), rows);
}

TEST(LoadingLists, ShowWeightsAndGroups) {
  ComponentRun small(2, 10, {-1.04, -.9, -.8, -.7, -.6, -.5, -.4, -.3, -.2, -.1});
  small.GiveItemWeights();
  small.run.given.ItemWeight[1] = 0;
  small.run.given.ItemWeight[2] = .5F;
  small.run.given.ItemWeight[3] = 12;
  small.run.given.ItemWeight[4] = 1000;
  small.run.DraftSettings().groupsText = "ABABABABAB";
  small.run.DraftSettings().GROUPS = PerItem::Text;
  small.run.NGROUPS = 2;
  small.component.number = 5;
  const Lines lines = small.ByLoading();
  EXPECT_EQ(Lines(lines.begin() + 4, lines.begin() + 14),
            (Lines{
                "+------+-------+-------------------------+----------------+",
                "|      |       |       INFIT OUTFIT      | ENTRY ITEM   G |",
                "|FACTOR|LOADING|MEASURE  MNSQ MNSQ WEIGHT|NUMBER ITEM   R |",
                "|------+-------+-------------------------+----------------|",
                "|   5  | -1.00 |     .00  .00  .00  0    |J    1 Item1  A |",
                "|   5  |  -.90 |     .00  .00  .00   .50 |I    2 Item2  B |",
                "|   5  |  -.80 |     .00  .00  .00 12    |H    3 Item3  A |",
                "|   5  |  -.70 |     .00  .00  .00  1000 |G    4 Item4  B |",
                "|   5  |  -.60 |     .00  .00  .00  1    |F    5 Item5  A |",
                "|   5  |  -.50 |     .00  .00  .00  1    |E    6 Item6  B |",
            }));
  small.run.DraftSettings().GROUPS = PerItem::Single;
  EXPECT_THAT(small.ByLoading().at(6), testing::EndsWith("NUMBER ITEM   |"));
}

// Each sheet has no more lines than it may, and begins with the head of its columns.
TEST(LoadingLists, FillSheets) {
  std::vector<double> loadings;
  for (int n = 0; n < 60; ++n) loadings.push_back((n - 30) / 40.0);
  ComponentRun small(2, 60, loadings);
  small.run.DraftSettings().MAXPAGE = 22;
  LoadingLists lists(small.context, small.found);
  lists.PutByLoading(small.component);
  lists.PutByEntry(small.component);
  const Lines lines = small.ReportLines();
  std::size_t rows = 0, start = 0;
  for (std::size_t n = 0; n < lines.size(); ++n) {
    rows += lines[n].starts_with("|   1  |") ? 1 : 0;
    if (!lines[n].starts_with("\f")) continue;
    EXPECT_LE(n - start, 22U) << "above line " << n;
    start = n;
    if (n + 2 < lines.size() && lines[n].find("CONTINUED") != std::string::npos) {
      EXPECT_THAT(lines[n + 2],
                  testing::AnyOf(StartsWith("+------+"), StartsWith(" FACTOR 1 FROM")));
    }
  }
  EXPECT_EQ(rows, 120U);
}

ContrastingEntry Answering(int entry, ContrastCounts top, ContrastCounts bottom) {
  return {entry, top, bottom};
}

TEST(Contrasts, ListWhoFavoursEachEnd) {
  ComponentRun small(12, 4, {.5, .4, -.4, -.5});
  Contrast& contrast = small.component.contrast;
  contrast.top = {1, 2};
  contrast.bottom = {4, 3};
  contrast.others = {Answering(3, {1, 1, 0}, {0, 2, 0}), Answering(5, {0, 2, 0}, {0, 2, 0}),
                     Answering(7, {2, 0, 0}, {0, 0, 2}), Answering(12, {0, 1, 1}, {1, 1, 0})};
  const auto put = [&] { PutContrasts(small.run, Facet::Items, small.component); };
  const std::string rule = "+---------------------------------+";
  EXPECT_EQ(small.LinesOf(put), (Lines{
                                    " ",
                                    "FACTOR  1 CONTRASTING RESPONSES BY PERSONS",
                                    rule,
                                    "|        PERSON FAVORS TOP        |",
                                    "| TOP 2 ITEMS    | BOTTOM 2 ITEMS |",
                                    "| HIGH  EXP. LOW | HIGH  EXP. LOW |",
                                    rule,
                                    "|    2    0    0 |    0    0    2 |     7  Pers7",
                                    "|    1    1    0 |    0    2    0 |     3  Pers3",
                                    rule,
                                    " ",
                                    rule,
                                    "|        PERSON FAVORS BOTTOM     |",
                                    "| TOP 2 ITEMS    | BOTTOM 2 ITEMS |",
                                    "| HIGH  EXP. LOW | HIGH  EXP. LOW |",
                                    rule,
                                    "|    0    1    1 |    1    1    0 |    12  Pers12",
                                    rule,
                                }));
  // Ten at one score stand all; no lower score follows them.
  contrast.others.assign(10, Answering(1, {2, 0, 0}, {0, 2, 0}));
  contrast.others.push_back(Answering(2, {1, 1, 0}, {0, 2, 0}));
  EXPECT_EQ(small.LinesOf(put).size(), 18U - 2 + 10 - 1);
  contrast.others.erase(contrast.others.begin());
  EXPECT_EQ(small.LinesOf(put).size(), 18U - 2 + 10 - 1);
  contrast.others = {Answering(1, {1, 1, 0}, {1, 1, 0})};
  EXPECT_EQ(small.LinesOf(put), (Lines{" ", "*** NO REPORTABLE CONTRAST FOUND ***"}));
  contrast = {};
  EXPECT_EQ(small.LinesOf(put), Lines{});
}

// Words as long as they may be stand beside a bar or in its place, and run into nothing.
TEST(Contrasts, KeepLongWordsApart) {
  ComponentRun small(3, 2, {.5, -.5});
  ControlSettings& settings = small.run.DraftSettings();
  settings.PERSON_LABEL = "ADOLESCENTEN";
  settings.ITEM_LABEL = settings.ITEMS_LABEL = "QUESTIONINGS";
  Contrast& contrast = small.component.contrast;
  contrast.top = {1};
  contrast.bottom = {2};
  contrast.others = {Answering(1, {1, 0, 0}, {0, 1, 0})};
  PutContrasts(small.run, Facet::Items, small.component);
  const Lines lines = small.ReportLines();
  EXPECT_THAT(lines, Contains("|        ADOLESCENTEN FAVORS TOP  |"));
  EXPECT_THAT(lines, Contains("|        ADOLESCENTEN FAVORS BOTTOM"));
  EXPECT_THAT(lines, Contains("| TOP 1 QUESTION | BOTTOM 1 QUESTIONINGS"));
}

TEST(Correlations, StandByTheirSigns) {
  ComponentRun small(2, 12, {.5, -.5});
  small.SetItemLabel(1, "A");
  PutCorrelations(small.run, Facet::Items, {});
  EXPECT_EQ(small.ReportLines(), Lines{});
  const Lines lines = small.LinesOf([&] {
    PutCorrelations(small.run, Facet::Items,
                    {{1, 2, -1}, {1, 12, .654}, {1, 11, -.25}, {1, 3, .25}, {2, 3, 0}});
  });
  EXPECT_EQ(lines, (Lines{
                       "     LARGEST STANDARDIZED RESIDUAL CORRELATIONS",
                       "     USED TO IDENTIFY DEPENDENT ITEMS",
                       "+-------+---------+--------------+",
                       "|RESIDUL| ENTRY I | ENTRY ITEM   |",
                       "|CORRELN|NUMBER I |NUMBER ITEM   |",
                       "|-------+---------+--------------|",
                       "|   .65 |     1 A |    12 Item12 |",
                       "|   .25 |     1 A |     3 Item3  |",
                       "|-------+---------+--------------|",
                       "| -1.00 |     1 A |     2 Item2  |",
                       "|  -.25 |     1 A |    11 Item11 |",
                       "+-------+---------+--------------+",
                   }));
}

}  // namespace
}  // namespace vardento::test
