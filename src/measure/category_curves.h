// The curves of one group's categories as functions of the measure: what text and pictures sample
// at their own width. And the range of measures that the curves of a run cover.
#pragma once

#include <optional>
#include <vector>

#include "measure/category_model.h"
#include "run/run.h"

namespace vardento {

// Measures are user units from the item (person less item), growing with the person's ability.
class CategoryCurves {
 public:
  // Views the run's arrays: good until categories are renumbered.
  CategoryCurves(const Run& run, int group);

  int Top() const { return tables_.top; }
  // The score in the data that category 0..Top stands for.
  int ValueOf(int category) const;
  // Writes the probabilities of categories 0..Top, returns the expected score, 0 to Top, counted
  // from the lowest category. The probability of k or below is the sum up to k. For models "S" and
  // "F" these are of the whole distribution, before anything was observed.
  double At(double measure, double* probabilities) const;

  // Where the expected score is category k (1 to Top - 1), and k - 0.5 (1 to Top).
  double MeasureOfScore(int k) const;
  double MeasureOfHalfPoint(int k) const;
  // Where category k or above (1 to Top) is as likely as not.
  double ThurstoneThreshold(int k) const;

 private:
  const RunArrays& arrays_;
  GroupModelTables tables_;
  int start_;
  double unitsPerLogit_;
};

struct StepRange {
  float low = 0, high = 0;
};
// From the least to the greatest step calibration of all groups, user units, 0 (the item) among
// them. Nothing when no group has a step.
std::optional<StepRange> FindStepRange(const Run& run);

}  // namespace vardento
