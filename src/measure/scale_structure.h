// The structure of the scales while start values are found: which categories stay, and a first
// estimate of the steps between them by the normal approximation (Cohen 1979): a step is as an item
// that the observations beside it have tried.
#pragma once

#include "run/run.h"

namespace vardento {

// Weighted sums over the observations of active persons on active items in each category position,
// 1..NCATS: count, sum of the measure difference B - D (logits) and of its square.
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
  int activeCategories = 0;       // of all groups together
  int largestTop = 0;             // the longest scale
  float stepChange = 0;           // largest change of a step, signed, logits
  bool structureChanged = false;  // a category or a group was dropped
};

// Renumbers the categories of every group by what was observed and estimates its steps, from the
// last group to the first; steps of a group are centred at 0 unless anchored. Fills CategoryCount
// from the sums, which are packed with the categories. A group without active items, or left with a
// single category, gets GroupTop -1: its responses are missing to everybody from then on.
ScalePassResult EstimateScales(Run& run, CategorySums& sums);

}  // namespace vardento
