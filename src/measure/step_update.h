// Moves the step calibrations of all groups after one joint iteration, toward expected category
// counts that equal the observed ones: the likelihood equations of the steps (Wright & Masters
// 1982, ch. 4).
#pragma once

#include "run/run.h"

namespace vardento {

struct StepChange {
  float change = 0;    // largest change of a step, signed, logits
  float residual = 0;  // largest category residual: observed less expected count
  int code = 0;        // response code of that category
};

// `expected`: by category position, 1..NCATS, expected counts ("R") or passes of the step;
// `target`: the counts to be matched; both weighted in the same way. Each step moves by its
// log-odds of expected against observed passes, as iterative proportional fitting does, not by a
// residual divided by its variance (Wright & Masters 1982), which overshoots while an expected
// count is far too small. Estimated steps change, anchored ones stay; a group is centred at 0, or
// by its pivot.
StepChange UpdateSteps(Run& run, const Vector1<double>& expected, const Vector1<double>& target);

}  // namespace vardento
