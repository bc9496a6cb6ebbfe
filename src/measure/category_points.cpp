// The landmarks of every category, as distances from the item.
#include <algorithm>
#include <cmath>
#include <vector>

#include "measure/category_model.h"
#include "measure/estimation.h"

namespace vardento {

namespace {

constexpr int kSearchLimit = 10000;  // a threshold out of reach ends the search
constexpr double kThresholdPrecision = 0.0001;
constexpr double kPointPrecision = 0.01;

// Finds the difference d at which the expected score of a group is t, by log-odds through two
// points that stay from one call to the next.
class ScoreToDifference {
 public:
  ScoreToDifference(const GroupModelTables& group, double* p) : group_(group), p_(p) {}

  double Solve(double t) {
    const double wanted = LogOdds(t);
    d_ -= 0.1;
    for (int pass = 0; pass < 100; ++pass) {
      const double expected = CategoryProbabilities(d_, group_, p_);
      const double odds = LogOdds(expected);
      Keep({d_, odds}, wanted);
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
  double LogOdds(double score) const {
    return NaturalLog(std::max(group_.top - score, kTiny)) - NaturalLog(std::max(score, kTiny));
  }
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
  double* p_;
  double d_ = 0;
  int known_ = 0;
  Point first_, second_;
};

// The difference at which category k or above is as likely as not; d is where the search starts.
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
