#include "measure/observation_values.h"

#include <algorithm>
#include <cmath>

#include "data/work_files.h"

namespace vardento {

ObservationReader::ObservationReader(Run& run)
    : run_(run),
      walk_(MakeItemWalk(run)),
      hands_(static_cast<std::size_t>(run.settings.NI) + 1, nullptr),
      powers_(walk_.largestTop),
      p_(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0),
      coded_(static_cast<std::size_t>(run.settings.NI), 0),
      scored_(coded_.size(), ObservationValues::kMissing) {
  for (const ItemInHand& hand : walk_.all) hands_[static_cast<std::size_t>(hand.item)] = &hand;
}

void ObservationReader::Open(int person) {
  person_ = person;
  status_ = run_.arrays.PersonStatus[person];
  if (!IsRead(status_)) return;
  const std::uint8_t* const row = ReadScoredRow(run_, person);
  std::copy_n(row, scored_.size(), scored_.begin());
  ReadCodedRow(run_, person, coded_.data());
  if (IsMeasured(status_)) powers_.Set(run_.arrays.PersonMeasure[person]);
}

ObservationValues ObservationReader::Read(int item) {
  ObservationValues values;
  values.person = person_;
  values.item = item;
  values.personStatus = status_;
  values.itemStatus = run_.arrays.ItemStatus[item];
  if (!IsRead(status_)) return values;
  const auto place = static_cast<std::size_t>(item) - 1;
  values.code = coded_[place];
  if (!IsRead(values.itemStatus)) return values;
  values.observed = scored_[place];
  const ItemInHand* const hand = hands_[static_cast<std::size_t>(item)];
  if (hand == nullptr || !IsMeasured(status_)) return values;
  values.difference = static_cast<double>(run_.arrays.PersonMeasure[person_]) - hand->measure;
  const int x = hand->CategoryOf(scored_[place]);
  if (x >= 0 && (hand->active || IsActive(status_))) Evaluate(*hand, x, values);
  return values;
}

void ObservationReader::Evaluate(const ItemInHand& hand, int x, ObservationValues& values) {
  const Evaluation model = powers_.Evaluate(hand, x, p_.data());
  const ScoreAndMaximum score = ModelScore(x, hand.tables.top, hand.tables.model);
  values.ordered = x + run_.arrays.CategoryToCode[hand.start];
  values.residual = score.score - model.expected;
  values.expected = values.ordered - values.residual;
  values.variance = model.variance;
  values.z = values.residual / std::sqrt(std::max(model.variance, kTiny));
  values.logProbability = NaturalLog(std::max(p_[static_cast<std::size_t>(x)], kTiny));
}

}  // namespace vardento
