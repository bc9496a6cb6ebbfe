// The formulas of the fit pass, against hand calculation and two-pass statistics.
#include "measure/fit_statistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "measure/extreme_range.h"

namespace vardento {
namespace {

TEST(FitStatistics, MeanSquareAndItsStandardisedForms) {
  // sum 27 over df 8: mean-square 3.375, cube root 1.5; variance 576: q = 24 / 24 = 1.
  const MeanSquare cubed = MeanSquareZ(27, 576, 8, 'N');
  EXPECT_NEAR(cubed.value, 3.375, 1e-12);
  EXPECT_NEAR(cubed.standardised, 0.5, 1e-6);
  EXPECT_NEAR(MeanSquareZ(27, 576, 8, 'L').standardised, std::log(3.375), 1e-6);
  EXPECT_TRUE(std::isfinite(MeanSquareZ(0, 0, 0, 'N').standardised));
}

TEST(FitStatistics, StandardisedValueCarriesTheMeanSquare) {
  // Two decimals of z, then the mean-square in the digits behind them.
  EXPECT_NEAR(ZCode(1.234, 0.95), 1.23095, 1e-6);
  EXPECT_NEAR(ZCode(-1.234, 0.95), -1.22905, 1e-6);
  EXPECT_NEAR(ZCode(12, 9.9), 9.9099, 1e-5);
  EXPECT_NEAR(ZCode(-12, 1), -9.899, 1e-5);
}

TEST(FitStatistics, FitOfAnEntryUnderEachSetting) {
  FitSums sums;
  sums.count = 8;
  sums.variance = 2;
  sums.squaredStandardised = 27;
  sums.outfitVariance = 584;  // less the count: 576
  sums.squaredResidual = 54;  // mean-square 27: over the cap
  sums.infitVariance = 36;    // q = 6 / 6 = 1, cube root 3: standardised 2
  ControlSettings settings;
  const FitValues plain = FindFit(sums, settings);
  EXPECT_NEAR(plain.outfit, 3.375, 1e-6);
  EXPECT_NEAR(plain.outfitZ, 0.503375, 1e-6);
  EXPECT_NEAR(plain.infit, 9.9, 1e-6);
  EXPECT_NEAR(plain.infitZ, 2.0099, 1e-6);
  settings.LOCAL = 'Y';  // no code in the lower digits
  EXPECT_NEAR(FindFit(sums, settings).infitZ, 2, 1e-6);
  settings.LOCAL = 'N';
  settings.NORMAL = true;  // (27 - 8) / 24 and (54 - 2) / 6
  EXPECT_NEAR(FindFit(sums, settings).outfitZ, 0.79 + 0.003375, 1e-6);
  EXPECT_NEAR(FindFit(sums, settings).infitZ, 8.67 + 0.0099, 1e-6);
}

// Where the expected score does not change with the measure, the shift is the share of the score.
TEST(FitStatistics, DisplacementWithoutASlope) {
  FitSums sums;
  sums.maximum = 8;
  sums.score = 6;
  sums.expected = sums.expectedOffset = 4;
  EXPECT_NEAR(FindPersonDisplacement(sums, 0.3), 0.25, 1e-12);
  EXPECT_NEAR(FindItemDisplacement(sums, 0.3), -0.25, 1e-12);
  sums.score = 8;  // moved in from its end
  EXPECT_NEAR(FindPersonDisplacement(sums, 0.3), 3.7 / 8, 1e-12);
}

// Running forms against sums over the whole set.
TEST(FitStatistics, RunningStatisticsEqualTwoPasses) {
  const std::vector<double> x = {0.3, -1.2, 2.5, 0.9, -0.4, 1.1};
  const std::vector<double> y = {1, 0, 3, 1, 2, 0};
  const double n = 6, mx = 3.2 / n, my = 7 / n;
  CorrelationRecord record;
  RunningSpread spread(false);
  double sxx = 0, syy = 0, sxy = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    record.Add(x[i], y[i], 1);
    spread.Add(x[i], 1);
    sxx += (x[i] - mx) * (x[i] - mx);
    syy += (y[i] - my) * (y[i] - my);
    sxy += (x[i] - mx) * (y[i] - my);
  }
  EXPECT_NEAR(record.Correlation(), sxy / std::sqrt(sxx * syy), 1e-12);
  EXPECT_NEAR(spread.Mean(), mx, 1e-12);
  EXPECT_NEAR(spread.SD(), std::sqrt(sxx / n), 1e-12);
  EXPECT_EQ(CorrelationRecord().Correlation(), 0);
}

// With weights the settled forms, worked out by hand.
TEST(FitStatistics, WeightedStatisticsKeepTheirSettledForm) {
  CorrelationRecord record;
  record.Add(0, 0, 2);
  record.Add(7, 7, 0);   // no weight, no part
  record.Add(10, 5, 3);  // variances 24 and 6, covariance 12
  EXPECT_NEAR(record.Correlation(), 1, 1e-12);
  record.Add(0, 5, 1);  // 24 + 5 - 24/6, 6 + 5/9 - 6/6, 12 - 5/3 - 12/6
  EXPECT_NEAR(record.Correlation(), std::sqrt(0.5), 1e-12);

  RunningSpread spread(true);
  spread.Add(1, 2.5);  // counts as 2
  spread.Add(9, 0);
  spread.Add(4, 1.5);  // 3.5 counts as 3
  EXPECT_NEAR(spread.Mean(), 2.5, 1e-12);
  EXPECT_NEAR(spread.SD(), std::sqrt(3.375), 1e-12);
  spread.Add(0, 2);  // 5: mean 1.5, a -1, variance 3.375 x 3/5 + 3
  EXPECT_NEAR(spread.Mean(), 1.5, 1e-12);
  EXPECT_NEAR(spread.SD(), std::sqrt(5.025), 1e-12);

  RunningSpread light(true);  // a count cut to 0 would divide by 0
  light.Add(1, 0.25);
  light.Add(3, 0.5);
  light.Add(5, 0.25);
  EXPECT_NEAR(light.Mean(), 3, 1e-12);
  EXPECT_NEAR(light.SD(), std::sqrt(2.0), 1e-12);
}

TEST(FitStatistics, WorstListHoldsEachEntryOnceLargestFirst) {
  std::vector<WorstEntry> list;
  EnterWorst(list, 3, 2.5F);
  EnterWorst(list, 1, 4.0F);
  EnterWorst(list, 3, 2.1F);  // already higher
  EnterWorst(list, 3, 6.0F);  // rises
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0].number, 3);
  EXPECT_EQ(list[1].number, 1);
  for (int i = 10; i < 100; ++i) EnterWorst(list, i, 3.0F + static_cast<float>(i) / 100);
  EXPECT_EQ(list.size(), kWorstListLength);
  EXPECT_EQ(list[0].number, 3);
  EXPECT_EQ(list[2].number, 99);
  for (std::size_t i = 1; i < list.size(); ++i) EXPECT_GE(list[i - 1].z, list[i].z);
}

TEST(ExtremeRange, MeanDistanceOfTheOuterEntries) {
  ExtremeRange range(10);
  for (const float value : {1.0F, 7.0F, 3.0F, 5.0F, 2.0F, 8.0F}) range.Add(value);
  // (8-1), (7-2), (5-3), (3-5), (2-7)
  EXPECT_NEAR(range.Range(), 1.4, 1e-6);
  ExtremeRange few(2);  // one entry on each side
  for (const float value : {4.0F, -1.0F, 2.5F}) few.Add(value);
  EXPECT_NEAR(few.Range(), 5, 1e-6);
  ExtremeRange all(10);  // the lists cover everybody
  all.Add(1);
  all.Add(9);
  EXPECT_EQ(all.Range(), 0);
}

}  // namespace
}  // namespace vardento
