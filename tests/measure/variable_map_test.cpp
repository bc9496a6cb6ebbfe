#include "measure/variable_map.h"

#include <gtest/gtest.h>

#include <cmath>

#include "report/small_run.h"

namespace vardento::test {
namespace {

// Item 1 of a scale with three categories (values 1, 2, 4), item 2 a dichotomy (0, 1), item 3
// extreme at the top, item 4 deleted; user units of 10 a logit from 50.
class TwoScales : public SmallRun {
 public:
  TwoScales() : SmallRun(5, 4, 2) {
    RunArrays& a = run.arrays;
    ControlSettings& s = run.DraftSettings();
    s.USCALE = 10;
    s.UMEAN = 50;
    a.ItemMeasure[1] = 0.5F;
    a.ItemMeasure[2] = -1;
    a.ItemMeasure[3] = 4;
    a.ItemStatus[3] = Status::ExtremeHigh;
    a.ItemStatus[4] = Status::Deleted;
    a.ItemGroup[2] = 2;
    a.GroupTop[1] = 2;
    a.GroupStart[2] = 4;
    const int values[] = {1, 2, 4, 0, 1};
    const double thurstone[] = {0, -0.75, 1.25, 0, 0.125};
    const double half[] = {0, -1, 1.5, 0, 0.25};
    for (int p = 1; p <= 5; ++p) {
      a.CategoryToCode[p] = values[p - 1];
      a.CategoryThurstone[p] = thurstone[p - 1];
      a.CategoryHalfPoint[p] = half[p - 1];
    }
  }
};

// Measures 50, 60 and 80 with weights 1, 2 and 0.5: mean (50 + 120 + 40) / 3.5 = 60; squared
// distances 100, 0 and 200 over 3.5.
TEST(VariableMap, WeighsActivePersonsAndSetsExtremeOnesAtTheEnds) {
  TwoScales small;
  RunArrays& a = small.run.arrays;
  const float logits[] = {0, 1, 3, 5, -5};
  small.GivePersonWeights();
  Array1<float>& weights = small.run.given.PersonWeight;
  for (int n = 1; n <= 5; ++n) a.PersonMeasure[n] = logits[n - 1];
  weights[2] = 2;
  weights[3] = 0.5F;
  weights[4] = -3;
  a.PersonStatus[3] = Status::Anchored;
  a.PersonStatus[4] = Status::ExtremeHigh;
  a.PersonStatus[5] = Status::ExtremeLow;
  const VariableMap map = MakeVariableMap(small.run, false);
  ASSERT_EQ(map.persons.points.size(), 5U);
  EXPECT_EQ(map.persons.points[3].place, MapPlace::AtTop);
  EXPECT_EQ(map.persons.points[3].measure, 100);
  EXPECT_EQ(map.persons.points[3].weight, 0);
  EXPECT_EQ(map.persons.points[4].place, MapPlace::AtBottom);
  EXPECT_NEAR(map.persons.mean, 60, 1e-9);
  EXPECT_NEAR(map.persons.sd, std::sqrt(300 / 3.5), 1e-9);
  for (int n = 1; n <= 5; ++n) a.PersonStatus[n] = Status::ExtremeLow;
  EXPECT_FALSE(MakeVariableMap(small.run, false).persons.hasMean);
}

// Mirrored in 50: 55 becomes 45, and who stood at the top stands at the bottom.
TEST(VariableMap, ShowsItemsAsTheComplementOfPersons) {
  TwoScales small;
  const VariableMap map = MakeVariableMap(small.run, true);
  ASSERT_EQ(map.items.points.size(), 3U);
  EXPECT_EQ(map.items.points[0].measure, 45);
  EXPECT_EQ(map.items.points[1].measure, 60);
  EXPECT_EQ(map.items.points[2].place, MapPlace::AtBottom);
  EXPECT_NEAR(map.items.mean, 52.5, 1e-9);
}

TEST(VariableMap, PutsStepsAtTheirDistancesFromTheItem) {
  TwoScales small;
  const VariableMap map = MakeVariableMap(small.run, false);
  EXPECT_NEAR(map.steps[0].lowest, 55 - 7.5, 1e-4);
  EXPECT_NEAR(map.steps[0].highest, 55 + 12.5, 1e-4);
  EXPECT_FALSE(map.steps[0].dichotomous);
  EXPECT_TRUE(map.steps[1].dichotomous);
  EXPECT_TRUE(HasSeveralSteps(small.run));
  small.run.arrays.GroupTop[1] = 1;
  EXPECT_FALSE(HasSeveralSteps(small.run));
}

TEST(ZoneMap, HasAColumnForEachValueOfAnyScale) {
  TwoScales small;
  struct Point {
    int entry, value;
    float measure;
    MapPlace place;
  };
  const auto at = MapPlace::AtMeasure;
  const std::vector<Point> expected[] = {{{1, 2, 45, at},
                                          {1, 4, 70, at},
                                          {2, 1, 42.5F, at},
                                          {3, 2, 80, MapPlace::AtTop},
                                          {3, 4, 105, MapPlace::AtTop}},
                                         {{1, 2, 47.5F, at},
                                          {1, 4, 67.5F, at},
                                          {2, 1, 41.25F, at},
                                          {3, 2, 82.5F, MapPlace::AtTop},
                                          {3, 4, 102.5F, MapPlace::AtTop}}};
  const ZoneKind kinds[] = {ZoneKind::ExpectedScore, ZoneKind::Thurstone};
  for (std::size_t k = 0; k < 2; ++k) {
    const ZoneMap map = MakeZoneMap(small.run, kinds[k]);
    ASSERT_EQ(map.categories.size(), 4U);  // 0 and 1 of the dichotomy, 2 and 4
    EXPECT_EQ(map.categories[1].group, 1);
    EXPECT_EQ(map.categories[0].group, 2);
    ASSERT_EQ(map.points.size(), expected[k].size());
    for (std::size_t n = 0; n < map.points.size(); ++n) {
      const ZonePoint& point = map.points[n];
      EXPECT_EQ(point.entry, expected[k][n].entry);
      EXPECT_EQ(map.categories[static_cast<std::size_t>(point.category)].value,
                expected[k][n].value);
      EXPECT_NEAR(point.measure, expected[k][n].measure, 1e-4);
      EXPECT_EQ(point.place, expected[k][n].place);
    }
  }
  for (const int item : {1, 3}) small.run.arrays.ItemStatus[item] = Status::Deleted;
  small.run.arrays.ItemStatus[4] = Status::Active;
  EXPECT_EQ(MakeZoneMap(small.run, kinds[0]).categories.size(), 4U) << "the last item has them";
}

}  // namespace
}  // namespace vardento::test
