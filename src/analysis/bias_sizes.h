// Bias by class: how much harder each item is for a class of persons (differential item
// functioning), or how much abler each person is on a class of items (differential person
// functioning). All measures stay where the estimation left them; of each class and target one size
// is estimated, the shift that makes its expected score the observed one (the maximum likelihood
// estimate of that one parameter; Wright & Masters 1982, ch. 4). The Tables and later writers read
// the record made here.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "data/field_specification.h"
#include "platform/memory.h"
#include "run/facet.h"
#include "run/run.h"

namespace vardento {

// Classes of the entries of one side, by the field of their labels.
struct BiasClasses {
  // The room of all codes together, characters; every code takes the width of the field.
  static constexpr int kRoom = 2000;

  Facet source = Facet::Persons;   // whose labels were read
  int width = 0;                   // of a code, characters
  std::vector<std::string> codes;  // of class 1 on, in the order of first appearance
  // By entry 1..NPERS or 1..NI: its class; 0 for an entry that takes no part, since it isn't
  // active, weighs nothing or came when the room was used up.
  Vector1<std::int32_t> classOf;
  int Count() const { return static_cast<int>(codes.size()); }
};

// Characters of the values that a field gives; at most kRoom + 1, and 0 for an empty specification.
int WidthOfField(const FieldSpecification& field);

// Reads the labels of the active entries of `source`.
BiasClasses FindBiasClasses(Run& run, Facet source, const FieldSpecification& field);

// What became of a class on a target.
enum class BiasState : std::int32_t {
  None = 0,            // not looked at
  Estimated = 1,       // has a size
  Minimum = -1,        // all responses in the lowest category: no size is low enough
  Maximum = -2,        // all in the highest
  NoInformation = -3,  // no response at all, or none that tells of the measure
};
inline bool IsReportable(BiasState state) {
  return state == BiasState::Estimated || state == BiasState::Minimum ||
         state == BiasState::Maximum;
}

// A class on a target. Sums run over the responses of the pair, each with the weight of its person
// (items as targets) or of its item (persons as targets).
struct BiasCell {
  double size;      // logits: positive is a harder item, or an abler person
  double count;     // weights of the responses
  double observed;  // score points above the lowest category, as expected and maximum are
  double maximum;
  // At the size that was judged last; without bias, for a class at the minimum or maximum. Of
  // models "S" and "F" it counts the steps that were in play as the responses found them.
  double expected;
  double variance;  // of the score, score points squared: the information about the size
  BiasState state;
};

// The cells of all classes and targets.
class BiasSizes {
 public:
  // Walks over the responses once for each iteration, and says so on the console; a stop request
  // ends it behind the walk in hand. With one raised beforehand no cell is looked at. False when
  // memory for the cells is refused.
  [[nodiscard]] bool Estimate(Run& run, const BiasClasses& classes);
  static unsigned long long BytesFor(const Run& run, const BiasClasses& classes);

  // The iteration came to its end: nobody stopped it.
  bool Converged() const { return converged_; }
  int Classes() const { return classes_; }
  int Targets() const { return targets_; }  // NI or NPERS
  const BiasCell& At(int cls, int target) const { return cells_[(cls - 1) * targets_ + target]; }

 private:
  int classes_ = 0, targets_ = 0;
  bool converged_ = false;
  MemoryBlock block_;
  Array1<BiasCell> cells_;  // class by class
};

// A size and its model standard error, in the user's units. Of an estimated cell.
struct BiasMeasure {
  float size = 0, error = 0;
};
BiasMeasure MeasureOfBias(const ControlSettings& settings, const BiasCell& cell);

// How two classes of a target differ, size of the first less that of the second, in the user's
// units; t is the difference in standard errors and keeps its sign when USCALE= turns the scale
// round. Of two estimated cells.
struct BiasContrast {
  float contrast = 0, error = 0, t = 0;
};
BiasContrast ContrastOfBias(const ControlSettings& settings, const BiasCell& first,
                            const BiasCell& second);

}  // namespace vardento
