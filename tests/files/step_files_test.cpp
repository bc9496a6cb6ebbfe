#include "files/step_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/small_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;

// What a category position holds.
struct Position {
  int code = 0;
  int status = 1;
  float step = 0;
  float information = 0, half = 0, point = 0, thurstone = 0;
};
using Scale = std::vector<Position>;

// A run with these scales, one for each group; an empty one has been dropped.
struct StepRun : SmallRun {
  StepRun(int itemCount, const std::vector<Scale>& scales)
      : SmallRun(1, itemCount, static_cast<int>(scales.size())) {
    RunArrays& a = run.arrays;
    for (const Scale& scale : scales) run.NCATS += static_cast<int>(scale.size());
    codes.resize(static_cast<std::size_t>(run.NCATS));
    statuses.resize(codes.size());
    a.CategoryToCode = {codes.data(), run.NCATS};
    a.StepStatus = {statuses.data(), run.NCATS};
    a.StepCalibration = Floats(run.NCATS);
    a.CategoryInformation = Floats(run.NCATS);
    for (Array1<double>* array :
         {&a.CategoryHalfPoint, &a.CategoryMeasurePoint, &a.CategoryThurstone}) {
      *array = Doubles(run.NCATS);
    }
    int position = 1;
    for (int g = 1; g <= a.GroupTop.Size(); ++g) {
      const Scale& scale = scales[static_cast<std::size_t>(g) - 1];
      a.GroupStart[g] = position;
      a.GroupTop[g] = static_cast<int>(scale.size()) - 1;
      for (const Position& p : scale) Set(position++, p);
    }
    run.DraftSettings().SFILE = run.DraftSettings().ISFILE = directory.NameOf("steps.txt");
  }
  void Set(int position, const Position& p) {
    RunArrays& a = run.arrays;
    a.CategoryToCode[position] = p.code;
    a.StepStatus[position] = p.status;
    a.StepCalibration[position] = p.step;
    a.CategoryInformation[position] = p.information;
    a.CategoryHalfPoint[position] = p.half;
    a.CategoryMeasurePoint[position] = p.point;
    a.CategoryThurstone[position] = p.thurstone;
  }
  std::vector<std::string> Steps() {
    WriteStepFile(run);
    return LinesOf(directory.Read("steps.txt"));
  }
  std::vector<std::string> ItemSteps() {
    WriteItemStepFile(run);
    return LinesOf(directory.Read("steps.txt"));
  }
  std::vector<std::int32_t> codes, statuses;
};

constexpr int kKept = 0, kEstimated = 1, kAnchored = 2;

// Codes 1 to 7, two of them unused and kept. What a packed category left at the first position is
// no step of the scale.
const Scale kSeven{{1, kEstimated, 9},    {2, kEstimated, -1.5F}, {3, kKept},       {4, kKept},
                   {5, kEstimated, .25F}, {6, kEstimated, .5F},   {7, kAnchored, 2}};
const Scale kDichotomy{{0, kKept}, {1, kEstimated, 0}};

TEST(StepFile, OneScale) {
  StepRun small(2, {kSeven});
  small.run.DraftSettings().USCALE = -2;
  // -3, then 80 further up for each unused category; all of it is taken back at the next estimated
  // step: -3 + 77 + 157 - 233.5 is twice -1.5 + .25.
  EXPECT_THAT(
      small.Steps(),
      ElementsAre("; STEP DIFFICULTY anchor FILE FOR Fruit " + std::string(kRunStamp),
                  "; CATEGORY  STEP DIFFICULTY", "  1     .00", "  2   -3.00", "  3   77.00",
                  "  4  157.00", "  5 -233.50", "  6    1.00", "  7    4.00"));
  EXPECT_THAT(small.console.lines, ElementsAre("Writing Step Measure file ..."));
  EXPECT_THAT(small.console.menuEntries,
              ElementsAre("Edit Step SFILE=" + small.run.settings.SFILE));
}

TEST(StepFile, SeveralScales) {
  const Scale gaps{{0}, {2, kEstimated, -.5F}, {5, kEstimated, .5F}};  // STKEEP=N
  StepRun small(6, {kSeven, kDichotomy, {}, {{3}}, gaps});
  ControlSettings& s = small.run.DraftSettings();
  s.USCALE = -2;
  for (int i = 1; i <= 5; ++i) small.run.arrays.ItemGroup[i] = i;
  small.run.arrays.ItemGroup[6] = 2;
  small.run.arrays.ItemStatus[6] = Status::ExtremeLow;
  // Here 40 logits are taken back for each unused category: 2 x (.25 - 80).
  EXPECT_THAT(small.Steps(),
              ElementsAre(testing::_, "; ITEM         CATEGORY  STEP anchor DIFFICULTY",
                          "     1  1     .00", "     1  2   -3.00", "     1  3   77.00",
                          "     1  4  157.00", "     1  5 -159.50", "     1  6    1.00",
                          "     1  7    4.00", "     2  0     .00", "     2  1     .00",
                          "     5  0     .00", "     5  2   -1.00", "     5  5    1.00"));
  s.HLINES = false;
  EXPECT_EQ(small.Steps()[0], "     1  1     .00");
}

TEST(ItemStepFile, RowsOfAllKinds) {
  const Scale gaps{{0, kEstimated, 0, 0, 0, -2.5F},
                   {2, kEstimated, -1, 4, -1.5F, 0, -1},
                   {5, kEstimated, 1, 0, 1.5F, 2.75F, 1.25F}};
  const Scale two{{1, kKept, 0, 0, 0, -1}, {2, kEstimated, 0, 16, 0, 1, 0}};
  StepRun small(4, {gaps, two});
  RunArrays& a = small.run.arrays;
  ControlSettings& s = small.run.DraftSettings();
  for (int i = 2; i <= 4; ++i) a.ItemGroup[i] = 2;
  a.ItemMeasure[1] = .5F;
  a.ItemMeasure[2] = 123456;
  a.ItemMeasure[3] = 7;
  a.ItemStatus[3] = Status::NoResponses;
  a.ItemMeasure[4] = -.25F;
  a.ItemStatus[4] = Status::ExtremeHigh;
  const std::string zeros = "    0    0     .00     .00     .00     .00     .00";
  EXPECT_THAT(small.ItemSteps(),
              ElementsAre(";ITEM         STEP FILE (do not use for anchoring) FOR", ";Fruit",
                          ";" + std::string(kRunStamp),
                          "; ENTRY  ST  MAX  LOW   AT.25"
                          "  CAT STEP MEASURE   ERROR  AT-0.5  ATSTEP  THRESH"
                          "  CAT STEP MEASURE   ERROR  AT-0.5  ATSTEP  THRESH",
                          "     1    1    2    0   -2.00"
                          "    2    1    -.50     .50   -1.00     .50    -.50"
                          "    5    2    1.50   31.62    2.00    3.25    1.75",
                          "     2    1    1    1********"
                          "    2    2********     .25****************" +
                              std::string(8, '*') + zeros,
                          ";    3   -2    0    0     .00" + zeros + zeros,
                          "     4    0    1    1   -1.25"
                          "    2    2    -.25     .25    -.25     .75    -.25" +
                              zeros));
  EXPECT_THAT(small.console.lines, ElementsAre("Writing Item-Step file ...", testing::_));
  EXPECT_THAT(small.console.menuEntries,
              ElementsAre("Edit Item-Step ISFILE=" + small.run.settings.ISFILE));

  s.CSV = 'Y';
  s.TITLE = std::string(44, 'x') + " zz";
  EXPECT_EQ(small.ItemSteps()[1], "\"" + std::string(44, 'x') + "\"");
  s.CSV = 'N';
  s.HLINES = false;
  EXPECT_EQ(small.ItemSteps()[2].substr(0, 6), "     3") << "without head lines nothing is marked";
}

// The running values of the steps hang on the number of scales and on the unit, as in SFILE=.
TEST(ItemStepFile, UnusedCategoriesAndUnits) {
  for (const bool several : {false, true}) {
    StepRun small(2, several ? std::vector<Scale>{kSeven, kDichotomy} : std::vector<Scale>{kSeven});
    small.run.DraftSettings().USCALE = -2;
    small.run.DraftSettings().CSV = 'Y';
    small.run.DraftSettings().HLINES = false;
    small.run.arrays.ItemMeasure[1] = -25;
    if (several) small.run.arrays.ItemGroup[2] = 2;
    const std::string row = small.ItemSteps()[0];
    const std::string rest = ",63.25,50.00,50.00,50.00,";  // 2 / root .001
    EXPECT_EQ(row, "1,1,6,1,50.00,2,2,47.00" + rest + "3,3,127.00" + rest + "4,4,207.00" + rest +
                       "5,5," + (several ? "-109.50" : "-183.50") + rest + "6,6,51.00" + rest +
                       "7,7,54.00" + rest);
  }
}

}  // namespace
}  // namespace vardento::test
