// Moves the step calibrations of all groups after one joint iteration.
#pragma once

#include "run/run.h"

namespace vardento {

struct StepChange {
  float change = 0;    // largest change of a step, signed, logits
  float residual = 0;  // largest category residual: observed less expected count
  int code = 0;        // response code of that category
};

// `expected`: by category position, expected counts ("R") or passes of the step; `target`: the
// counts to be matched.
StepChange UpdateSteps(Run& run, const Vector1<double>& expected, const Vector1<double>& target);

}  // namespace vardento
