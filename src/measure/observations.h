// How the measurement phases walk over observations: the measured items as one contiguous list, and
// the weights of persons, items and pairs. Made once for each pass over the persons.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "measure/category_model.h"
#include "run/run.h"

namespace vardento {

// A measured item (active, anchored or extreme) with all that the person loop needs of it.
struct ItemInHand {
  int item = 0;
  int group = 0;
  int start = 0;          // category position of its category 0
  bool active = false;    // takes part in the persons' sums; an extreme item has only its own
  double measure = 0;     // D, logits
  double weight = 1;      // iw: what a response counts in its person's sums
  double pairFactor = 1;  // the combined weight of an observation in a category is pw times this
  GroupModelTables tables;
  // exp(-k D - F(1) - ... - F(k)) for k = 0..T, 0 for an unobserved category; null when the
  // category model must be asked instead ("S", "F", or numbers too large to multiply).
  const double* factors = nullptr;
  const std::int32_t* codeToCategory = nullptr;  // by response code

  // The ordered category of a stored response, negative when it counts as missing.
  int CategoryOf(std::uint8_t response) const {
    return response == 255 ? -1 : codeToCategory[response];
  }
};

// The measured items from NI down to 1: all of them, and those among them that are active. A person
// of positive status meets all of them, an extreme person only the active ones.
struct ItemWalk {
  std::vector<ItemInHand> all;
  std::vector<ItemInHand> active;
  std::vector<double> factors;  // of all items, one after the other
  int largestTop = 1;           // the longest scale among them
  const std::vector<ItemInHand>& For(StatusByte personStatus) const {
    return IsActive(personStatus) ? all : active;
  }
};

// As difficulties, steps and statuses stand now: a pass that changes them makes a new one.
ItemWalk MakeItemWalk(const Run& run);
// The items as the estimation left them, whatever has been selected since.
ItemWalk MakeEstimatedItemWalk(const Run& run);

// exp(k B) for k = 0..T of one person: with an item's factors they give its category probabilities
// without a further exponential, since p(k) of "R" is in proportion to the product of a power of
// the person and a factor of the item. T is the longest scale that will be asked for.
class PersonPowers {
 public:
  explicit PersonPowers(int largestTop) : powers_(static_cast<std::size_t>(largestTop) + 1, 1.0) {}
  // B, logits; when its powers are too large to multiply, the category model is asked instead.
  void Set(double measure);
  // For a person and items within reach of each other; what EvaluateExpected gives at B - D.
  double Expect(const ItemInHand& hand, int x, double* p) const;
  // As Evaluate at B - D.
  Evaluation Evaluate(const ItemInHand& hand, int x, double* p) const;

 private:
  double measure_ = 0;          // B, logits
  bool usable_ = false;         // B is within reach of its powers
  std::vector<double> powers_;  // exp(k B) for k = 0..T
};

// The weight of a person (pw) or an item (iw); 1 when no weights are in use.
inline double PersonWeightOf(const Run& run, int person) {
  return run.given.HasPersonWeights() ? run.given.PersonWeight[person] : 1.0;
}
inline double ItemWeightOf(const Run& run, int item) {
  return run.given.HasItemWeights() ? run.given.ItemWeight[item] : 1.0;
}
// Refreshes GroupMaxWeight over items of positive status; nothing without item weights.
void UpdateGroupMaxWeight(Run& run);

// Of the normal approximation: a spread of measures draws log-odds apart by sqrt(1 + variance /
// this), variance in logits squared. It is the variance of the normal curve that stands in for the
// logistic one. Wright & Stone 1979 have 2.89 = 1.70^2, which makes the largest difference between
// the two least; 1.60^2 would give them one slope in the middle. The settled value lies in between.
inline constexpr double kLogisticSpread = 2.65;

// A score with a finite measure, score points: first raised to the margin, then lowered to the
// maximum less the margin. Where the margins overlap, the upper bound holds.
inline double HoldInside(double score, double maximum, double margin) {
  return std::min(std::max(score, margin), maximum - margin);
}

// Centring is on this side, and anchors do not set the frame instead. The model fixes differences
// alone: one side's mean has to be put at 0, or an anchor says where 0 lies.
bool CentresOnItems(const Run& run);
bool CentresOnPersons(const Run& run);

}  // namespace vardento
