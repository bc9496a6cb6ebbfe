// The values of one category of one item in the user's units, as files and Tables of steps show
// them, and the running value of the steps of a scale.
#pragma once

#include "run/run.h"
#include "run/user_scale.h"

namespace vardento {

// The running value of the steps of one scale, on the user's scale, position by position: where a
// category was kept though nobody used it, the step into it is put far up and the step behind it as
// far down, so that a run anchored at these values passes over the category as well.
class RunningStep {
 public:
  RunningStep(const Run& run, int group)
      : arrays_(run.arrays),
        first_(run.arrays.GroupStart[group]),
        scale_(UserScale(run.settings).Distance(1)),
        oneGroup_(run.NGROUPS == 1) {}

  // The value at the next position; called for the first, the second ... in order.
  float At(int position);

 private:
  void PassOver();
  void Take(int position, int status);

  const RunArrays& arrays_;
  int first_;
  float scale_;  // user units in a logit
  bool oneGroup_;
  float value_ = 0;
  float carry_ = 0;  // in user units with one scale, in logits with several
};

struct CategoryValues {
  int code = 0;         // the scored category
  int score = 0;        // code of the lowest category + k
  float measure = 0;    // of the step into the category, running
  float error = 0;      // standard error of the step
  float halfPoint = 0;  // where the expected score is half a point below the category
  float point = 0;      // where it is the category
  float threshold = 0;  // where this category or a higher one is as likely as not
};

// Category k, 0 to the top of its group, of an item that has a measure. `steps`: the running values
// by category position.
CategoryValues ReadCategoryValues(const Run& run, int item, int k, const Array1<float>& steps);

}  // namespace vardento
