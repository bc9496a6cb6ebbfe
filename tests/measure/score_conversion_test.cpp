#include "measure/score_conversion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "report/small_run.h"
#include "support/estimates.h"
#include "support/score_curve.h"

namespace vardento::test {
namespace {

constexpr double kSolved = 0.01;  // logits to which a score is solved

std::vector<ScoreMeasure> Measures(const std::vector<float>& measures) {
  std::vector<ScoreMeasure> scores;
  for (const float measure : measures) scores.push_back({measure, 1, 1});
  return scores;
}

TEST(NearestScore, TiesGoToTheLowerScore) {
  const auto scores = Measures({-4, -1, 0, 1, 6});
  EXPECT_EQ(NearestScore(scores, -9, 1), 0);
  EXPECT_EQ(NearestScore(scores, 9, 1), 4);
  EXPECT_EQ(NearestScore(scores, -.5, 1), 1);
  EXPECT_EQ(NearestScore(scores, -.49, 1), 2);
  EXPECT_EQ(NearestScore(scores, 3.5, 1), 3);
  EXPECT_EQ(NearestScore(scores, 6, 1), 4);
  EXPECT_EQ(NearestScore(scores, std::numeric_limits<double>::quiet_NaN(), 1), std::nullopt);
  EXPECT_EQ(NearestScore(Measures({5, 2, -1}), 3.5, -1), 0);
}

TEST(NearestScore, EqualsALookAtEveryScore) {
  std::mt19937 generator(5);
  std::vector<float> measures;
  for (int s = 0; s <= 400; ++s) {
    measures.push_back(std::log((static_cast<float>(s) + .3F) / (400.3F - static_cast<float>(s))));
  }
  const auto scores = Measures(measures);
  for (int trial = 0; trial < 2000; ++trial) {
    const double m = static_cast<double>(generator()) / 4294967296.0 * 16 - 8;
    int nearest = 0;
    for (int s = 1; s <= 400; ++s) {
      const auto distance = [&](int score) { return std::fabs(measures[std::size_t(score)] - m); };
      if (distance(s) < distance(nearest)) nearest = s;
    }
    EXPECT_EQ(NearestScore(scores, m, 1), nearest) << m;
  }
}

// Codes 1 to 3 and 2 to 3: the first item counts 2.6 times, the last one has no measure.
TEST(CompleteTest, AddsUpWeightsAndTops) {
  SmallRun small(1, 3, 2);
  RunArrays& a = small.run.arrays;
  std::vector<std::int32_t> codes{1, 2, 3, 2, 3};
  a.CategoryToCode = {codes.data(), 5};
  a.GroupTop[1] = 2;
  a.GroupTop[2] = 1;
  a.GroupStart[2] = 4;
  a.ItemGroup[2] = a.ItemGroup[3] = 2;
  a.ItemStatus[3] = Status::ExtremeLow;
  a.GroupModel[2] = Model::Successes;
  small.GiveItemWeights();
  small.run.given.ItemWeight[1] = 2.6F;
  const CompleteTest test = FindCompleteTest(small.run);
  EXPECT_EQ(test.top, 6);     // 2.6 x 2 + 1
  EXPECT_EQ(test.bottom, 5);  // 2.6 x 1 + 2
  EXPECT_EQ(test.items, 2);
  EXPECT_TRUE(test.approximated);
  EXPECT_TRUE(test.IsWithinReach());
  small.run.given.ItemWeight[1] = 2.7F;
  EXPECT_NEAR(FindCompleteTest(small.run).reachable, 6, 1e-9);
  small.run.given.ItemWeight[1] = 2.8F;
  EXPECT_EQ(FindCompleteTest(small.run).top, 7);
  EXPECT_NEAR(FindCompleteTest(small.run).reachable, 6.6, 1e-6);
  small.run.given.ItemWeight[1] = 1e30F;
  EXPECT_FALSE(FindCompleteTest(small.run).IsWithinReach());
  a.ItemStatus[1] = Status::Deleted;
  small.run.given.ItemWeight[2] = .1F;
  EXPECT_EQ(FindCompleteTest(small.run).top, 0);
}

// Both orders find the same measures, and each begins where it is told to.
TEST(ScoreConversion, EqualsBisectionFromEitherStart) {
  WholeRun whole;
  RunData(whole, Simulate(60, 7, 2, 3), "CODES=012\nUSCALE=-10\nUMEAN=50");
  vardento::Run& run = whole.run;
  const CompleteTest test = FindCompleteTest(run);
  ASSERT_EQ(test.top, 14);
  const ScoreCurve curve(run);
  const float mean = run.results.summary.items.measure.mean;
  for (const SolvingOrder order : {SolvingOrder::InThirds, SolvingOrder::Rising}) {
    const ScoreConversion conversion = ConvertScores(run, test, order);
    ASSERT_EQ(conversion.Top(), 14);
    for (int s = 0; s <= 14; ++s) {
      const double b =
          LogitsOf(run, conversion.scores[std::size_t(s)].measure, run.results.PersonBias);
      EXPECT_FALSE(curve.HasReached(b - kSolved, s));
      EXPECT_TRUE(curve.HasReached(b + kSolved, s));
    }
    const auto startsFrom = [&](int s, float start) {
      EXPECT_EQ(conversion.scores[std::size_t(s)].measure,
                MeasureForPersonScore(run, start, s, 14).measure);
    };
    const auto below = [&](int s) { return conversion.scores[std::size_t(s) - 1]; };
    startsFrom(0, mean - 3 * run.results.summary.items.measure.sd);
    startsFrom(14, 2 * mean - conversion.Lowest().measure);
    // Scores 0, 5 and 10 head the thirds.
    for (const int s : {1, 2, 4, 6, 9, 11, 13}) {
      const bool rising = order == SolvingOrder::Rising;
      startsFrom(s, below(s).measure + (rising ? below(s).error : 0));
    }
    for (const int s : {5, 10}) {
      startsFrom(s, order == SolvingOrder::Rising ? below(s).measure + below(s).error : mean);
    }
  }
}

// Half a score more than there is when rounded: the highest measure stays on the curve.
TEST(ScoreConversion, HighestScoreIsReachable) {
  WholeRun whole;
  RunData(whole, Simulate(60, 5, 1, 3), "CODES=01\nIWEIGHT=*\n1 1.5\n*");
  const CompleteTest test = FindCompleteTest(whole.run);
  EXPECT_EQ(test.top, 6);
  const ScoreConversion conversion = ConvertScores(whole.run, test, SolvingOrder::Rising);
  const ScoreCurve curve(whole.run);
  EXPECT_NEAR(curve.At(conversion.Highest().measure, 3), 5.2, 0.01);  // 5.5 less EXTRSC= of .3
}

// Measures -2, 0 and 2 for the scores; persons as given.
struct NormRun : SmallRun {
  explicit NormRun(const std::vector<float>& measures)
      : SmallRun(static_cast<int>(measures.size()), 1) {
    for (int n = 1; n <= run.NPERS; ++n) {
      run.arrays.PersonMeasure[n] = measures[std::size_t(n) - 1];
    }
    conversion.scores = {{-2, 2, 1}, {0, 1, 1}, {2, 3, 1}};
  }
  std::vector<double> Percentiles() {
    EXPECT_EQ(norms.Make(run, conversion), SampleNorms::Outcome::Made);
    return {norms.At(0).percentile, norms.At(1).percentile, norms.At(2).percentile};
  }
  ScoreConversion conversion;
  SampleNorms norms;
};

using Percentiles = std::vector<double>;

TEST(SampleNorms, Percentiles) {
  EXPECT_EQ(NormRun({0}).Percentiles(), (Percentiles{0, 50, 100}));
  EXPECT_EQ(NormRun({-2, 0, .9F, 5}).Percentiles(), (Percentiles{12.5, 50, 87.5}));
  EXPECT_EQ(NormRun({-2, 2}).Percentiles(), (Percentiles{25, 50, 75}));
  // 1 of 200 lies at either end: a percentile of somebody is at least 1 and at most 99.
  std::vector<float> many(200, 0.0F);
  many.front() = -2;
  many.back() = 2;
  EXPECT_EQ(NormRun(many).Percentiles(), (Percentiles{1, 50, 99}));
}

TEST(SampleNorms, CountsWhoHasAMeasure) {
  NormRun small({-2, -2, 2, 2, 0});
  RunArrays& a = small.run.arrays;
  a.PersonStatus[1] = Status::ExtremeLow;
  a.PersonStatus[3] = Status::ExtremeHigh;
  a.PersonStatus[4] = Status::NoResponses;
  a.PersonStatus[5] = Status::Deleted;
  EXPECT_EQ(small.Percentiles(), (Percentiles{100.0 / 3, 200.0 / 3, 250.0 / 3}));
  EXPECT_EQ(small.norms.At(2).frequency, 1);
  EXPECT_EQ(small.norms.At(2).cumulative, 3);
  EXPECT_NEAR(small.norms.At(0).percent, 66.67, 0.01);
}

TEST(SampleNorms, NormsWhereThereIsSpread) {
  NormRun small({-1, 3});
  Statistic& sample = small.run.results.summary.persons.measure;
  sample = {1, 2, 3, -1};
  small.Percentiles();
  EXPECT_TRUE(small.norms.At(0).normed);
  EXPECT_NEAR(small.norms.At(0).measure, 350, 1e-9);
  EXPECT_NEAR(small.norms.At(2).error, 150, 1e-9);
  sample = {1, 1e-9F, 1, 1};  // rounding alone
  small.Percentiles();
  EXPECT_FALSE(small.norms.At(0).normed);
}

TEST(SampleNorms, TellsWhatItCantDo) {
  NormRun small({std::numeric_limits<float>::quiet_NaN()});
  EXPECT_EQ(small.norms.Make(small.run, small.conversion), SampleNorms::Outcome::OutOfOrder);
  small.run.memory.RefuseRequest(1);
  EXPECT_EQ(small.norms.Make(small.run, small.conversion), SampleNorms::Outcome::NoMemory);
}

}  // namespace
}  // namespace vardento::test
