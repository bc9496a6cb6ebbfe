#include "measure/observations.h"

#include <algorithm>
#include <cmath>

namespace vardento {

namespace {

double PairFactor(const Run& run, int group, double itemWeight) {
  if (!run.given.HasItemWeights() || itemWeight != 0.0) return itemWeight;
  // A group whose items all weigh nothing still gets its scale from its observations.
  return run.arrays.GroupMaxWeight[group] == 0.0F ? 1.0 : 0.0;
}

// Products of two exponentials of at most this size neither overflow nor vanish: a double reaches
// to exp(709).
constexpr double kLargestExponent = 300;

// Appends the factors of one item, exp of the sum over j = 1..k of (-D - F(j)): the item's share of
// the model of Andrich 1978 and Masters 1982. False when they are out of reach; what was appended
// then lies unused.
bool AppendFactors(const ItemInHand& hand, std::vector<double>& factors) {
  if (hand.tables.top < 1 || hand.tables.IsSequential()) return false;
  double exponent = 0;
  factors.push_back(1.0);
  for (int k = 1; k <= hand.tables.top; ++k) {
    // A dichotomy does not ask for the status of its step.
    const bool kept = hand.tables.top > 1 && hand.tables.status[k] == 0;
    exponent -= kept ? hand.measure : hand.measure + hand.tables.step[k];
    if (!(std::fabs(exponent) < kLargestExponent)) return false;
    factors.push_back(kept ? 0.0 : std::exp(exponent));
  }
  return true;
}

// Once all factors stand still: the pointers to each item's own.
void LinkFactors(ItemWalk& walk, const std::vector<std::ptrdiff_t>& offsets) {
  for (std::size_t i = 0; i < walk.all.size(); ++i) {
    ItemInHand& hand = walk.all[i];
    if (offsets[i] >= 0) hand.factors = walk.factors.data() + offsets[i];
    if (hand.active) walk.active.push_back(hand);
  }
}

// With UANCHOR=N anchored values stay, but the rest is centred beside them.
bool AnchorsSetFrame(const Run& run) {
  return run.settings.UANCHOR && (run.results.ItemAnchored || run.results.PersonAnchored);
}

// `statusOf` makes of an item's byte the status that counts.
ItemWalk MakeWalk(const Run& run, StatusByte (*statusOf)(StatusByte)) {
  const RunArrays& arrays = run.arrays;
  ItemWalk walk;
  std::vector<std::ptrdiff_t> offsets;
  walk.all.reserve(static_cast<std::size_t>(run.settings.NI));
  for (int i = run.settings.NI; i >= 1; --i) {
    const StatusByte status = statusOf(arrays.ItemStatus[i]);
    if (!IsMeasured(status)) continue;
    ItemInHand hand;
    hand.item = i;
    hand.group = arrays.ItemGroup[i];
    hand.start = arrays.GroupStart[hand.group];
    hand.active = IsActive(status);
    hand.measure = arrays.ItemMeasure[i];
    hand.weight = ItemWeightOf(run, i);
    hand.pairFactor = PairFactor(run, hand.group, hand.weight);
    hand.tables = TablesOfGroup(arrays, hand.group);
    hand.codeToCategory = &arrays.CodeToCategory[hand.start];
    walk.all.push_back(hand);
    walk.largestTop = std::max(walk.largestTop, hand.tables.top);
    const auto offset = static_cast<std::ptrdiff_t>(walk.factors.size());
    offsets.push_back(AppendFactors(hand, walk.factors) ? offset : -1);
  }
  LinkFactors(walk, offsets);
  return walk;
}

}  // namespace

ItemWalk MakeItemWalk(const Run& run) {
  return MakeWalk(run, [](StatusByte status) { return status; });
}

ItemWalk MakeEstimatedItemWalk(const Run& run) { return MakeWalk(run, OwnStatus); }

void PersonPowers::Set(double measure) {
  measure_ = measure;
  const auto top = static_cast<double>(powers_.size() - 1);
  usable_ = std::fabs(measure) * top < kLargestExponent;
  if (!usable_) return;
  const double power = std::exp(measure);
  for (std::size_t k = 1; k < powers_.size(); ++k) powers_[k] = powers_[k - 1] * power;
}

double PersonPowers::Expect(const ItemInHand& hand, int x, double* p) const {
  if (!usable_ || hand.factors == nullptr) {
    return EvaluateExpected(measure_ - hand.measure, hand.tables, x, p);
  }
  if (hand.tables.top == 1) {
    // The guard of the category model, so that both ways agree far out.
    static const double least = std::exp(-static_cast<double>(kExpGuard));
    const double odds = std::max(hand.factors[1] * powers_[1], least);
    p[1] = odds / (1.0 + odds);
    p[0] = 1.0 - p[1];
    return p[1];
  }
  // p(0) of every item is 1 before it is scaled, so the total is never 0.
  double total = 0;
  for (int k = 0; k <= hand.tables.top; ++k) {
    total += p[k] = hand.factors[k] * powers_[static_cast<std::size_t>(k)];
  }
  const double scale = 1.0 / total;
  double expected = 0;
  for (int k = 0; k <= hand.tables.top; ++k) {
    p[k] *= scale;
    expected += k * p[k];
  }
  return expected;
}

Evaluation PersonPowers::Evaluate(const ItemInHand& hand, int x, double* p) const {
  return MomentsOf(hand.tables, Expect(hand, x, p), p);
}

void UpdateGroupMaxWeight(Run& run) {
  if (!run.given.HasItemWeights()) return;
  RunArrays& arrays = run.arrays;
  for (float& weight : arrays.GroupMaxWeight) weight = 0;
  for (int i = 1; i <= run.settings.NI; ++i) {
    if (!IsActive(arrays.ItemStatus[i])) continue;
    float& highest = arrays.GroupMaxWeight[arrays.ItemGroup[i]];
    highest = std::max(highest, run.given.ItemWeight[i]);
  }
}

bool CentresOnItems(const Run& run) { return run.settings.UMEAN_IS_ITEM && !AnchorsSetFrame(run); }

bool CentresOnPersons(const Run& run) {
  return !run.settings.UMEAN_IS_ITEM && !AnchorsSetFrame(run);
}

}  // namespace vardento
