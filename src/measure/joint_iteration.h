// The joint maximum likelihood iteration ("UCON"): the state that its iterations share.
// EstimateJoint (measure/estimation.h) runs it.
//
// Each iteration evaluates every observation's expected score twice, at d = B - D and at d less an
// offset h, takes the log-odds of the expected score as linear in between, and moves every measure
// 0.7 of the way to the log-odds of its observed score.
#pragma once

#include <unordered_map>
#include <vector>

#include "measure/observations.h"
#include "run/run.h"

namespace vardento {

// What is to be matched for one person or item, and what is expected of it.
struct ScoreTarget {
  double score = 0;           // S, held inside its bounds
  double maximum = 0;         // R
  double expected = 0;        // E0, at d
  double expectedOffset = 0;  // E1, at d - h
};

// The change of a person's measure that leads toward the target, at most 1 logit.
double FindPersonStep(const ScoreTarget& target, double offset);
double FindItemStep(const ScoreTarget& target, double offset);

class JointIteration {
 public:
  explicit JointIteration(Run& run);
  UconRecord RunIteration();
  bool HasConverged(const UconRecord& record) const;
  // What the iteration keeps of each person.
  static std::size_t BytesFor(int persons);

 private:
  // Complete persons of the same measure and score move alike: one of them is evaluated.
  struct PersonClass {
    StatusByte status = 0;
    float measure = 0;
    float score = 0, maximum = 0;
    double weight = 0;
    double delta = 0;
    float residual = 0;
    std::int32_t next = -1;  // another class of the same measure
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
  double offset_ = 2.0;  // h, logits
  double targetMargin_;  // for TARGET=Y, score points
  int iteration_ = 0;
  bool targeted_;              // TARGET=Y
  StatusByte perfect_, zero_;  // status of an extreme person at the highest and lowest score; an
                               // extreme item has them the other way round
  ItemWalk walk_;
  PersonPowers here_, below_;  // at B and at B - h
  std::vector<double> p_;      // categories 0..MAXCAT of one pair

  // By item, 1..NI: expected scores at d and d - h; the score and maximum to be matched.
  Vector1<double> itemExpected_, itemExpectedOffset_, itemScore_, itemMaximum_;
  // By category position, 1..NCATS: expected count (or passes of the step), count to be matched.
  Vector1<double> categoryExpected_, categoryTarget_;
  Vector1<float> previousItem_;  // difficulties before the iteration
  MemoryBlock block_;
  Array1<float> previousPerson_;  // measures before the iteration

  std::vector<PersonClass> classes_;
  Array1<std::int32_t> classOfPerson_;  // complete persons: index in classes_
  std::unordered_map<std::uint32_t, std::int32_t> classIndex_;  // by the bits of the measure

  // Of the iteration in hand.
  UconRecord record_;
  float personResidual_ = 0, itemResidual_ = 0;  // 32-bit, so that rounding does not break a tie
  double centreSum_ = 0, centreWeight_ = 0;
};

}  // namespace vardento
