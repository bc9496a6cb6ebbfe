// The expected score as a function of the measure, written out from the definition of each model.
#pragma once

#include <algorithm>
#include <cmath>

#include "run/run.h"

namespace vardento::test {

// What one side's entry expects of another at d, the letter's observation being in category x. A
// kept category that nobody used has no step of its own.
inline double ExpectedScore(const Run& run, int group, double d, int x) {
  const RunArrays& a = run.arrays;
  const int top = a.GroupTop[group];
  const auto used = [&](int k) { return a.StepStatus[a.GroupStart[group] + k] > 0; };
  const auto step = [&](int k) -> double { return a.StepCalibration[a.GroupStart[group] + k]; };
  const char letter = top < 2 ? 'R' : LetterOf(a.GroupModel[group]);
  double sum = 0;
  if (letter == 'R') {
    double total = 1, term = 1;
    for (int k = 1; k <= top; ++k) {
      term *= std::exp(used(k) ? d - step(k) : d);
      if (!used(k)) continue;
      total += term;
      sum += k * term;
    }
    return sum / total;
  }
  const int first = letter == 'S' ? 1 : std::max(x, 1);
  const int last = letter == 'S' ? std::min(x + 1, top) : top;
  for (int k = first; k <= last; ++k) {
    sum += used(k) ? 1 / (1 + std::exp(step(k) - d)) : letter == 'S' ? 1 : 0;
  }
  return letter == 'F' ? sum + std::max(x - 1, 0) : sum;
}

inline double LogitsOf(const Run& run, double measure, double bias) {
  return (measure - run.settings.UMEAN) / (bias * run.settings.USCALE);
}

inline double WeightOfPerson(const Run& run, int n) {
  return run.given.HasPersonWeights() ? run.given.PersonWeight[n] : 1;
}
inline double WeightOfItem(const Run& run, int i) {
  return run.given.HasItemWeights() ? run.given.ItemWeight[i] : 1;
}

// A score of one side, held inside its ends: where the curve, which rises, is to be met.
class ScoreCurve {
 public:
  // Of persons on the active items.
  explicit ScoreCurve(const Run& run) : run_(run) {
    for (int i = 1; i <= run.settings.NI; ++i) {
      if (run.arrays.ItemStatus[i] < 1) continue;
      maximum_ += WeightOfItem(run, i) * run.arrays.GroupTop[run.arrays.ItemGroup[i]];
    }
  }
  // Of items of the group on the active persons.
  ScoreCurve(const Run& run, int group) : run_(run), group_(group) {
    for (int n = 1; n <= run.NPERS; ++n) {
      if (run.arrays.PersonStatus[n] < 1) continue;
      maximum_ += WeightOfPerson(run, n) * run.arrays.GroupTop[group];
    }
  }
  double Maximum() const { return maximum_; }

  // At a person's measure, or for an item that is m logits easy.
  double At(double m, double score) const {
    const double target = Target(score);
    const RunArrays& a = run_.arrays;
    double sum = 0;
    if (group_ > 0) {
      const int x = Category(group_, target);
      for (int n = 1; n <= run_.NPERS; ++n) {
        if (a.PersonStatus[n] < 1 || !(WeightOfPerson(run_, n) > 0)) continue;
        const double b = a.PersonMeasure[n];
        sum += WeightOfPerson(run_, n) * ExpectedScore(run_, group_, m + b, x);
      }
      return sum;
    }
    for (int i = 1; i <= run_.settings.NI; ++i) {
      if (a.ItemStatus[i] < 1 || !(WeightOfItem(run_, i) > 0)) continue;
      const double d = a.ItemMeasure[i];
      const int group = a.ItemGroup[i];
      sum += WeightOfItem(run_, i) * ExpectedScore(run_, group, m - d, Category(group, target));
    }
    return sum;
  }

  // The curve has the score here or below.
  bool HasReached(double m, double score) const { return At(m, score) >= Target(score); }

 private:
  double Target(double score) const {
    const double margin = run_.settings.EXTRSC;
    return std::min(std::max(score, margin), maximum_ - margin);
  }
  int Category(int group, double target) const {
    return static_cast<int>(std::lround(run_.arrays.GroupTop[group] * target / maximum_));
  }

  const Run& run_;
  int group_ = 0;
  double maximum_ = 0;
};

}  // namespace vardento::test
