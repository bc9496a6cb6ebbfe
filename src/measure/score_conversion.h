// Every raw score on the complete test with its measure, and how the sample spreads over the
// scores: what the score Table, its ogive, the sample norms and the score file say, and what a
// picture of them is drawn from. Made from final measures, once the fit pass is over; nothing is
// changed.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "measure/score_measure.h"
#include "platform/memory.h"
#include "run/run.h"

namespace vardento {

// The scores that are possible on all active items. Weights can make them absurd.
struct CompleteTest {
  long long top = 0;     // largest score, counted from 0 as the categories are; weighted, rounded
  long long bottom = 0;  // the sum of the lowest codes: added to a score where it is shown
  double reachable = 0;  // as `top`, or the sum itself when rounding made more of it
  int items = 0;         // active ones
  bool approximated = false;  // a model that takes steps one after the other is among the items

  // False when nothing could be shown, or nobody could wait for it.
  bool IsWithinReach() const;
};

CompleteTest FindCompleteTest(const Run& run);

// Where the search for a score's measure begins. Answers are good to a hundredth of a logit, so
// that the last digit shown hangs on it.
enum class SolvingOrder {
  InThirds,  // three runs of scores, each from the measure of the score below in its run
  Rising,    // from the measure plus the standard error of the score below
};

struct ScoreConversion {
  CompleteTest test;
  std::vector<ScoreMeasure> scores;  // of 0 to top; the ends moved in by EXTRSC=

  int Top() const { return static_cast<int>(scores.size()) - 1; }
  const ScoreMeasure& Lowest() const { return scores.front(); }
  const ScoreMeasure& Highest() const { return scores.back(); }
  bool IsExtreme(int score) const { return score == 0 || score == Top(); }
  long long Shown(int score) const { return score + test.bottom; }
};

// Scores in a third of the run 0 to `top`; the last third may be shorter, or empty.
int ScoresInThird(int top);

// `test`: within reach. Moves the progress bar score by score; a stop by the user leaves no scores.
ScoreConversion ConvertScores(Run& run, const CompleteTest& test, SolvingOrder order);

// One score in the sample.
struct ScoreNorm {
  bool normed = false;                // the sample spreads, and the next two are known
  double measure = 0, error = 0;      // on a scale where persons have a mean of 500, S.D. 100
  int frequency = 0, cumulative = 0;  // persons at the score, and up to it
  double percent = 0, cumulativePercent = 0;
  double percentile = 0;  // half of those at the score count as below it; 1 to 99 for a score that
                          // somebody has
};

// The persons with a measure, extreme ones too, each at the score of the nearest measure.
class SampleNorms {
 public:
  enum class Outcome { Made, NoMemory, OutOfOrder };

  // `conversion`: must outlive this. OutOfOrder: a person's measure can't be placed among those of
  // the scores.
  Outcome Make(Run& run, const ScoreConversion& conversion);
  ScoreNorm At(int score) const;

 private:
  const ScoreConversion* conversion_ = nullptr;
  MemoryBlock block_;
  Array1<std::int32_t> cumulative_;  // persons up to each score: of score s at s + 1
  int persons_ = 0;
  double mean_ = 0, sd_ = 0;  // of the active persons, user units; no S.D.: all at one place
};

// The score whose measure is nearest to `measure`, the lower of two equally near ones; nothing when
// there is none. `direction`: 1 when measures rise with the scores, -1 when they fall.
std::optional<int> NearestScore(const std::vector<ScoreMeasure>& scores, double measure,
                                double direction);

}  // namespace vardento
