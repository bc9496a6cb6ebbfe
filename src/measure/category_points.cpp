// The landmarks of every category, as distances from the item in logits: Thurstone thresholds,
// where the category or a higher one is as likely as not (after Edwards & Thurstone 1952), and
// where the expected score (the model's regression of score on measure) takes given values.
#include <algorithm>
#include <cmath>
#include <vector>

#include "measure/category_model.h"
#include "measure/estimation.h"

namespace vardento {

namespace {

constexpr int kSearchLimit = 10000;             // a threshold out of reach ends the search
constexpr double kThresholdPrecision = 0.0001;  // of a cumulative probability
constexpr double kPointPrecision = 0.01;        // of a difference, logits, and of its score, points

// Finds the difference d (logits) at which the expected score of a group is t (score points, above
// 0 and below T): a secant through two points of the curve ln((T - E) / E), which for two
// categories is a straight line in d and for more stays close to one. The points stay from one call
// to the next, as the next score lies near by. Without an end after 100 passes the last guess
// stands.
class ScoreToDifference {
 public:
  ScoreToDifference(const GroupModelTables& group, double* p) : group_(group), p_(p) {}

  double Solve(double t) {
    const double wanted = LogOdds(t);
    d_ -= 0.1;  // off the last answer: a secant needs two points that differ
    for (int pass = 0; pass < 100; ++pass) {
      const double expected = CategoryProbabilities(d_, group_, p_);
      const double odds = LogOdds(expected);
      Keep({d_, odds}, wanted);
      // d = intercept - slope x log-odds; with one point alone, one logit for each.
      double slope = 1, intercept = odds + d_;
      if (known_ == 2 && std::fabs(first_.odds - second_.odds) >= kTiny) {
        slope = (second_.d - first_.d) / (first_.odds - second_.odds);
        intercept =
            (second_.odds * first_.d - first_.odds * second_.d) / (second_.odds - first_.odds);
      }
      const double next = intercept - wanted * slope;
      const bool near =
          std::fabs(next - d_) <= kPointPrecision && std::fabs(t - expected) <= kPointPrecision;
      d_ = next;
      if (near) break;
    }
    return d_;
  }

 private:
  struct Point {
    double d = 0, odds = 0;
  };
  // Of missing a step against passing it: falls as d rises.
  double LogOdds(double score) const {
    return NaturalLog(std::max(group_.top - score, kTiny)) - NaturalLog(std::max(score, kTiny));
  }
  // In the place of whichever point lies further from what is wanted.
  void Keep(Point point, double wanted) {
    if (known_ == 0) {
      first_ = point;
      known_ = 1;
    } else if (known_ == 1) {
      second_ = point;
      known_ = 2;
    } else if (std::fabs(first_.odds - wanted) <= std::fabs(second_.odds - wanted)) {
      second_ = point;
    } else {
      first_ = point;
    }
  }

  const GroupModelTables& group_;
  double* p_;     // categories 0..T
  double d_ = 0;  // the last answer, logits
  int known_ = 0;
  Point first_, second_;  // of the curve; known_ of them hold anything
};

// The Thurstone threshold of category k: the difference at which the cumulative probability of k or
// above is 0.5 (logits; d is where the search starts). The residual of the probability is itself
// the step, shorter after every change of side: slow, but it cannot run away, and categories that
// are never the likeliest have thresholds in order all the same.
double FindThurstone(const GroupModelTables& group, int k, double d, double* p) {
  double divisor = 1, last = 0;
  for (int pass = 0; pass < kSearchLimit; ++pass) {
    d += last / divisor;
    CategoryProbabilities(d, group, p);
    double residual = 0.5;
    for (int j = k; j <= group.top; ++j) residual -= p[j];
    if (residual * last < 0) divisor += 1;
    last = residual;
    if (std::fabs(residual) <= kThresholdPrecision) break;
  }
  return d;
}

void ComputeGroupPoints(Run& run, int g, double high, double low, double* p) {
  RunArrays& arrays = run.arrays;
  const GroupModelTables group = TablesOfGroup(arrays, g);
  const int start = arrays.GroupStart[g];
  double d = 0;
  for (int k = group.top; k >= 1; --k) {
    d = FindThurstone(group, k, d, p);
    arrays.CategoryThurstone[start + k] = d;
  }
  // From the top down with one solver, whose points are then near the next score.
  ScoreToDifference solver(group, p);
  for (int k = group.top; k >= 0; --k) {
    double wanted = low;
    if (k > 0) {
      arrays.CategoryHalfPoint[start + k] = solver.Solve(k - 0.5);
      wanted = k < group.top ? k : group.top - high;
    }
    arrays.CategoryMeasurePoint[start + k] = solver.Solve(wanted);
  }
}

// Score points off either end; at 0 the end of the scale would lie at infinity.
double HoldAdjustment(double adjustment) { return std::clamp(adjustment, 0.001, 0.5); }

}  // namespace

void ComputeCategoryPoints(Run& run, float highAdjustment, float lowAdjustment) {
  std::vector<double> p(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0);
  for (int g = 1; g <= run.NGROUPS; ++g) {
    if (run.arrays.GroupTop[g] < 1) continue;
    ComputeGroupPoints(run, g, HoldAdjustment(highAdjustment), HoldAdjustment(lowAdjustment),
                       p.data());
  }
}

}  // namespace vardento
