// The joint maximum likelihood iteration ("UCON"): the state that its iterations share.
// EstimateJoint (measure/estimation.h) runs it.
//
// Joint maximum likelihood (Wright & Panchapakesan 1969; for ordered categories Wright & Masters
// 1982, ch. 4): the estimates are those at which every expected score and every expected category
// count equals the observed one. The literature gets there by Newton steps, residual divided by
// variance. Here each iteration evaluates every observation's expected score twice, at d = B - D
// and at d less an offset h, takes the log-odds of the expected score as linear in between, and
// moves every measure 0.7 of the way to the log-odds of its observed score. Log-odds run straight
// where scores flatten out (with dichotomies of one difficulty exactly so); a Newton step leaps too
// far there.
//
// Extreme entries are measured too, by a score that is moved in from its end by EXTRSC=.
#pragma once

#include <unordered_map>
#include <vector>

#include "measure/observations.h"
#include "run/run.h"

namespace vardento {

// What is to be matched for one person or item, and what is expected of it: weighted score points
// over the other side's active entries that it met.
struct ScoreTarget {
  double score = 0;           // S, held inside its bounds
  double maximum = 0;         // R
  double expected = 0;        // E0, at d
  double expectedOffset = 0;  // E1, at d - h
};

// The change of a person's measure that leads toward the target, logits, at most 1 either way;
// offset is h, logits. Where the curve of expected scores has no slope between the two points, one
// logit for each score point of residual; 0 when there is no number to be had.
double FindPersonStep(const ScoreTarget& target, double offset);
// The same of an item's difficulty, which falls as its score rises.
double FindItemStep(const ScoreTarget& target, double offset);

class JointIteration {
 public:
  // Ends the run when there is no memory for what it keeps of each person.
  explicit JointIteration(Run& run);
  // Moves persons (NPERS), items (NI) and steps (NCATS) once; the record says how far from the end.
  UconRecord RunIteration();
  // Steps hold and measures hold: each by the largest change (LCONV=, logits) or by the largest
  // residual (RCONV=, score points; of categories, counts).
  bool HasConverged(const UconRecord& record) const;
  // What the iteration keeps of each person.
  static std::size_t BytesFor(int persons);

 private:
  struct PersonArrays {
    Array1<float> previous;        // measures before the iteration
    Array1<std::int32_t> classOf;  // complete persons: index in classes_
    BlockPlan Plan(int persons);
  };
  // Complete persons of the same measure and score move alike: one of them is evaluated. The score
  // is all that the measure depends on (sufficiency, Rasch 1960), so there are few classes.
  struct PersonClass {
    StatusByte status = 0;
    float measure = 0;             // B, logits
    float score = 0, maximum = 0;  // score points
    double weight = 0;             // sum of pw
    double delta = 0;              // step of each, logits
    float residual = 0;            // target less expected score, score points
    std::int32_t next = -1;        // another class of the same measure
    bool IsLike(const PersonClass& other) const {
      return status == other.status && score == other.score && maximum == other.maximum;
    }
  };

  void ClearIteration();
  void SetItemTarget(int item);
  void StepPersons();
  void StepPerson(int person, StatusByte status);
  std::int32_t ClassifyPerson(int person);
  ScoreTarget AddComplete(const PersonClass& persons);
  ScoreTarget AddIncomplete(int person, StatusByte status);
  ScoreTarget AddTargeted(int person, StatusByte status);
  void SetMeasure(double measure);  // of the person in hand, for the two evaluations
  void AddExpected(const ItemInHand& hand, int x, StatusByte status, double pw,
                   ScoreTarget& target);
  void AddTargetedObservation(const ItemInHand& hand, int x, StatusByte status, double pw,
                              ScoreTarget& target);
  void HoldPersonTarget(ScoreTarget& target, StatusByte status) const;
  void MovePerson(int person, StatusByte status, double delta, float residual);
  void CentrePersons();
  void StepItems();
  ScoreTarget ItemTarget(int item) const;
  void CentreItems();
  void KeepChange(float change);

  Run& run_;
  double offset_ = 2.0;        // h, logits: wide at first, then the largest change of a measure
  double targetMargin_;        // for TARGET=Y, score points
  int iteration_ = 0;          // begun
  bool targeted_;              // TARGET=Y
  StatusByte perfect_, zero_;  // status of an extreme person at the highest and lowest score; an
                               // extreme item has them the other way round
  ItemWalk walk_;              // difficulties as they were before the iteration
  PersonPowers here_, below_;  // at B and at B - h
  std::vector<double> p_;      // categories 0..MAXCAT of one pair

  // By item, 1..NI, over the active persons, weighted by pw: expected scores at d and d - h; the
  // score and maximum to be matched. Score points; under TARGET=Y each times its variance.
  Vector1<double> itemExpected_, itemExpectedOffset_, itemScore_, itemMaximum_;
  // By category position, 1..NCATS, over active persons on active items, by the pairs' weights:
  // expected count (or passes of the step), count to be matched.
  Vector1<double> categoryExpected_, categoryTarget_;
  Vector1<float> previousItem_;  // difficulties before the iteration
  MemoryBlock block_;
  PersonArrays persons_;

  std::vector<PersonClass> classes_;
  std::unordered_map<std::uint32_t, std::int32_t> classIndex_;  // by the bits of the measure

  // Of the iteration in hand.
  UconRecord record_;
  // The largest, signed, score points; 32-bit, so that rounding does not break a tie.
  float personResidual_ = 0, itemResidual_ = 0;
  double centreSum_ = 0, centreWeight_ = 0;  // of the active entries of the side that is centred
};

}  // namespace vardento
