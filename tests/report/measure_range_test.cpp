#include "report/measure_range.h"

#include <gtest/gtest.h>

#include "report/small_run.h"
#include "report/table_list.h"

namespace vardento::test {
namespace {

struct RangeCase {
  const char* name;
  int table;
  std::vector<std::pair<int, float>> slots;
  float mrange;
  float low, high, unit;
};

// With UMEAN= of 1, item 1 at 1.2 has three categories with boundaries -3.5, -1, 2.5 from there;
// item 2 is a dichotomy at -0.4; item 3 at 30 is extreme. Persons at 0.5 and 2.6, an extreme one.
TEST(MeasureRange, CoversWhatTheTableShows) {
  const RangeCase cases[] = {
      {"measures alone", 4, {}, 0, -1, 3, 1},
      {"categories from position 0", 2, {}, 0, -3, 4, 1},
      {"categories from position 1", 1, {}, 0, -1, 4, 1},
      {"symmetric around UMEAN=", 21, {}, 0, -3, 5, 1},
      {"no persons", 23, {}, 0, -1, 2, 1},
      {"no items", 24, {}, 0, 0, 3, 1},
      {"MRANGE=", 4, {}, 2.5F, -2, 4, 1},
      {"a high end of the request", 4, {{3, 5}}, 0, -1, 5, 1},
      {"ends the wrong way round", 4, {{2, 9}, {3, -60}}, 0, -60, 10, 10},
      {"equal ends", 4, {{2, 2}, {3, 2}}, 0, 1, 3, 1},
      {"unit of 100", 4, {{2, -10}, {3, 501}}, 0, -100, 600, 100},
      {"unheard-of ends", 4, {{2, -3e38F}, {3, 3e38F}}, 0, -1e8F, 1e8F, 100},
  };
  SmallRun small(3, 3, 2);
  RunArrays& a = small.run.arrays;
  a.ItemMeasure[1] = 0.2F;  // logits
  a.ItemMeasure[2] = -1.4F;
  a.ItemMeasure[3] = 30;
  a.ItemStatus[3] = Status::ExtremeHigh;
  a.ItemGroup[2] = a.ItemGroup[3] = 2;
  a.GroupTop[1] = 2;
  a.GroupStart[2] = 4;
  const float measures[] = {-0.5F, 1.6F, 40};
  for (int n = 1; n <= 3; ++n) a.PersonMeasure[n] = measures[n - 1];
  a.PersonStatus[3] = Status::ExtremeHigh;
  Array1<double> boundaries = small.Doubles(5);
  boundaries[1] = -3.5;
  boundaries[2] = -1;
  boundaries[3] = 2.5F;
  small.run.DraftSettings().UMEAN = 1;
  for (const RangeCase& c : cases) {
    small.run.request = TableRequest();
    small.run.request.CurrentTable = c.table;
    small.run.DraftSettings().MRANGE = c.mrange;
    for (const auto& [slot, value] : c.slots) {
      small.run.request.TableArgumentSet[static_cast<std::size_t>(slot - 1)] = 'U';
      small.run.request.TableArgument[static_cast<std::size_t>(slot - 1)] = value;
    }
    small.context.needs = RowsOf(c.table).front().needs;
    MeasureRange(small.context, boundaries);
    EXPECT_EQ(small.context.rangeLow, c.low) << c.name;
    EXPECT_EQ(small.context.rangeHigh, c.high) << c.name;
    EXPECT_EQ(small.context.rangeUnit, c.unit) << c.name;
    EXPECT_EQ(static_cast<float>(small.context.rangeSpan), (c.high - c.low) / c.unit) << c.name;
  }
}

TEST(ScalePlotAxis, KeepsWholeTicks) {
  struct {
    float unit, low, high, slot4;  // slot 4 below 0: not given
    int columns, tickWidth, ticks;
    float axisUnit, axisHigh;
  } const cases[] = {
      // 6 units in 14 ticks of 5: one unit a tick, ticks grow to 11 columns.
      {1, -3, 3, -1, 66, 11, 6, 1, 3},
      // 20 units: two a tick, (20 + 1) / 2 = 10.5 ticks rounded up.
      {1, -10, 10, -1, 66, 6, 11, 2, 12},
      // 6 units in two wide ticks: 3 a tick, (6 + 2) / 3 = 2.7 ticks rounded up.
      {10, 0, 60, 35, 69, 23, 3, 30, 90},
      {1, 0, 0, -1, 70, 70, 1, 1, 1},
      {1, 0, 1e6F, 1e9F, 70, 35, 2, 1e6F, 2e6F},
  };
  for (const auto& c : cases) {
    TableRequest request;
    if (c.slot4 >= 0) request.TableArgumentSet[3] = 'U';
    request.TableArgument[3] = c.slot4;
    PlotAxis axis;
    ScalePlotAxis(request, axis, c.unit, c.low, c.high);
    const float span = axis.high - c.low;
    EXPECT_FLOAT_EQ(axis.columnsPerMeasure * span, static_cast<float>(axis.columns));
    EXPECT_FLOAT_EQ(axis.measuresPerColumn * axis.columnsPerMeasure, 1);
    EXPECT_EQ(axis.columns, c.columns);
    EXPECT_EQ(axis.tickWidth, c.tickWidth);
    EXPECT_EQ(axis.ticks, c.ticks);
    EXPECT_FLOAT_EQ(axis.unit, c.axisUnit);
    EXPECT_FLOAT_EQ(axis.high, c.axisHigh);
  }
}

TEST(CentreCaption, StandsInTheMiddleOfItsRows) {
  const auto caption = [](std::string_view text, int rows) {
    const CaptionField field = CentreCaption(text, rows);
    return std::string(field.begin(), field.end());
  };
  EXPECT_EQ(caption("abc", 6), "  abc" + std::string(62, ' '));
  EXPECT_EQ(caption("abcd", 6), " abcd" + std::string(62, ' '));
  EXPECT_EQ(caption("abcdef", 2), "abc" + std::string(64, ' '));
  EXPECT_EQ(caption(std::string(80, 'x'), 500), std::string(67, 'x'));
}

}  // namespace
}  // namespace vardento::test
