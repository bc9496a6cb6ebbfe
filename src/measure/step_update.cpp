#include "measure/step_update.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "measure/category_model.h"
#include "run/status.h"

namespace vardento {

namespace {

// One group's steps while they are updated.
class StepUpdate {
 public:
  StepUpdate(Run& run, int group, const Vector1<double>& expected, const Vector1<double>& target,
             StepChange& result)
      : arrays_(run.arrays),
        group_(group),
        start_(run.arrays.GroupStart[group]),
        top_(run.arrays.GroupTop[group]),
        model_(run.arrays.GroupModel[group]),
        pivot_(run.given.GroupPivot[group]),
        expected_(expected),
        target_(target),
        result_(result),
        correction_(static_cast<std::size_t>(top_) + 1, 0.0),
        previous_(static_cast<std::size_t>(top_) + 1, 0.0F),
        p_(static_cast<std::size_t>(top_) + 1, 0.0) {}

  void Update() {
    const double divisor = FindCorrections();
    MoveSteps(divisor);
    double shift = 0;
    if (MayPivot() && FindPivotShift(shift)) {
      Pivot(shift);
    } else {
      arrays_.GroupPivotFlag[group_] = false;
      Centre();
    }
  }

 private:
  int StatusAt(int k) const { return arrays_.StepStatus[start_ + k]; }
  float& StepAt(int k) { return arrays_.StepCalibration[start_ + k]; }
  double Target(int k) const { return target_[start_ + k]; }
  double Expected(int k) const { return expected_[start_ + k]; }

  // Observations that passed step k; those in category k or, in succession, in k or above.
  double Observed(int k) const {
    double sum = Target(k);
    if (model_ == Model::Successes && k > 0) {
      for (int j = k + 1; j <= top_; ++j) sum += Target(j);
    }
    return sum;
  }

  // The correction of every step, logits: the log-odds of expected against observed passes. A step
  // is passed against the category below it ("R"), or against whoever tried it and failed. Returns
  // the divisor that keeps the largest upward correction at 1 logit; downward ones do not count in
  // it.
  double FindCorrections() {
    double observedBelow = 0, expectedBelow = 0;
    double largest = 1;
    for (int k = 0; k <= top_; ++k) {
      if (StatusAt(k) <= StepStatus::Kept) {
        // In succession a category behind an unused one has no step of its own, yet whoever is in
        // it has failed the next step.
        if (model_ == Model::Successes) observedBelow = Target(k);
        continue;
      }
      const double observed = Observed(k);
      if (k > 0) {
        // Who tried the step and did not pass is known by count: tries less expected passes.
        if (model_ != Model::Rating) expectedBelow = observed + observedBelow - Expected(k);
        const double g =
            SafeLogOdds(Expected(k), expectedBelow) - SafeLogOdds(observed, observedBelow);
        correction_[static_cast<std::size_t>(k)] = g;
        largest = std::max(largest, g);
      }
      if (model_ == Model::Failures) {
        observedBelow += Target(k);
      } else {
        observedBelow = Target(k);
        expectedBelow = Expected(k);
      }
    }
    return largest;
  }

  // An anchor on category 0 binds no step, so it does not make the group anchored.
  void MoveSteps(double divisor) {
    for (int k = 1; k <= top_; ++k) anchored_ = anchored_ || StatusAt(k) == StepStatus::Anchored;
    for (int k = 0; k <= top_; ++k) {
      if (StatusAt(k) <= StepStatus::Kept) continue;
      previous_[static_cast<std::size_t>(k)] = StepAt(k);
      // As a 32-bit value: residuals that differ by rounding alone are a tie, and the first stays.
      const auto residual = static_cast<float>(Observed(k) - Expected(k));
      if (StatusAt(k) == StepStatus::Active && std::fabs(residual) > std::fabs(result_.residual)) {
        result_.residual = residual;
        result_.code = arrays_.CategoryToCode[start_ + k];
      }
      if (k > 0) MoveStep(k, correction_[static_cast<std::size_t>(k)] / divisor);
    }
  }

  // In an anchored group the mean that comes off later is of the moves that the anchored steps
  // would have made: the free ones keep their place among them.
  void MoveStep(int k, double move) {
    if (StatusAt(k) == StepStatus::Active) {
      StepAt(k) = static_cast<float>(StepAt(k) + move);
      if (anchored_) return;
      stepCount_ += 1;
      stepSum_ += StepAt(k);
    } else if (StatusAt(k) == StepStatus::Anchored) {
      stepCount_ += 1;
      stepSum_ += move;
    }
  }

  bool MayPivot() const {
    return arrays_.GroupPivotFlag[group_] && !anchored_ && model_ == Model::Rating;
  }

  // The shift (logits) that puts the expected score of a person level with the item at the pivot;
  // false when the pivot is outside the scale. Newton steps, their divisor no less than T, so that
  // they fall short rather than past it: what is missing comes with the next iteration.
  bool FindPivotShift(double& shift) {
    const double wanted = static_cast<double>(pivot_) - arrays_.CategoryToCode[start_];
    if (wanted <= 0 || wanted >= top_) return false;
    const GroupModelTables tables = TablesOfGroup(arrays_, group_);
    shift = 0;
    double step = 0;
    int passes = 0;
    do {
      const Evaluation here = Evaluate(shift, tables, 0, p_.data());
      step = (wanted - here.expected) / std::max(here.variance, static_cast<double>(top_));
      shift += step;
      ++passes;
    } while (std::fabs(step) > 0.001 && passes < 10 && std::fabs(shift) < 1);
    while (std::fabs(shift) > 1) shift *= 0.9;
    return true;
  }

  void Pivot(double shift) {
    // A kept category has no step to move; the next estimated one moves for it as well.
    double carry = 0;
    for (int k = 1; k <= top_; ++k) {
      if (StatusAt(k) == StepStatus::Kept) carry += shift;
      if (StatusAt(k) != StepStatus::Active) continue;
      StepAt(k) = static_cast<float>(StepAt(k) - shift - carry);
      carry = 0;
      KeepChange(k);
    }
  }

  // Steps of mean 0 (Andrich 1978): what they have in common is the difficulty of the items.
  void Centre() {
    const double mean = stepSum_ / std::max(stepCount_, 1);
    for (int k = 1; k <= top_; ++k) {
      if (StatusAt(k) != StepStatus::Active) continue;
      StepAt(k) = static_cast<float>(StepAt(k) - mean);
      KeepChange(k);
    }
  }

  // Behind centring: a shift of all steps alike is no change. Of two as large the later stays.
  void KeepChange(int k) {
    const float change = StepAt(k) - previous_[static_cast<std::size_t>(k)];
    if (std::fabs(change) >= std::fabs(result_.change)) result_.change = change;
  }

  RunArrays& arrays_;
  int group_, start_, top_;
  Model model_;
  float pivot_;                      // score point at which the item difficulty shall stand
  const Vector1<double>& expected_;  // weighted counts, by position
  const Vector1<double>& target_;
  StepChange& result_;              // of all groups so far
  std::vector<double> correction_;  // of step k, logits, not yet divided
  std::vector<float> previous_;     // step k before the iteration, logits
  std::vector<double> p_;           // categories 0..T
  bool anchored_ = false;           // a step of the group is
  int stepCount_ = 0;               // steps of the mean that Centre takes off
  double stepSum_ = 0;              // their calibrations, or the moves of the anchored ones; logits
};

}  // namespace

StepChange UpdateSteps(Run& run, const Vector1<double>& expected, const Vector1<double>& target) {
  StepChange result;
  for (int g = 1; g <= run.NGROUPS; ++g) {
    if (run.arrays.GroupTop[g] > 0) StepUpdate(run, g, expected, target, result).Update();
  }
  return result;
}

}  // namespace vardento
