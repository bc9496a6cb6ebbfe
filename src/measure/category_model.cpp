#include "measure/category_model.h"

#include <algorithm>
#include <cmath>

namespace vardento {

namespace {

// Guarded on one side only: a large negative exponent vanishes by itself.
double GuardedExp(double exponent) {
  return std::exp(std::min(exponent, static_cast<double>(kExpGuard)));
}

// Scales p(0..T) to a sum of 1 and returns its mean.
double Normalise(int top, double total, double* p) {
  const double factor = 1.0 / total;
  double expected = 0;
  for (int k = top; k >= 0; --k) {
    p[k] *= factor;
    expected += k * p[k];
  }
  return expected;
}

// Rasch 1960. The status of the step is not asked: this is the path that most data take.
double DichotomyProbabilities(double d, const GroupModelTables& group, double* p) {
  const double passed = 1.0 / (1.0 + GuardedExp(group.step[1] - d));
  p[1] = passed;
  p[0] = 1.0 - passed;
  return passed;
}

// Andrich 1978, Masters 1982: p(k) is in proportion to exp of the sum over j = 1..k of (d - F(j)).
double RatingScaleProbabilities(double d, const GroupModelTables& group, double* p) {
  double sum = 0;
  double highest = 0;
  for (int j = 1; j <= group.top; ++j) {
    sum += d - group.step[j];
    if (group.status[j] > 0) highest = std::max(highest, sum);
  }
  // The highest numerator becomes exp(kExpGuard): none overflows, and what vanishes beside it has
  // no probability to speak of.
  sum = kExpGuard - highest;
  p[0] = std::exp(sum);
  double total = p[0];
  for (int j = 1; j <= group.top; ++j) {
    if (group.status[j] == 0) {
      // A kept, unobserved category: never chosen, yet it occupies a step.
      sum += d;
      p[j] = 0;
    } else {
      sum += d - group.step[j];
      p[j] = std::exp(sum);
      total += p[j];
    }
  }
  return Normalise(group.top, total, p);
}

// "S" (Tutz 1990): p(k-1) is the chance of passing steps 1..k-1 and failing step k. The products
// sum to 1 by themselves; Normalise mends rounding alone.
double SuccessionProbabilities(double d, const GroupModelTables& group, double* p) {
  double passed = 1;
  double odds = 1;
  double total = 0;
  for (int k = 1; k <= group.top; ++k) {
    if (group.status[k] < 1) {
      // Nobody is seen to fail this step: it is the category below it that is unobserved.
      p[k - 1] = 0;
      continue;
    }
    passed *= odds;
    odds = GuardedExp(d - group.step[k]);
    passed /= odds + 1.0;
    p[k - 1] = passed;
    total += passed;
  }
  p[group.top] = passed * odds;
  return Normalise(group.top, total + p[group.top], p);
}

// "F": the mirror of "S", from the top down: p(k) is the chance of failing steps T..k+1 and passing
// step k.
double MirroredProbabilities(double d, const GroupModelTables& group, double* p) {
  double failed = 1;
  double odds = 1;
  double total = 0;
  for (int k = group.top; k >= 1; --k) {
    if (group.status[k] < 1) {
      p[k] = 0;
      continue;
    }
    failed *= odds;
    odds = GuardedExp(group.step[k] - d);
    failed /= odds + 1.0;
    p[k] = failed;
    total += failed;
  }
  p[0] = failed * odds;
  return Normalise(group.top, total + p[0], p);
}

// Of one step that is in play.
double PassProbability(double d, const GroupModelTables& group, int k) {
  return 1.0 / (GuardedExp(group.step[k] - d) + 1.0);
}

// Each step is a Bernoulli trial: variance v, fourth central moment v(1 - 3v). The fourth moment of
// their sum would have 6 v(i) v(j) of every two steps as well. The settled form leaves that out, so
// the fit of "S" and "F" is standardised by too small a variance where several steps are in play.
Evaluation SequentialMoments(const GroupModelTables& group, double expected, const double* p) {
  Evaluation result{expected, 0, 0};
  for (int k = 1; k <= group.top; ++k) {
    const double v = p[k] * (1.0 - p[k]);
    result.variance += v;
    result.fourth += v * (1.0 - 3.0 * v);
  }
  return result;
}

// Moments about 0 turned into moments about E: V = m2 - E^2, C = m4 - 4 E m3 + 6 E^2 m2 - 3 E^4
// (Wright & Masters 1982, ch. 5).
Evaluation DistributionMoments(const GroupModelTables& group, double expected, const double* p) {
  double m2 = 0, m3 = 0, m4 = 0;
  for (int k = 1; k <= group.top; ++k) {
    double term = p[k] * k * k;
    m2 += term;
    m3 += term *= k;
    m4 += term * k;
  }
  const double square = expected * expected;
  return {expected, m2 - square, 3.0 * square * (2.0 * m2 - square) + (m4 - 4.0 * expected * m3)};
}

}  // namespace

GroupModelTables TablesOfGroup(const RunArrays& arrays, int group) {
  GroupModelTables tables;
  const int start = arrays.GroupStart[group];
  tables.top = arrays.GroupTop[group];
  tables.model = arrays.GroupModel[group];
  tables.step = &arrays.StepCalibration[start];
  tables.status = &arrays.StepStatus[start];
  return tables;
}

double CategoryProbabilities(double d, const GroupModelTables& group, double* p) {
  if (group.top < 1) {
    p[0] = 1;
    return 0;
  }
  if (group.top < 2) return DichotomyProbabilities(d, group, p);
  if (group.model == Model::Successes) return SuccessionProbabilities(d, group, p);
  if (group.model == Model::Failures) return MirroredProbabilities(d, group, p);
  return RatingScaleProbabilities(d, group, p);
}

double StepProbabilities(double d, const GroupModelTables& group, int x, double* p) {
  double expected = 0;
  if (group.model == Model::Successes) {
    // Steps 1..x were passed and step x + 1, if there is one, failed: what lies behind was not
    // tried.
    for (int k = x + 1; k <= group.top; ++k) p[k] = 0;
    for (int k = std::min(x + 1, group.top); k >= 1; --k) {
      // A step that does not exist is certain: the score x counts it as passed.
      p[k] = group.status[k] < 1 ? 1.0 : PassProbability(d, group, k);
      expected += p[k];
    }
    p[0] = 1.0 - p[1];
    return expected;
  }
  // From the top down step x was the first to be passed (for x = 0 none was): what lies below it
  // was not tried. At most one step is passed, and one that does not exist cannot be it.
  for (int k = x - 1; k >= 1; --k) p[k] = 0;
  for (int k = std::max(x, 1); k <= group.top; ++k) {
    p[k] = group.status[k] < 1 ? 0.0 : PassProbability(d, group, k);
    expected += p[k];
  }
  p[0] = x < 2 ? 1.0 - p[1] : 0.0;
  return expected;
}

double EvaluateExpected(double d, const GroupModelTables& group, int x, double* p) {
  return group.IsSequential() ? StepProbabilities(d, group, x, p)
                              : CategoryProbabilities(d, group, p);
}

Evaluation Evaluate(double d, const GroupModelTables& group, int x, double* p) {
  return MomentsOf(group, EvaluateExpected(d, group, x, p), p);
}

Evaluation MomentsOf(const GroupModelTables& group, double expected, const double* p) {
  return group.IsSequential() ? SequentialMoments(group, expected, p)
                              : DistributionMoments(group, expected, p);
}

double NaturalLog(double x) { return static_cast<double>(kLnTwo) * std::log2(x); }

double SafeLogOdds(double a, double b) {
  return NaturalLog(std::max(a / std::max(b, kTiny), kTiny));
}

ScoreAndMaximum ModelScore(int x, int top, Model model) {
  if (top < 2 || model == Model::Rating) return {x, top};
  if (model == Model::Successes) return {x, std::min(x + 1, top)};
  // "F": all steps were in play for 0 (none passed) and for 1 (the last passed).
  if (x < 2) return {x, top};
  return {1, top - x + 1};
}

void NumberCategories(RunArrays& arrays) {
  for (int g = 1; g <= arrays.GroupTop.Size(); ++g) {
    const int start = arrays.GroupStart[g];
    const int top = arrays.GroupTop[g];
    int last = -1;
    for (int k = 0; k <= top; ++k) {
      const int position = start + k;
      if (arrays.StepStatus[position] < 0) {
        arrays.CodeToCategory[position] = -3;
        continue;
      }
      ++last;
      arrays.CodeToCategory[position] = last;
      arrays.CategoryToCode[start + last] = k;
      if (last != k) {
        arrays.StepCalibration[start + last] = arrays.StepCalibration[position];
        arrays.StepStatus[start + last] = arrays.StepStatus[position];
      }
    }
    if (last == 0) {
      // One category tells nothing of a person: its responses count as missing.
      arrays.CodeToCategory[start + arrays.CategoryToCode[start]] = -4;
      last = -1;
    }
    arrays.GroupTop[g] = last;
  }
}

}  // namespace vardento
