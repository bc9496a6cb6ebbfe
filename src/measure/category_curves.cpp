#include "measure/category_curves.h"

#include <algorithm>
#include <cmath>

#include "run/user_scale.h"

namespace vardento {
namespace {

// A request can ask for measures where every curve is flat and numbers lose their meaning.
constexpr double kFarthestLogit = 1e5;

}  // namespace

CategoryCurves::CategoryCurves(const Run& run, int group)
    : arrays_(run.arrays),
      tables_(TablesOfGroup(run.arrays, group)),
      start_(run.arrays.GroupStart[group]),
      unitsPerLogit_(std::fabs(run.settings.USCALE)) {}

int CategoryCurves::ValueOf(int category) const {
  return arrays_.CategoryToCode[start_ + category];
}

double CategoryCurves::At(double measure, double* probabilities) const {
  const double logits = std::clamp(measure / unitsPerLogit_, -kFarthestLogit, kFarthestLogit);
  return CategoryProbabilities(logits, tables_, probabilities);
}

double CategoryCurves::MeasureOfScore(int k) const {
  return arrays_.CategoryMeasurePoint[start_ + k] * unitsPerLogit_;
}

double CategoryCurves::MeasureOfHalfPoint(int k) const {
  return arrays_.CategoryHalfPoint[start_ + k] * unitsPerLogit_;
}

double CategoryCurves::ThurstoneThreshold(int k) const {
  return arrays_.CategoryThurstone[start_ + k] * unitsPerLogit_;
}

std::optional<StepRange> FindStepRange(const Run& run) {
  const RunArrays& arrays = run.arrays;
  const UserScale scale(run.settings);
  std::optional<StepRange> range;
  for (int g = 1; g <= run.NGROUPS; ++g) {
    for (int k = 0; k <= arrays.GroupTop[g]; ++k) {
      if (!range) range = StepRange();
      const int position = arrays.GroupStart[g] + k;
      const bool counts =
          arrays.StepStatus[position] >= (k == 0 ? StepStatus::Anchored : StepStatus::Active);
      const float step = counts ? scale.Distance(arrays.StepCalibration[position]) : 0;
      range->low = std::min(range->low, step);
      range->high = std::max(range->high, step);
    }
  }
  return range;
}

}  // namespace vardento
