#include "control/entry_lists.h"

#include <algorithm>

#include "run/status.h"

namespace vardento {
namespace {

void KeepAll(Run& run, Array1<StatusByte> status) {
  std::fill(status.begin(), status.end(), Status::Active);
  run.HighestMarked = 0;
  run.DefaultKept = true;
}

void SetToOne(Array1<float> weights) { std::fill(weights.begin(), weights.end(), 1.0F); }

}  // namespace

void ReadItemDeletions(Run& run) { KeepAll(run, run.arrays.ItemStatus); }

void ReadPersonDeletions(Run& run) { KeepAll(run, run.arrays.PersonStatus); }

void ReadItemAnchors(Run&) {}

void ReadPersonAnchors(Run&) {}

void ReadStepList(Run&) {}

void ReadPivots(Run& run) {
  std::fill(run.arrays.GroupPivotFlag.begin(), run.arrays.GroupPivotFlag.end(), 'N');
}

void ReadWeights(Run& run) {
  SetToOne(run.arrays.PersonWeight);
  SetToOne(run.arrays.ItemWeight);
}

}  // namespace vardento
