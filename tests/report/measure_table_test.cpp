#include "report/measure_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/run_summary.h"
#include "report/small_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

// Six items, one for each kind of row.
struct ItemRun : SmallRun {
  explicit ItemRun(int groups = 1) : SmallRun(3, 6, groups) {
    RunArrays& a = run.arrays;
    const StatusByte statuses[] = {Status::Active,      Status::Anchored, Status::ExtremeHigh,
                                   Status::NoResponses, Status::LostLow,  -9};
    for (int i = 1; i <= 6; ++i) {
      a.ItemStatus[i] = statuses[i - 1];
      a.ItemScore[i] = 12;
      a.ItemCount[i] = 20;
      a.ItemTotalScore[i] = 13.5F;
      a.ItemTotalCount[i] = 22;
      a.ItemMeasure[i] = 1.25F;
      a.ItemError[i] = 0.5F;
      a.ItemInfit[i] = 1.44F;
      a.ItemInfitZ[i] = 9.90144F;
      a.ItemOutfit[i] = 0.98F;
      a.ItemOutfitZ[i] = -0.1F;
      a.ItemCorrelation[i] = -0.45F;
      a.ItemDisplacement[i] = 0.25F;
    }
    a.ItemMeasure[3] = -12345.678F;
    run.results.ActiveItems = 2;
    run.results.RunDigest = "the digest";
    run.request.CurrentTable = 14;
    context.items.entries = {1, 2, 3, 4, 5, 6};
    FacetSummary& summary = run.results.summary.items;
    float mean = 0.4F;
    for (Statistic* statistic :
         {&summary.score, &summary.count, &summary.measure, &summary.error, &summary.infit,
          &summary.infitZ, &summary.outfit, &summary.outfitZ}) {
      *statistic = {mean, 0.2F};
      mean += 1;
    }
    summary.realError = {7.75F, 0.125F};
  }
  // The lines behind the page heading.
  std::vector<std::string> Print(Facet facet, std::string_view order) {
    MeasureTable(context, facet, order).Print();
    std::vector<std::string> lines = ReportLines();
    lines.erase(lines.begin(), lines.begin() + 4);
    return lines;
  }
};

std::string Horizontal(int count) { return std::string(static_cast<std::size_t>(count), '-'); }

TEST(MeasureTable, PrintsEveryKindOfRow) {
  ItemRun small;
  const std::vector<std::string> lines = small.Print(Facet::Items, "ENTRY");
  EXPECT_THAT(
      std::vector(lines.begin() + 8, lines.begin() + 14),
      ElementsAre("|     1     12     20    1.25     .50|1.44   9.9| .98   -.1| -.45| Item1 |",
                  "|     2     12     20    1.25A    .50|1.44   9.9| .98   -.1| -.45| Item2 |",
                  "|     3     12     20********     .50| MAXIMUM ESTIMATED MEASURE | Item3 |",
                  "|     4     DROPPED                  |          |          |     | Item4 |",
                  "|     5     INESTIMABLE: LOW         |          |          |     | Item5 |",
                  "|     6     DESELECTED               |          |          |     | Item6 |"));
  EXPECT_THAT(small.context.items.entries, ElementsAre(1, 2, 3, 4, -5, -6));
}

TEST(MeasureTable, OptionsChangeHeadsAndNumbers) {
  ItemRun small;
  ControlSettings& s = small.run.DraftSettings();
  s.TOTAL = s.REALSE = small.run.inForce.pointBiserial = true;
  s.UDECIM = 4;
  s.fitName = " LOG";
  small.GivePersonWeights();
  small.run.given.PersonWeight[2] = 0.5F;
  small.context.items.entries = {1};
  small.run.request.TableArgument[4] = 3;
  const std::vector<std::string> lines = small.Print(Facet::Items, "ALPHA");
  EXPECT_EQ(lines[2], "         ITEM STATISTICS:  ALPHA ORDER ON COLUMN: 3");
  EXPECT_EQ(lines[5], "|ENTRY    TOTAL                      |   INFIT  |  OUTFIT  |PTBIS|       |");
  EXPECT_EQ(lines[6], "|NUMBER  SCORE  COUNT  MEASURE REALSE|MNSQ   LOG|MNSQ   LOG|CORR.| ITEM  |");
  // The error grows by the square root of 1.44; fractional weights of persons give decimals.
  EXPECT_EQ(lines[8], "|     1   13.5   22.0  1.2500   .6000|1.44   9.9| .98   -.1| -.45| Item1 |");
}

TEST(MeasureTable, OptionalColumnsStandBehindTheCorrelation) {
  ItemRun small(2);
  auto& run = small.run;
  run.arrays.GroupModel[2] = Model::Successes;
  run.arrays.ItemGroup[2] = 2;
  run.DraftSettings().GROUPS = PerItem::Text;
  run.DraftSettings().groupsText = "ABAAAA";
  run.request.CurrentTable = 25;
  small.GiveItemWeights();
  run.given.ItemWeight[2] = 12.5F;
  small.context.items.entries = {1, 2, 4};
  const std::vector<std::string> lines = small.Print(Facet::Items, "DISPLACEMENT");
  EXPECT_THAT(lines[4], EndsWith("------" + Horizontal(5) + "-" + Horizontal(8) + "-" +
                                 Horizontal(12) + "+"));
  EXPECT_THAT(lines[5], EndsWith("|SCORE|     |        |            |"));
  EXPECT_THAT(lines[6], EndsWith("|CORR.|WEIGH|DISPLACE| ITEM   M G |"));
  EXPECT_THAT(lines[7], EndsWith("+-----+-----+--------+------------|"));
  EXPECT_THAT(lines[8], EndsWith("| -.45| 1.00|     .25| Item1    A |"));
  EXPECT_THAT(lines[9], EndsWith("| -.45|12.50|     .25| Item2  S B |"));
  EXPECT_THAT(lines[10], EndsWith("|     | 1.00|        | Item4    A |"));
}

// Whatever columns stand, every line of the box ends where its rules end.
TEST(MeasureTable, RightEdgeIsStraight) {
  for (int mask = 0; mask < 32; ++mask) {
    const Facet facet = (mask & 16) != 0 ? Facet::Persons : Facet::Items;
    ItemRun small((mask & 1) + 1);
    if ((mask & 2) != 0) small.run.arrays.GroupModel[1] = Model::Failures;
    if ((mask & 4) != 0)
      facet == Facet::Items ? small.GiveItemWeights() : small.GivePersonWeights();
    small.run.results.fit.ItemDisplaced = small.run.results.fit.PersonDisplaced = (mask & 8) != 0;
    small.run.DraftSettings().PERSON_LABEL = "SCHOOLCHILD";
    small.run.arrays.PersonStatus[2] = Status::ExtremeLow;
    small.run.arrays.PersonStatus[3] = Status::Deleted;
    small.context.persons.entries = {1, 2, 3};
    const std::vector<std::string> lines = small.Print(facet, "ENTRY");
    const std::size_t width = 67 + (mask & 4 ? 6U : 0U) + (mask & 8 ? 9U : 0U) + 7;
    const bool subColumns = facet == Facet::Items && (mask & 3) != 0;
    const std::size_t extra = subColumns ? 1U + (mask & 1 ? 2U : 0U) + (mask & 2 ? 2U : 0U) : 0U;
    for (std::size_t i = 4; i < lines.size(); ++i) {
      EXPECT_EQ(lines[i].size(), width + extra) << mask << ": " << lines[i];
      EXPECT_THAT(lines[i].back(), testing::AnyOf('|', '+'));
    }
  }
}

// Persons 1 to `count`, ever better fitting: infit and outfit z fall from +3 to below 0.
struct FitRun : SmallRun {
  explicit FitRun(int count) : SmallRun(count, 2) {
    for (int n = 1; n <= count; ++n) {
      run.arrays.PersonInfitZ[n] = run.arrays.PersonOutfitZ[n] = n <= 26   ? 3.0F
                                                                 : n <= 30 ? 1.0F
                                                                           : -1.0F;
      SetPerson(n, "P" + std::to_string(n), {.correlation = n == 2 ? -0.45F : 0.5F});
      context.persons.entries.push_back(n);
    }
    run.request.CurrentTable = 6;
  }
  std::vector<std::string> Rows() {
    MeasureTable(context, Facet::Persons, "MISFIT").Print();
    std::vector<std::string> lines = ReportLines();
    lines.erase(lines.begin(), lines.begin() + 12);
    lines.erase(lines.end() - 4, lines.end());
    return lines;
  }
};

TEST(MeasureTable, FitOrderOmitsTheMiddle) {
  FitRun small(60);
  ASSERT_EQ(small.Rows().size(), 53U);
  EXPECT_EQ(small.context.persons.entries[26], -27);
  EXPECT_EQ(small.context.persons.entries[34], 35);

  EXPECT_EQ(FitRun(52).Rows().size(), 52U) << "a list of 52 leaves nobody out";
  FitRun wide(60);
  wide.run.DraftSettings().FITP = -0.5F;  // its size counts: nobody fits better
  EXPECT_EQ(wide.Rows().size(), 60U);

  FitRun late(60);  // no printed row is negative: the line stands at the end of the list
  for (int n = 1; n <= 60; ++n) late.run.arrays.PersonOutfitZ[n] = 0.5F;
  const std::vector<std::string> lateRows = late.Rows();
  ASSERT_EQ(lateRows.size(), 53U);
  EXPECT_THAT(lateRows[52], HasSubstr("BETTER FITTING OMITTED"));
}

TEST(MeasureTable, SendsItsFirstRowsToTheScreen) {
  FitRun small(6);
  small.run.DraftSettings().PERSON_LABEL = std::string(12, 'L');
  small.run.LongestLabel = 30;
  small.run.DraftSettings().NAMLEN = 6;
  MeasureTable(small.context, Facet::Persons, "MISFIT").Print();
  MeasureTable(small.context, Facet::Persons, "MISFIT").Print();
  MeasureTable(small.context, Facet::Persons, "ENTRY").Print();
  small.console.lines.clear();
  ShowRunSummary(small.run);
  ASSERT_EQ(small.console.lines.size(), 6U) << "a head, four rows, where the report is";
  EXPECT_EQ(small.console.lines[0],
            " |NUMBER  SCORE  COUNT  MEASURE  ERROR|MNSQ  ZSTD|MNSQ  ZSTD|CORR.| LLLLLLLLLLL");
  EXPECT_THAT(small.console.lines[4], testing::StartsWith(" |     4 "));
}

}  // namespace
}  // namespace vardento::test
