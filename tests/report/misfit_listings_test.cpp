#include "report/misfit_listings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/small_run.h"

namespace vardento::test {
namespace {

// Lines from the one that begins with `first` on.
std::vector<std::string> From(SmallRun& small, const std::string& first) {
  std::vector<std::string> lines = small.ReportLines();
  while (!lines.empty() && !lines.front().starts_with(first)) lines.erase(lines.begin());
  return lines;
}

// Person 2 answers 12 items: item 2 lies 4 logits above it, item 3 is extreme, the scale has no
// category 2, nothing was scored on item 5.
SmallRun& MisfittingPerson(SmallRun& small) {
  RunArrays& a = small.run.arrays;
  small.context.needs.subject = Facet::Persons;
  small.run.request.CurrentTable = 7;
  small.run.DraftSettings().LINELEN = 45;
  a.PersonStatus[2] = Status::Anchored;
  a.PersonInfit[2] = 1.24F;
  a.PersonOutfit[2] = 9.9F;
  a.PersonMeasure[2] = -1.5F;
  a.ItemMeasure[2] = 2.5F;
  for (const int i : {1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}) a.ItemMeasure[i] = -1.5F;
  a.ItemMeasure[12] = -4.5F;
  a.ItemStatus[3] = Status::ExtremeLow;
  small.SetResponses(2, "1112 0000000");
  return small;
}

TEST(PoorFitList, ShowsResponsesAndResiduals) {
  SmallRun small(2, 12);
  PrintPoorFitList(MisfittingPerson(small).context);
  EXPECT_EQ(From(small, "TABLE OF"),
            (std::vector<std::string>{
                "TABLE OF POORLY FITTING PERSONS   (ITEMS IN ENTRY ORDER)",
                "NUMBER - NAME -- POSITION ------ MEASURE - INFIT (MNSQ) OUTFIT",
                " ",
                "     2* Pers2                      -1.50     1.2   a    9.9",
                "  RESPONSE:      1:  1 1 1 2 M  0 0 0 0 0",
                "Z-RESIDUAL:            7 X X",
                " ",
                "  RESPONSE:     11:  0 0",
                "Z-RESIDUAL:           -4",
                " ",
            }));
}

// Two digits want cells of 3 columns, of which a short line takes five at least.
TEST(PoorFitList, WidensItsCells) {
  SmallRun small(2, 12);
  MisfittingPerson(small).run.MAXCAT = 10;
  small.run.DraftSettings().LINELEN = 1;
  PrintPoorFitList(small.context);
  const std::vector<std::string> lines = From(small, "     2*");
  EXPECT_EQ(lines.at(1), "  RESPONSE:      1:   1  1  1  2  M");
  EXPECT_EQ(lines.at(2), "Z-RESIDUAL:              7  X  X");
  EXPECT_EQ(lines.at(4), "  RESPONSE:      6:   0  0  0  0  0");
}

// A sheet that is broken in the middle of an entry has its head again.
TEST(PoorFitList, RepeatsItsHeadOnASheet) {
  SmallRun small(2, 12);
  MisfittingPerson(small).run.DraftSettings().MAXPAGE = 20;
  small.run.DraftSettings().LINELEN = 1;
  PrintPoorFitList(small.context);
  const std::vector<std::string> lines = From(small, "\f**CONTINUED");
  EXPECT_EQ(lines.at(2), "TABLE OF POORLY FITTING PERSONS   (ITEMS IN ENTRY ORDER)");
  EXPECT_THAT(lines.at(5), testing::StartsWith("     2* Pers2")) << "whose responses they are";
  EXPECT_EQ(lines.at(6), "  RESPONSE:     11:  0 0");
}

// Items 2 and 10 against persons 1 and 11: of the four responses one is as expected, one missing,
// one unexpected and one no category. Item 3 has none that is unexpected.
TEST(UnexpectedGrid, MarksWhatIsUnexpected) {
  SmallRun small(11, 10);
  auto& run = small.run;
  small.context.needs.subject = Facet::Items;
  run.request.CurrentTable = 10;
  run.results.fit.worstItems = {{10, 9}, {3, 4}, {2, 3}};
  run.results.fit.worstPersons = {{1, 9}, {11, 3}};
  run.arrays.PersonMeasure[11] = 3;
  run.arrays.ItemMeasure[10] = 4;
  run.arrays.ItemMeasure[2] = -3;
  run.arrays.ItemOutfit[10] = 3.456F;
  run.arrays.ItemOutfitZ[10] = 9;
  small.SetItemLabel(2, "");
  small.SetResponses(1, "  1      1");
  small.SetResponses(11, " 01      2");
  PrintUnexpectedResponses(small.context);
  PrintMisfittingStrings(small.context);
  std::vector<std::string> lines = From(small, "MOST UNEXPECTED");
  const std::vector<std::string> strings(lines.end() - 6, lines.end());
  lines.resize(10);
  EXPECT_EQ(strings.at(1), "    10 Item10    3.46 A|-1");
  EXPECT_EQ(strings.at(2), "     2            .00 C|0");
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "MOST UNEXPECTED RESPONSES",
                       "       ITEM   MEASURE  |PERSON",
                       "                       |1",
                       "                       |11",
                       "                    high--",
                       "     2          -3.00 C|0",
                       "    10 Item10    4.00 A|-1",
                       "                        --low",
                       "                       |11",
                       "                       |1",
                   }));
}

// Columns of persons may have numbers of any length; a score of two digits takes two columns.
TEST(UnexpectedGrid, FillsSheets) {
  SmallRun small(40, 2);
  auto& run = small.run;
  run.DraftSettings().MAXPAGE = 20;
  run.MAXCAT = 12;
  small.context.needs.subject = Facet::Persons;
  run.results.fit.worstItems = {{2, 9}};
  for (int n = 1; n <= 40; ++n) {
    run.results.fit.worstPersons.push_back({n, 3});
    run.arrays.PersonMeasure[n] = -4;
    small.SetResponses(n, "01");
  }
  PrintUnexpectedResponses(small.context);
  int rows = 0, sheets = 0, onSheet = 0;
  for (const std::string& line : small.ReportLines()) {
    sheets += line.starts_with("\f**CONTINUED");
    onSheet = line.starts_with("\f") ? 1 : onSheet + 1;
    EXPECT_LE(onSheet, 20) << line;
    rows += line.ends_with("| 1") && line.find("Pers") != std::string::npos;
  }
  EXPECT_EQ(rows, 40);
  EXPECT_EQ(sheets, 5);  // 6 rows on the first sheet, 8 on each of four, 2 left
}

}  // namespace
}  // namespace vardento::test
