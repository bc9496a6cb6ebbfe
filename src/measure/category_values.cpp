#include "measure/category_values.h"

#include <algorithm>
#include <cmath>

#include "measure/entry_values.h"
#include "measure/fit_statistics.h"

namespace vardento {
namespace {

constexpr float kOutOfReach = 40;  // logits

}  // namespace

float RunningStep::At(int position) {
  const int status = arrays_.StepStatus[position];
  if (status == StepStatus::Kept) {
    if (position > first_) PassOver();
    return value_;
  }
  // No step leads into the first category: what stands there is only of note when the user has put
  // it there.
  if (position > first_ || status == StepStatus::Anchored) Take(position, status);
  return value_;
}

void RunningStep::PassOver() {
  value_ += kOutOfReach * scale_;
  carry_ -= oneGroup_ ? value_ : kOutOfReach;
}

void RunningStep::Take(int position, int status) {
  const float carry = status == StepStatus::Active ? carry_ : 0;
  const float step = arrays_.StepCalibration[position];
  value_ = oneGroup_ ? scale_ * step + carry : scale_ * (step + carry);
  carry_ = 0;
}

CategoryValues ReadCategoryValues(const Run& run, int item, int k, const Array1<float>& steps) {
  const RunArrays& arrays = run.arrays;
  const int first = arrays.GroupStart[arrays.ItemGroup[item]];
  const int position = first + k;
  const UserScale scale(run.settings);
  const float d = MeasureOf(run, Facet::Items, item);
  const float information =
      std::max(arrays.CategoryInformation[position], static_cast<float>(kLeastInformation));
  CategoryValues values;
  values.code = arrays.CategoryToCode[position];
  values.score = k + arrays.CategoryToCode[first];
  values.measure = d + steps[position];
  values.error = scale.Distance(1) / std::sqrt(information);
  values.halfPoint = d + scale.Distance(arrays.CategoryHalfPoint[position]);
  values.point = d + scale.Distance(arrays.CategoryMeasurePoint[position]);
  values.threshold = d + scale.Distance(arrays.CategoryThurstone[position]);
  return values;
}

}  // namespace vardento
