#include "measure/score_measure.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "measure/category_model.h"
#include "measure/fit_statistics.h"
#include "measure/observations.h"
#include "run/user_scale.h"

namespace vardento {

namespace {

constexpr int kLoopLimit = 1000;             // a score out of reach ends the search
constexpr double kFlat = 1e-9;               // of the maximum: closer scores differ by rounding

// One entry of the other side.
struct OtherEntry {
  double measure = 0;  // logits
  double weight = 1;
  int group = 0;
};

// A group's scale, and the category that an observation is taken to be in for a sequential one.
struct ScoredScale {
  GroupModelTables tables;
  int x = 0;
};

struct Point {
  double measure = 0;  // logits
  double score = -1;   // below 0: not known yet
  bool IsKnown() const { return score >= 0; }
};

// How the two solvers differ.
struct SolverForm {
  double upward;  // of the way to a higher score: 1 for a person's measure, -1 for an item's
  double limit;   // of the last change, logits, and of the last residual, score points
  bool bisects;   // or interpolates the log-odds of the score
};
constexpr SolverForm kPersonForm{1, 0.01, true};
constexpr SolverForm kItemForm{-1, 0.1, false};

// Two points on the curve of expected scores that the target lies between, or beyond both.
class ScoreBracket {
 public:
  ScoreBracket(const SolverForm& form, double target, double maximum)
      : form_(form), target_(target), maximum_(maximum), wanted_(LogOdds(target)) {}

  bool IsComplete() const { return high_.IsKnown(); }
  // The curve has run out without reaching the target, which lies beyond its end.
  bool IsBeyondEnd() const {
    if (high_.score - low_.score > kFlat * maximum_) return false;
    return high_.score < maximum_ / 2 ? target_ < low_.score : target_ > high_.score;
  }

  // The ends keep their order by measure: far out, where the curve is flat, scores differ by
  // rounding alone.
  void Add(Point point) {
    if (!low_.IsKnown()) {
      low_ = point;
    } else if (!high_.IsKnown()) {
      high_ = point;
      if (low_.score >= target_) std::swap(low_, high_);
    } else if (point.score >= target_) {
      if (target_ < low_.score) high_ = low_;
      (target_ < low_.score ? low_ : high_) = point;
    } else {
      if (target_ > high_.score) low_ = high_;
      (target_ > high_.score ? high_ : low_) = point;
    }
  }

  // Where to look next: a logit further toward the target until two points lie on either side of
  // it, then between them.
  double Next() const {
    if (!IsComplete()) return low_.measure + (low_.score < target_ ? form_.upward : -form_.upward);
    if (target_ > high_.score) return high_.measure + form_.upward;
    if (target_ < low_.score) return low_.measure - form_.upward;
    const double distance = high_.measure - low_.measure;
    const double low = LogOdds(low_.score), high = LogOdds(high_.score);
    if (form_.bisects || !(high - low > kTiny)) return low_.measure + distance / 2;
    return low_.measure + distance * (wanted_ - low) / (high - low);
  }

 private:
  double LogOdds(double score) const { return SafeLogOdds(score, maximum_ - score); }

  SolverForm form_;
  double target_, maximum_;  // score points
  double wanted_;            // log-odds of the target
  Point low_, high_;         // toward the lower and the higher score
};

class ScoreSolver {
 public:
  ScoreSolver(const Run& run, const SolverForm& form, double score, double maximum)
      : form_(form),
        maximum_(maximum),
        target_(HoldInside(score, maximum, run.settings.EXTRSC)),
        scales_(static_cast<std::size_t>(run.NGROUPS) + 1),
        p_(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0) {
    for (int g = 1; g <= run.NGROUPS; ++g) {
      ScoredScale& scale = scales_[static_cast<std::size_t>(g)];
      scale.tables = TablesOfGroup(run.arrays, g);
      // Which steps are in play depends on what was observed, and nothing was: the category is
      // taken that the score would give on the average.
      const double share = scale.tables.top * target_ / maximum;
      scale.x = std::clamp(static_cast<int>(std::lround(share)), 0, std::max(scale.tables.top, 0));
    }
  }

  void Reserve(int count) { others_.reserve(static_cast<std::size_t>(count)); }
  void AddOther(double measure, double weight, int group) {
    if (weight > 0) others_.push_back({measure, weight, group});
  }

  // From a measure in logits to one in logits.
  double Solve(double measure) {
    ScoreBracket bracket(form_, target_, maximum_);
    for (int loop = 0; loop < kLoopLimit; ++loop) {
      const double here = measure;
      const double expected = std::min(Expect(here), maximum_);
      bracket.Add({here, expected});
      measure = bracket.Next();
      if (!bracket.IsComplete()) continue;
      if (measure == here) break;
      const bool scoreHolds = std::fabs(expected - target_) <= form_.limit;
      if (scoreHolds && (std::fabs(measure - here) <= form_.limit || bracket.IsBeyondEnd())) break;
    }
    return measure;
  }

  double Information() const { return information_; }

 private:
  // The expected score at the measure (logits); leaves the information there.
  double Expect(double measure) {
    double expected = 0;
    information_ = 0;
    for (const OtherEntry& other : others_) {
      const ScoredScale& scale = scales_[static_cast<std::size_t>(other.group)];
      const double d = (measure - other.measure) * form_.upward;
      const Evaluation here = Evaluate(d, scale.tables, scale.x, p_.data());
      // Steps below the one that was passed were not in play, yet count in the score.
      const bool mirrored = scale.tables.IsSequential() && scale.tables.model == Model::Failures;
      const int unplayed = mirrored ? std::max(scale.x - 1, 0) : 0;
      expected += (here.expected + unplayed) * other.weight;
      information_ += here.variance * other.weight;
    }
    return expected;
  }

  SolverForm form_;
  double maximum_, target_;
  std::vector<ScoredScale> scales_;  // by group
  std::vector<OtherEntry> others_;   // active, with a weight
  std::vector<double> p_;            // categories 0..MAXCAT
  double information_ = 0;           // at the last measure tried
};

// In user units. PAIRED=Y: every comparison stands in the data twice, so half of the information is
// there.
ScoreMeasure Report(const Run& run, const UserScale& scale, double measure, double information) {
  const double error = StandardError(std::fabs(information));
  const bool paired = run.settings.PAIRED;
  return {scale.Measure(measure), scale.Error(error),
          static_cast<float>(paired ? 0.5 * information : information)};
}

}  // namespace

ScoreMeasure MeasureForPersonScore(const Run& run, float start, double score, double maximum) {
  const UserScale own(run, Facet::Persons);
  ScoreSolver solver(run, kPersonForm, score, maximum);
  const RunArrays& arrays = run.arrays;
  solver.Reserve(run.settings.NI);
  for (int i = run.settings.NI; i >= 1; --i) {
    if (!IsActive(arrays.ItemStatus[i])) continue;
    solver.AddOther(arrays.ItemMeasure[i], ItemWeightOf(run, i), arrays.ItemGroup[i]);
  }
  const double measure = solver.Solve(own.ToLogits(start));
  return Report(run, own, measure, solver.Information());
}

ScoreMeasure MeasureForItemScore(const Run& run, int group, float start, double score,
                                 double maximum) {
  const UserScale own(run, Facet::Items);
  ScoreSolver solver(run, kItemForm, score, maximum);
  solver.Reserve(run.NPERS);
  for (int n = 1; n <= run.NPERS; ++n) {
    if (!IsActive(run.arrays.PersonStatus[n])) continue;
    solver.AddOther(run.arrays.PersonMeasure[n], PersonWeightOf(run, n), group);
  }
  const double measure = solver.Solve(own.ToLogits(start));
  return Report(run, own, measure, solver.Information());
}

}  // namespace vardento
