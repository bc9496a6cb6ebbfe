// The structure of the scales while start values are found: which categories stay, and a first
// estimate of the steps between them.
#pragma once

#include "run/run.h"

namespace vardento {

// Weighted sums over the observations in each category position, 1..NCATS: count, and first and
// second moment of the measure difference B - D (logits).
struct CategorySums {
  Vector1<double> count, measure, squares;
  void Clear(int positions);
  struct Triple {
    double count = 0, measure = 0, squares = 0;
    void Add(const Triple& other);
  };
  Triple At(int position) const;
};

struct ScalePassResult {
  int activeCategories = 0;
  int largestTop = 0;
  float stepChange = 0;  // largest change of a step, signed, logits
  bool structureChanged = false;
};

// Renumbers the categories of every group by what was observed and estimates its steps, from the
// last group to the first. Fills CategoryCount from the sums.
ScalePassResult EstimateScales(Run& run, CategorySums& sums);

}  // namespace vardento
