// What is known of a single observation beside the measures: as data it was, what the model expects
// of it and how far it lies from that. Made person by person, once measures stand.
#pragma once

#include <cstdint>
#include <vector>

#include "measure/observations.h"

namespace vardento {

// The numbers of an entry that was not read (deleted, or held back) and of a response that tells
// nothing of the measures are those of an empty record.
struct ObservationValues {
  static constexpr int kMissing = 255;

  int person = 0, item = 0;
  StatusByte personStatus = 0, itemStatus = 0;
  int code = 0;       // its number in CODES=; 0: not among them, or the person was not read
  int observed = -1;  // as scored, kMissing when nothing was; -1: the person or item was not read
  // In the scale of the data with unused categories closed up; -1: none, and what follows is unset.
  int ordered = -1;
  double expected = -1;       // in the scale of `ordered`
  double variance = 0;        // of the score about its expectation, score points squared
  double z = 0;               // standardised residual
  double residual = 0;        // score points
  double logProbability = 0;  // natural logarithm, not below -30
  // B - D, logits; 0 unless both are measured. Set without a response as well.
  double difference = 0;

  bool IsExtreme() const { return !IsActive(personStatus) || !IsActive(itemStatus); }
};

// Tells of the observations of one person after the other: those of active persons on measured
// items and of measured persons on active items. Of x steps passed or failed in "S" and "F"
// residual and variance are those of the steps that the response put in play, so that residual =
// ordered - expected throughout; the probability is that of the last step passed, or of failing the
// first. Expectations, variances and residuals are those of the fit pass (Wright & Masters 1982,
// ch. 5).
class ObservationReader {
 public:
  // As measures, steps and statuses stand now.
  explicit ObservationReader(Run& run);
  // Makes a person, 1..NPERS, the one in hand. Rows that can't be read end the run.
  void Open(int person);
  // The observation of the person in hand on item 1..NI.
  ObservationValues Read(int item);

 private:
  void Evaluate(const ItemInHand& hand, int x, ObservationValues& values);

  Run& run_;
  ItemWalk walk_;
  std::vector<const ItemInHand*> hands_;  // by item, from 1; null: not measured
  PersonPowers powers_;
  std::vector<double> p_;  // categories 0..MAXCAT of the pair in hand
  int person_ = 0;
  StatusByte status_ = Status::NoResponses;
  std::vector<std::uint8_t> coded_, scored_;  // of the person, items from place 0
};

}  // namespace vardento
