#include "measure/observations.h"

#include <algorithm>

namespace vardento {

namespace {

double PairFactor(const Run& run, int group, double itemWeight) {
  if (!run.itemWeights || itemWeight != 0.0) return itemWeight;
  // A group whose items all weigh nothing still gets its scale from its observations.
  return run.arrays.GroupMaxWeight[group] == 0.0F ? 1.0 : 0.0;
}

bool AnchorsSetFrame(const Run& run) {
  return run.settings.UANCHOR != 'N' && (run.ItemAnchored || run.PersonAnchored);
}

}  // namespace

ItemWalk MakeItemWalk(const Run& run) {
  const RunArrays& arrays = run.arrays;
  ItemWalk walk;
  walk.all.reserve(static_cast<std::size_t>(run.settings.NI));
  for (int i = run.settings.NI; i >= 1; --i) {
    if (!IsMeasured(arrays.ItemStatus[i])) continue;
    ItemInHand hand;
    hand.item = i;
    hand.group = arrays.ItemGroup[i];
    hand.start = arrays.GroupStart[hand.group];
    hand.active = IsActive(arrays.ItemStatus[i]);
    hand.measure = arrays.ItemMeasure[i];
    hand.weight = ItemWeightOf(run, i);
    hand.pairFactor = PairFactor(run, hand.group, hand.weight);
    hand.tables = TablesOfGroup(arrays, hand.group);
    hand.codeToCategory = &arrays.CodeToCategory[hand.start];
    walk.all.push_back(hand);
    if (hand.active) walk.active.push_back(hand);
  }
  return walk;
}

void UpdateGroupMaxWeight(Run& run) {
  if (!run.itemWeights) return;
  RunArrays& arrays = run.arrays;
  for (float& weight : arrays.GroupMaxWeight) weight = 0;
  for (int i = 1; i <= run.settings.NI; ++i) {
    if (!IsActive(arrays.ItemStatus[i])) continue;
    float& highest = arrays.GroupMaxWeight[arrays.ItemGroup[i]];
    highest = std::max(highest, arrays.ItemWeight[i]);
  }
}

bool CentresOnItems(const Run& run) {
  return run.settings.UMEAN_IS_ITEM == 'Y' && !AnchorsSetFrame(run);
}

bool CentresOnPersons(const Run& run) {
  return run.settings.UMEAN_IS_ITEM == 'N' && !AnchorsSetFrame(run);
}

}  // namespace vardento
