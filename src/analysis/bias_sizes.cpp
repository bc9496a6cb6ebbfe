#include "analysis/bias_sizes.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <unordered_map>

#include "data/work_files.h"
#include "measure/entry_values.h"
#include "measure/observations.h"
#include "run/messages.h"
#include "run/user_scale.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr double kConverged = 0.01;   // the largest change of an iteration that is none, logits
constexpr double kLargestChange = 1;  // of a size in an iteration, logits
constexpr double kLeastVariance = 1;  // that a residual is divided by, score points squared
constexpr int kFreeIterations = 100;  // far more than data need whose steps are in order

// Where steps are far out of order the variance changes so fast that a size can jump to and fro for
// ever. Behind the free iterations changes are held ever closer, so that after as many again none
// is above kConverged.
double HoldOfIteration(int iteration) {
  return kLargestChange / std::max(1, iteration - kFreeIterations);
}

// An item in the walk over a person's responses.
struct BiasItem {
  ItemInHand hand;
  std::size_t place = 0;  // of its cell behind the person's first one
  double weight = 1;
};

class BiasEstimation {
 public:
  BiasEstimation(Run& run, const BiasClasses& classes, Array1<BiasCell> cells)
      : run_(run),
        classes_(classes),
        cells_(cells),
        ofItems_(classes.source == Facet::Persons),
        walk_(MakeItemWalk(run)),
        p_(static_cast<std::size_t>(walk_.largestTop) + 2, 0.0) {
    PlaceItems();
  }

  // False when it was stopped.
  bool Iterate() {
    bool converged = false;
    for (int iteration = 1; !converged && run_.StopRequest == 0; ++iteration) {
      if (iteration > 1) ForgetExpected();
      WalkOverPersons(iteration == 1);
      const double largest = MoveSizes(HoldOfIteration(iteration));
      TellChange(largest);
      converged = largest <= kConverged;
    }
    if (ofItems_) TurnSizes();
    return converged;
  }

 private:
  void PlaceItems() {
    for (const ItemInHand& hand : walk_.active) {
      const auto item = static_cast<std::size_t>(hand.item - 1);
      if (ofItems_) {
        items_.push_back({hand, item, 1});
      } else if (const int cls = classes_.classOf[hand.item]; cls > 0) {
        const auto ofClass = static_cast<std::size_t>(cls - 1);
        items_.push_back({hand, ofClass * static_cast<std::size_t>(run_.NPERS), hand.weight});
      }
    }
  }

  void WalkOverPersons(bool first) {
    for (int n = 1; n <= run_.NPERS; ++n) {
      ShowProgress(run_, n, run_.NPERS);
      if (!IsActive(run_.arrays.PersonStatus[n])) continue;
      if (ofItems_ && classes_.classOf[n] == 0) continue;
      const std::uint8_t* row = ReadScoredRow(run_, n);
      if (first) CountResponses(n, row);
      ExpectResponses(n, row);
    }
  }

  // The cell of the person and an item at place 0.
  BiasCell* FirstCell(int person) const {
    const int place = ofItems_ ? (classes_.classOf[person] - 1) * run_.settings.NI : person - 1;
    return cells_.Data() + place;
  }
  double WeightOf(int person) const { return ofItems_ ? PersonWeightOf(run_, person) : 1.0; }

  void CountResponses(int person, const std::uint8_t* row) {
    BiasCell* const first = FirstCell(person);
    const double ofPerson = WeightOf(person);
    for (const BiasItem& item : items_) {
      const int x = item.hand.CategoryOf(row[item.hand.item - 1]);
      if (x < 0) continue;
      const double weight = ofPerson * item.weight;
      BiasCell& cell = first[item.place];
      cell.count += weight;
      cell.observed += weight * x;
      cell.maximum += weight * item.hand.tables.top;
    }
  }

  void ExpectResponses(int person, const std::uint8_t* row) {
    BiasCell* const first = FirstCell(person);
    const double measure = run_.arrays.PersonMeasure[person];
    const double ofPerson = WeightOf(person);
    for (const BiasItem& item : items_) {
      BiasCell& cell = first[item.place];
      if (static_cast<std::int32_t>(cell.state) < 0) continue;
      const ItemInHand& hand = item.hand;
      const int x = hand.CategoryOf(row[hand.item - 1]);
      if (x < 0) continue;
      const double weight = ofPerson * item.weight;
      const double d = measure - hand.measure + cell.size;
      const Evaluation model = Evaluate(d, hand.tables, x, p_.data());
      // "F" judges the steps from x up: those below were not in play, and count as they are.
      const int below = x - ModelScore(x, hand.tables.top, hand.tables.model).score;
      cell.expected += weight * (below + model.expected);
      cell.variance += weight * model.variance;
    }
  }

  static BiasState Judge(const BiasCell& cell) {
    if (cell.maximum == 0) return BiasState::NoInformation;
    if (cell.observed <= 0) return BiasState::Minimum;
    if (cell.observed >= cell.maximum) return BiasState::Maximum;
    return cell.variance > 0 ? BiasState::Estimated : BiasState::NoInformation;
  }

  // Gives the largest change, logits.
  double MoveSizes(double hold) {
    double largest = 0;
    for (BiasCell& cell : cells_) {
      if (static_cast<std::int32_t>(cell.state) < 0) continue;
      cell.state = Judge(cell);
      if (cell.state != BiasState::Estimated) continue;
      const double residual = cell.observed - cell.expected;
      const double change =
          std::clamp(residual / std::max(cell.variance, kLeastVariance), -hold, hold);
      cell.size += change;
      largest = std::max(largest, std::fabs(change));
    }
    return largest;
  }

  void ForgetExpected() {
    for (BiasCell& cell : cells_) {
      if (static_cast<std::int32_t>(cell.state) >= 0) cell.expected = cell.variance = 0;
    }
  }

  // What makes a class score higher on an item is an item that is easier for it.
  void TurnSizes() {
    for (BiasCell& cell : cells_) cell.size = 0 - cell.size;
  }

  void TellChange(double largest) {
    constexpr int kWidth = 24;
    const double units = UserScale(run_.settings).Distance(largest);
    WriteConsole(
        run_, " Largest change = " + std::string(Trim(fixed_field(units, kWidth, 2))) + " units");
  }

  Run& run_;
  const BiasClasses& classes_;
  Array1<BiasCell> cells_;
  bool ofItems_;  // items are the targets
  ItemWalk walk_;
  std::vector<BiasItem> items_;
  std::vector<double> p_;  // categories of the response in hand
};

}  // namespace

int WidthOfField(const FieldSpecification& field) {
  constexpr int kMost = BiasClasses::kRoom + 1;
  int width = 0;
  for (const FieldSpecification::Piece& piece : field.pieces) {
    const int columns = piece.first == 0 ? TextWidth(piece.literal) : piece.last - piece.first + 1;
    width = std::min(width + std::min(columns, kMost), kMost);
  }
  return width;
}

BiasClasses FindBiasClasses(Run& run, Facet source, const FieldSpecification& field) {
  BiasClasses classes;
  classes.source = source;
  classes.width = WidthOfField(field);
  const FacetArrays entries = ArraysOf(run, source);
  classes.classOf.Assign(entries.Count(), 0);
  const int most = BiasClasses::kRoom / std::max(classes.width, 1);
  std::unordered_map<std::string, int> known;
  for (int entry = 1; entry <= entries.Count(); ++entry) {
    if (!IsActive(entries.status[entry])) continue;
    const std::string code(TrimRight(CutField(field, LabelOfEntry(run, source, entry))));
    auto place = known.find(code);
    if (place == known.end()) {
      if (classes.Count() >= most) continue;
      classes.codes.push_back(code);
      place = known.emplace(code, classes.Count()).first;
    }
    if (entries.WeightOf(entry) > 0) classes.classOf[entry] = place->second;
  }
  return classes;
}

unsigned long long BiasSizes::BytesFor(const Run& run, const BiasClasses& classes) {
  const int targets = ArraysOf(run, OtherFacet(classes.source)).Count();
  return sizeof(BiasCell) * static_cast<unsigned long long>(targets) * classes.codes.size();
}

bool BiasSizes::Estimate(Run& run, const BiasClasses& classes) {
  classes_ = classes.Count();
  targets_ = ArraysOf(run, OtherFacet(classes.source)).Count();
  const long long count = static_cast<long long>(classes_) * targets_;
  if (count > INT_MAX) return false;
  BlockPlan plan;
  plan.Add(cells_, static_cast<int>(count));
  if (!plan.Allocate(run.memory, block_)) return false;
  converged_ = BiasEstimation(run, classes, cells_).Iterate();
  return true;
}

BiasMeasure MeasureOfBias(const ControlSettings& settings, const BiasCell& cell) {
  const UserScale scale(settings);
  return {scale.Difference(cell.size), scale.Distance(1 / std::sqrt(cell.variance))};
}

BiasContrast ContrastOfBias(const ControlSettings& settings, const BiasCell& first,
                            const BiasCell& second) {
  const UserScale scale(settings);
  const double difference = first.size - second.size;
  const double error = std::sqrt(1 / first.variance + 1 / second.variance);
  return {scale.Difference(difference), scale.Distance(error),
          static_cast<float>(difference / error)};
}

}  // namespace vardento
