// What the user gave for single entries: deletions, selections, anchors, weights, steps, pivots.
// Read once; the estimation copies what it needs and never writes here, so that the same run can be
// measured again.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/memory.h"
#include "run/status.h"

namespace vardento {

// An entry that is fixed at a measure, logits, unless it is left out.
struct Anchor {
  int entry = 0;
  float measure = 0;
};

struct GivenEntries {
  // Active or Deleted, by lists and by the selection of labels. While data are read, PersonStatus
  // is as long as the person trial.
  Array1<StatusByte> ItemStatus, PersonStatus;
  std::vector<Anchor> itemAnchors, personAnchors;  // at most one for each entry

  // By category position as the data have them: StepStatus::Kept unless given, and the calibration
  // of an anchored step, logits.
  Array1<std::int32_t> StepStatus;
  Array1<float> StepCalibration;
  // By group.
  Array1<std::int32_t> GroupTop;  // the highest category that a score can reach
  Array1<float> GroupPivot;       // score point at which the item difficulty shall stand
  Array1<bool> GroupPivotFlag;    // it was given

  // Weights; empty arrays when none are in use.
  Array1<float> PersonWeight, ItemWeight;
  bool HasPersonWeights() const { return PersonWeight.Size() > 0; }
  bool HasItemWeights() const { return ItemWeight.Size() > 0; }
};

}  // namespace vardento
