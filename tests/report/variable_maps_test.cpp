#include "report/variable_maps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/dispatch.h"
#include "report/map_labels.h"
#include "report/map_scale.h"
#include "report/small_run.h"
#include "report/table_requests.h"

namespace vardento::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

// Persons at -2, -1, 0, 1, 2 logits against items at -1, 0 and 1.
class SmallMap : public SmallRun {
 public:
  explicit SmallMap(int persons = 5) : SmallRun(persons, 3) {
    for (int n = 1; n <= persons; ++n) {
      run.arrays.PersonMeasure[n] = static_cast<float>((n - 1) % 5 - 2);
    }
    for (int i = 1; i <= 3; ++i) run.arrays.ItemMeasure[i] = static_cast<float>(i - 2);
  }
  // The lines of a request that come behind the page headings.
  std::vector<std::string> Ask(const std::string& request) {
    ParseTableRequest(run.request, request);
    DispatchTable(context);
    return ReportLines();
  }
};

struct ScaleCase {
  const char* name;
  float low, high, unit;
  int maxpage;
  float slot4;  // 0: not given
  int lastRow;
};

TEST(MapScale, TakesTheRowsOfThePage) {
  const ScaleCase cases[] = {
      {"seven units of 9 rows would be 63", -3, 4, 1, 0, 0, 62},
      {"six units of 10 rows", -3, 3, 1, 0, 0, 60},
      {"one ten of rows at least", -3, 3, 1, 25, 0, 10},
      {"five units of 8 rows", -2, 3, 1, 60, 0, 40},
      {"never more than 62", -2, 0, 1, 99, 0, 62},
      {"more units than rows", 0, 9000, 100, 0, 0, 62},
      {"rows of the request", -3, 3, 1, 25, 4, 24},
      {"too many of them", -3, 3, 1, 0, 1e9F, 62},
      {"too few", -3, 3, 1, 0, 1e-9F, 1},
      {"a wanted number below 0 lifts the limit of the page", -3, 3, 1, 25, -1, 60},
  };
  SmallRun small(1, 1);
  for (const ScaleCase& c : cases) {
    small.context.rangeLow = c.low;
    small.context.rangeHigh = c.high;
    small.context.rangeUnit = c.unit;
    small.context.rangeSpan = static_cast<int>((c.high - c.low) / c.unit);
    small.run.DraftSettings().MAXPAGE = c.maxpage;
    small.run.request.TableArgumentSet[3] = c.slot4 == 0 ? ' ' : 'U';
    small.run.request.TableArgument[3] = c.slot4;
    EXPECT_EQ(MapScale(small.context).LastRow(), c.lastRow) << c.name;
  }
}

// 400 to 600 by tens with 3 rows each: rows 0, 3, 6 ... show 400, 410, 420 ...
TEST(MapScale, NumbersWholeUnits) {
  SmallRun small(1, 1);
  small.context.rangeLow = 400;
  small.context.rangeHigh = 600;
  small.context.rangeUnit = 10;
  small.context.rangeSpan = 20;
  const MapScale scale(small.context);
  ASSERT_EQ(scale.LastRow(), 60);
  for (int row = 0; row <= 60; ++row) {
    EXPECT_EQ(scale.IsTick(row), row % 3 == 0) << row;
    if (row % 3 == 0) {
      EXPECT_EQ(scale.NumberAt(row), 400 + row / 3 * 10);
    }
  }
  EXPECT_EQ(scale.TickAtOrAbove(4), 6);
  EXPECT_EQ(scale.TickAtOrBelow(4), 3);
  EXPECT_EQ(scale.NearestRow(401.6), 0);
  EXPECT_EQ(scale.NearestRow(401.7), 1);
  EXPECT_EQ(scale.NearestRow(1e30), 61);
  EXPECT_EQ(scale.RowOf(1e30, MapPlace::AtMeasure), 60);
  EXPECT_EQ(scale.RowOf(590, MapPlace::AtBottom), 0);
  // As far from the entry's own row as the distance says, 5 x 0.3 rows rounded for itself.
  EXPECT_EQ(scale.RowOf(MapPoint{.measure = 401.4F}, 406.4), 2);
}

// Signs of 3 and a point for 1 or 2 more: what a bar says lies no further off than that.
TEST(Maps, BarsTellTheirCount) {
  EXPECT_EQ(BarOf({1}, 4), "XXXX");
  const char* threes[] = {"", ".", ".", "#", "#.", "#.", "##", "##."};
  for (int count = 0; count < 8; ++count) EXPECT_EQ(BarOf({3}, count), threes[count]) << count;
  EXPECT_EQ(BarOf({2}, 3), "#.");
}

TEST(Maps, TheRequestRaisesTheUnitOfBars) {
  SmallRun small(1, 1);
  TableRequest& request = small.run.request;
  const auto unit = [&](Facet facet, double largest) {
    return DecideBarUnit(small.run, facet, largest, 29).unit;
  };
  EXPECT_EQ(unit(Facet::Persons, 29), 1);
  EXPECT_EQ(unit(Facet::Persons, 30), 2);
  EXPECT_EQ(unit(Facet::Persons, 0), 1);
  small.run.DraftSettings().T1P = 5;
  EXPECT_EQ(unit(Facet::Persons, 30), 5);
  EXPECT_EQ(unit(Facet::Persons, 300), 11);
  EXPECT_EQ(unit(Facet::Items, 30), 2);
  request.TableArgumentSet[5] = request.TableArgumentSet[6] = 'U';
  request.TableArgument[5] = 3;
  request.TableArgument[6] = 1e30F;
  EXPECT_EQ(unit(Facet::Persons, 30), 3);
  EXPECT_GT(unit(Facet::Items, 30), 1000000);
  request.TableArgument[5] = 0.5F;
  EXPECT_EQ(unit(Facet::Persons, 30), 5);
}

TEST(Maps, WordsFollowTheDirectionOfTheScale) {
  struct {
    float uscale;
    bool mirrored;
    const char *topPersons, *topItems, *bottomPersons, *bottomItems;
  } const cases[] = {
      {1, false, "<more>", "--- <rare>", "<less>", "<frequent>"},
      {-1, false, "<less>", "<frequent>", "<more>", "--- <rare>"},
      {1, true, "<more>", "<frequent>", "<less>", "--- <rare>"},
      {-1, true, "<less>", "--- <rare>", "<more>", "<frequent>"},
  };
  SmallRun small(1, 1);
  for (const auto& c : cases) {
    small.run.DraftSettings().USCALE = c.uscale;
    EXPECT_EQ(PersonWord(small.run, MapEnd::Top), c.topPersons);
    EXPECT_EQ(ItemCaption(small.run, MapEnd::Top, c.mirrored), c.topItems);
    EXPECT_EQ(PersonWord(small.run, MapEnd::Bottom), c.bottomPersons);
    EXPECT_EQ(ItemCaption(small.run, MapEnd::Bottom, c.mirrored), c.bottomItems);
  }
}

// Labels end at the rule and begin behind it, extreme entries stand at the ends, a blank label is
// an "X". Persons: mean 0.5, S.D. 1.12; items: mean 0, S.D. 0.82; two rows to a logit.
TEST(CombinedMap, SetsLabelsOnBothSides) {
  SmallMap small;
  small.run.arrays.PersonStatus[1] = Status::ExtremeHigh;
  small.SetPerson(3, "", {});
  const std::vector<std::string> lines = small.Ask("1.0 - - 2");
  EXPECT_THAT(std::vector<std::string>(lines.begin() + 5, lines.begin() + 15),
              ElementsAre("            PERSONS -MAP- ITEMS",  //
                          "                <more>|<rare>",    //
                          "    2  Pers1   Pers5  +",          //
                          "                     S|T",         //
                          "    1          Pers4  +S Item3",   //
                          "                     M|",          //
                          "    0              X  +M Item2",   //
                          "                     S|",          //
                          "   -1          Pers2  +S Item1",   //
                          "                <less>|<frequ>"));
}

// 32 persons on a row take 63 columns when their labels are 1 wide, which leaves 6 for an item.
TEST(CombinedMap, IsLeftOutWhenLabelsDontFit) {
  for (const int persons : {160, 165}) {
    const std::vector<std::string> lines = SmallMap(persons).Ask("1.0");
    EXPECT_EQ(persons == 160, lines[5].ends_with(" -MAP- ITEMS")) << persons;
  }
}

TEST(LabelMap, GoesOnBelowWhereALineIsFull) {
  SmallMap small;
  for (int n = 1; n <= 5; ++n) small.run.arrays.PersonMeasure[n] = 0.25F;
  small.run.arrays.PersonStatus[5] = Status::ExtremeLow;
  small.run.DraftSettings().LINELEN = 34;  // 17 columns for labels: two of 6
  const std::vector<std::string> lines = small.Ask("16.3 -1 1 2");
  EXPECT_THAT(std::vector<std::string>(lines.begin() + 5, lines.begin() + 14),
              ElementsAre("       ITEMS MAP OF PERSONS",      //
                          "         <rare>|<more>",           //
                          "    1       X S+",                 //
                          "               |M Pers1   Pers2",  //
                          "                  Pers3   Pers4",  //
                          "    0       X M+",                 //
                          "               |",                 //
                          "   -1       X S+  Pers5",          //
                          "        <frequ>|<less>"));
}

// 4 persons on a row of Table 1 and 23 columns for them: labels of 3 columns fit on one line.
TEST(LabelMap, CutsLabelsOfTable1ToOneLine) {
  SmallMap small;
  for (int n = 1; n <= 4; ++n) small.run.arrays.PersonMeasure[n] = 1;
  small.run.DraftSettings().LINELEN = 40;
  EXPECT_THAT(small.Ask("1.3 -2 2 1"), Contains("    1       X S+M Per  Per  Per  Per"));
}

// The mirrored maps belong to every request of Table 1: item 1, the easiest, stands highest.
TEST(LabelMap, ShowsMirroredItems) {
  SmallMap small;
  const std::vector<std::string> lines = small.Ask("1.2 -1 1 1");
  EXPECT_THAT(lines, Contains("    1      XX S+S Item3"));
  EXPECT_THAT(lines, Contains("    1      XX S++S Item1"));
  EXPECT_THAT(lines, Contains("         <more>||<frequ>"));
  EXPECT_THAT(lines, Not(Contains(testing::StartsWith("TABLE 1.3"))));
}

// IMAP= and PMAP= choose what maps show, and what they are sorted by when ISORT= is 0.
TEST(MapLabels, TakeTheirPartOfTheLabel) {
  SmallMap small;
  auto& run = small.run;
  small.SetPerson(2, "ab  cd", {});
  EXPECT_EQ(MapLabels(run, Facet::Persons).Of(2), "ab  cd");
  run.DraftSettings().NAMLMP = -3;
  EXPECT_EQ(MapLabels(run, Facet::Persons).Of(2), "ab");
  EXPECT_EQ(MapLabels(run, Facet::Persons).Width(), 3);
  EXPECT_EQ(MapLabels(run, Facet::Items).Of(1), "Ite");
  run.inForce.PMAP = "$S5W2+\"-\"+$S1E2";
  EXPECT_EQ(MapLabels(run, Facet::Persons).Of(2), "cd-ab");
  EXPECT_EQ(MapLabels(run, Facet::Persons).Width(), 5);
  EXPECT_EQ(MapLabels(run, Facet::Persons).Of(1), "1-Pe");
  run.inForce.PMAP = "$S7W9";
  EXPECT_EQ(MapLabels(run, Facet::Persons).Of(2), "X");
}

TEST(MapLabels, TellOfAFaultyFieldOnce) {
  SmallMap small;
  small.run.inForce.IMAP = "$S2";
  for (int n = 0; n < 2; ++n) EXPECT_EQ(MapLabels(small.run, Facet::Items).Of(1), "Item1");
  EXPECT_THAT(small.console.lines, ElementsAre("Unexpected ending to: IMAP=$S2"));
}

TEST(SortedLists, SortByTheFieldOfMaps) {
  SmallMap small;
  const char* labels[] = {"a3", "b1", "c2", "d1", "e"};
  for (int n = 1; n <= 5; ++n) small.SetPerson(n, labels[n - 1], {});
  small.run.DraftSettings().PSORT = 0;
  small.run.inForce.PMAP = "$S2W1";
  SelectedList list;
  SortAlphabetically(small.run, Facet::Persons, list);
  EXPECT_THAT(list.entries, ElementsAre(5, 2, 4, 3, 1));
  EXPECT_EQ(small.run.request.Value(5), 0);
}

// Two items of one scale with three categories, at the same place.
class TwoItems : public SmallMap {
 public:
  TwoItems() {
    RunArrays& a = run.arrays;
    a.GroupTop[1] = 2;
    a.CategoryToCode[2] = 1;
    a.CategoryToCode[3] = 2;
    a.ItemMeasure[1] = a.ItemMeasure[2] = 0;
    a.ItemStatus[3] = Status::Deleted;
    a.CategoryThurstone[2] = -1;
    a.CategoryThurstone[3] = 1;
    a.CategoryHalfPoint[2] = -0.1;
    a.CategoryHalfPoint[3] = 0.1;
  }
};

// Where a second item begins with the same category, it takes a line more.
TEST(ZoneMap, FillsColumnsLineByLine) {
  const std::vector<std::string> lines = TwoItems().Ask("12.6 -2 2 1");
  EXPECT_THAT(lines, Contains("       PERSONS MAP OF ITEMS - Thurstone thresholds"));
  EXPECT_THAT(lines, Contains("                  0         1         2"));
  EXPECT_THAT(lines, Contains("    1       X S+                      2  Item1"));
  EXPECT_THAT(lines, Contains("                                      2  Item2"));
  EXPECT_THAT(lines, Contains("   -1       X S+            1  Item1"));
}

TEST(ZoneMap, TellsOfMissingMemory) {
  TwoItems small;
  small.run.memory.SetLimit(0);
  EXPECT_THAT(small.Ask("12.6"), Contains("NOT ENOUGH MEMORY FOR TABLE"));
  EXPECT_THAT(small.console.lines,
              Contains("18 bytes of memory not available. Table not produced."));
}

// Of two cells that an item has on one line the last has its label.
TEST(ZoneMap, ShowsALabelOnceOnALine) {
  TwoItems small;
  small.run.DraftSettings().CFILE = small.directory.Write("c.txt", "0 never\n2 always often");
  const std::vector<std::string> lines = small.Ask("12.5 -2 2 1");
  EXPECT_THAT(lines, Contains("                  never     1         always o"));
  EXPECT_THAT(lines, Contains("    0       X M+M           1         2  Item1"));
  EXPECT_THAT(lines, Contains("                            1         2  Item2"));
}

}  // namespace
}  // namespace vardento::test
