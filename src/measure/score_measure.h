// Score to measure: the measure of a raw score that need not belong to anybody. Two solvers of one
// form, for a person's score over the active items and an item's score over the active persons.
// They work on final measures, once the fit pass is over: the maximum likelihood estimate of one
// measure with the other side taken as known, where the expected score is the score (Wright &
// Panchapakesan 1969), found by bracketing, since expected scores change
// with the measure in one direction alone. Nothing is changed, and nothing fails: a score that the
// curve does not reach is answered with where the search ended.
#pragma once

#include <memory>

#include "run/run.h"

namespace vardento {

struct ScoreMeasure {
  float measure = 0;      // user units
  float error = 0;        // standard error, user units, positive
  float information = 0;  // Fisher's, per squared logit; the error is 1 / sqrt(information)
};

// The measure of a person with this raw score on the active items, found by bisection to 0.01
// logits and 0.01 score points. `start`: where the search begins, user units. `maximum`: the
// largest possible score, above 0. Scores count from 0, as the items' weights have them. A score
// within EXTRSC= of either end is moved in from it, so that 0 and the maximum have measures too.
ScoreMeasure MeasureForPersonScore(const Run& run, float start, double score, double maximum);

// The same for many scores: what the items need is prepared once. Good as long as measures, steps
// and statuses stand still.
class PersonScoreSolver {
 public:
  explicit PersonScoreSolver(const Run& run);
  ~PersonScoreSolver();
  ScoreMeasure Solve(float start, double score, double maximum);

 private:
  class Curve;
  const Run& run_;
  std::unique_ptr<Curve> curve_;
};

// The difficulty of an item of the group with this raw score on the active persons, found by
// interpolation of the log-odds of the score, which are nearly straight in the difficulty, to a
// tenth of a logit and of a score point.
ScoreMeasure MeasureForItemScore(const Run& run, int group, float start, double score,
                                 double maximum);

}  // namespace vardento
