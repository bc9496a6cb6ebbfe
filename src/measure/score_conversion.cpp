#include "measure/score_conversion.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "measure/entry_values.h"
#include "measure/observations.h"
#include "run/messages.h"

namespace vardento {
namespace {

constexpr long long kLargestTop = 999'999;        // a score is shown in six columns
constexpr long long kMostProducts = 500'000'000;  // of scores and items: minutes of solving
constexpr long long kLargestBottom = 100'000'000;
constexpr double kFarthest = 1e15;  // beyond it sums of weights are not told apart

constexpr double kNormMean = 500, kNormSD = 100;
constexpr double kLowestPercentile = 1, kHighestPercentile = 99;

long long Rounded(double sum) { return std::llround(std::clamp(sum, -kFarthest, kFarthest)); }

// The measures of the two ends, from where they are to be expected.
void SolveEnds(const Run& run, PersonScoreSolver& solver, ScoreConversion& conversion) {
  const Statistic& items = run.results.summary.items.measure;
  const double top = conversion.Top(), maximum = conversion.test.reachable;
  ScoreMeasure& lowest = conversion.scores.front();
  lowest = solver.Solve(items.mean - 3 * items.sd, 0, maximum);
  conversion.scores.back() = solver.Solve(2 * items.mean - lowest.measure, top, maximum);
}

}  // namespace

bool CompleteTest::IsWithinReach() const {
  return top <= kLargestTop && std::abs(bottom) <= kLargestBottom &&
         top * std::max(items, 1) <= kMostProducts;
}

CompleteTest FindCompleteTest(const Run& run) {
  const RunArrays& arrays = run.arrays;
  CompleteTest test;
  double top = 0, bottom = 0;
  for (int i = run.settings.NI; i >= 1; --i) {
    const int group = arrays.ItemGroup[i];
    if (!IsActive(arrays.ItemStatus[i]) || arrays.GroupTop[group] < 0) continue;
    const double weight = ItemWeightOf(run, i);
    ++test.items;
    test.approximated = test.approximated || arrays.GroupModel[group] != Model::Rating;
    top += weight * arrays.GroupTop[group];
    bottom += weight * arrays.CategoryToCode[arrays.GroupStart[group]];
  }
  test.top = Rounded(top);
  test.reachable = std::min(top, static_cast<double>(test.top));
  test.bottom = Rounded(bottom);
  return test;
}

int ScoresInThird(int top) { return top / 3 + 1; }

ScoreConversion ConvertScores(Run& run, const CompleteTest& test, SolvingOrder order) {
  ScoreConversion conversion{
      .test = test, .scores = std::vector<ScoreMeasure>(static_cast<std::size_t>(test.top) + 1)};
  PersonScoreSolver solver(run);
  SolveEnds(run, solver, conversion);
  const int top = conversion.Top();
  const int third = ScoresInThird(top);
  const float middle = run.results.summary.items.measure.mean;
  for (int score = 1; score < top; ++score) {
    const std::size_t place = static_cast<std::size_t>(score);
    const ScoreMeasure& below = conversion.scores[place - 1];
    float start = below.measure + below.error;
    if (order == SolvingOrder::InThirds) start = score % third == 0 ? middle : below.measure;
    conversion.scores[place] = solver.Solve(start, score, test.reachable);
    ShowProgress(run, score, top);
    if (run.StopRequest != 0) return {.test = test, .scores = {}};
  }
  return conversion;
}

std::optional<int> NearestScore(const std::vector<ScoreMeasure>& scores, double measure,
                                double direction) {
  const auto at = [&](int score) {
    return direction * scores[static_cast<std::size_t>(score)].measure;
  };
  const double m = direction * measure;
  int a = 0, b = static_cast<int>(scores.size()) - 1;
  if (m <= at(a)) return a;
  if (m >= at(b)) return b;
  // Measures lie nearly evenly in the middle: a straight line between two of them, one on either
  // side of m, leads close to it. It stays on either side even where scores lie so close that their
  // measures are not quite in order.
  while (at(a) < m && m < at(b)) {
    if (a + 1 == b) return 2 * m <= at(a) + at(b) ? a : b;
    const double share = (m - at(a)) / (at(b) - at(a));
    const int next = a + 1 + static_cast<int>(std::lround((b - a - 2) * share));
    if (at(next) == m) return next;
    (at(next) < m ? a : b) = next;
  }
  return std::nullopt;
}

SampleNorms::Outcome SampleNorms::Make(Run& run, const ScoreConversion& conversion) {
  conversion_ = &conversion;
  BlockPlan plan;
  plan.Add(cumulative_, conversion.Top() + 1);
  if (!plan.Allocate(run.memory, block_)) return Outcome::NoMemory;
  const Statistic& sample = run.results.summary.persons.measure;
  mean_ = sample.mean;
  // Equal measures leave an S.D. that is nothing but rounding.
  sd_ = sample.maximum > sample.minimum ? sample.sd : 0;
  const double direction = run.settings.USCALE < 0 ? -1 : 1;
  const Array1<StatusByte>& status = run.arrays.PersonStatus;
  persons_ = 0;
  for (int n = 1; n <= status.Size(); ++n) {
    if (!IsMeasured(status[n])) continue;
    const double measure = MeasureOf(run, Facet::Persons, n);
    const std::optional<int> score = NearestScore(conversion.scores, measure, direction);
    if (!score) return Outcome::OutOfOrder;
    ++cumulative_[*score + 1];
    ++persons_;
  }
  for (int place = 2; place <= cumulative_.Size(); ++place) {
    cumulative_[place] += cumulative_[place - 1];
  }
  return Outcome::Made;
}

ScoreNorm SampleNorms::At(int score) const {
  const ScoreMeasure& solved = conversion_->scores[static_cast<std::size_t>(score)];
  const double persons = std::max(persons_, 1);
  const int below = score > 0 ? cumulative_[score] : 0;
  ScoreNorm norm;
  norm.cumulative = cumulative_[score + 1];
  norm.frequency = norm.cumulative - below;
  norm.percent = norm.frequency * 100.0 / persons;
  norm.cumulativePercent = norm.cumulative * 100.0 / persons;
  norm.percentile = std::clamp((norm.frequency * 0.5 + below) * 100 / persons, kLowestPercentile,
                               kHighestPercentile);
  if (norm.frequency == 0 && below == 0) norm.percentile = 0;
  if (norm.frequency == 0 && below == persons_) norm.percentile = 100;
  norm.normed = sd_ > 0;
  if (!norm.normed) return norm;
  norm.measure = (solved.measure - mean_) * kNormSD / sd_ + kNormMean;
  norm.error = solved.error * kNormSD / sd_;
  return norm;
}

}  // namespace vardento
