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

// The category that observations of each group are taken to be in where steps are judged one by
// one. Which steps are in play depends on what was observed, and nothing was: it is the category
// that the score would give on the average.
int CategoryOfScore(int top, double target, double maximum) {
  return std::clamp(static_cast<int>(std::lround(top * target / maximum)), 0, std::max(top, 0));
}

// Steps below the one that was passed were not in play, yet count in the score.
int UnplayedSteps(const GroupModelTables& tables, int x) {
  const bool mirrored = tables.IsSequential() && tables.model == Model::Failures;
  return mirrored ? std::max(x - 1, 0) : 0;
}

// The score of a person that is expected on the active items.
class CurveOverItems {
 public:
  explicit CurveOverItems(const Run& run)
      : walk_(MakeItemWalk(run)),
        powers_(walk_.largestTop),
        p_(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0) {}

  void SetScore(double target, double maximum) {
    target_ = target;
    maximum_ = maximum;
  }
  // At the measure (logits); leaves the information there.
  double At(double measure) {
    double expected = 0;
    information_ = 0;
    powers_.Set(measure);
    for (const ItemInHand& hand : walk_.active) {
      if (!(hand.weight > 0)) continue;
      const bool sequential = hand.tables.IsSequential();
      const int x = sequential ? CategoryOfScore(hand.tables.top, target_, maximum_) : 0;
      const Evaluation here = powers_.Evaluate(hand, x, p_.data());
      expected += (here.expected + UnplayedSteps(hand.tables, x)) * hand.weight;
      information_ += here.variance * hand.weight;
    }
    return expected;
  }
  double Information() const { return information_; }

 private:
  ItemWalk walk_;
  PersonPowers powers_;
  std::vector<double> p_;  // categories 0..MAXCAT
  double target_ = 0, maximum_ = 1;
  double information_ = 0;
};

// The score of an item of one group that is expected of the active persons.
class CurveOverPersons {
 public:
  CurveOverPersons(const Run& run, int group, double target, double maximum)
      : tables_(TablesOfGroup(run.arrays, group)),
        x_(CategoryOfScore(tables_.top, target, maximum)),
        p_(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0) {
    persons_.reserve(static_cast<std::size_t>(run.NPERS));
    for (int n = 1; n <= run.NPERS; ++n) {
      const double weight = PersonWeightOf(run, n);
      if (!IsActive(run.arrays.PersonStatus[n]) || !(weight > 0)) continue;
      persons_.push_back({run.arrays.PersonMeasure[n], weight});
    }
  }
  double At(double measure) {
    double expected = 0;
    information_ = 0;
    for (const auto& [person, weight] : persons_) {
      const Evaluation here = Evaluate(person - measure, tables_, x_, p_.data());
      expected += (here.expected + UnplayedSteps(tables_, x_)) * weight;
      information_ += here.variance * weight;
    }
    return expected;
  }
  double Information() const { return information_; }

 private:
  struct Person {
    double measure, weight;  // logits
  };
  GroupModelTables tables_;
  int x_;
  std::vector<double> p_;  // categories 0..MAXCAT
  std::vector<Person> persons_;
  double information_ = 0;
};

// From a measure in logits to one in logits, with the information there left in the curve.
template <class Curve>
double SolveScore(Curve& curve, const SolverForm& form, double measure, double target,
                  double maximum) {
  ScoreBracket bracket(form, target, maximum);
  for (int loop = 0; loop < kLoopLimit; ++loop) {
    const double here = measure;
    const double expected = std::min(curve.At(here), maximum);
    bracket.Add({here, expected});
    measure = bracket.Next();
    if (!bracket.IsComplete()) continue;
    if (measure == here) break;
    const bool scoreHolds = std::fabs(expected - target) <= form.limit;
    if (scoreHolds && (std::fabs(measure - here) <= form.limit || bracket.IsBeyondEnd())) break;
  }
  return measure;
}

// In user units. PAIRED=Y: every comparison stands in the data twice, so half of the information is
// there.
ScoreMeasure Report(const Run& run, const UserScale& scale, double measure, double information) {
  const double error = StandardError(std::fabs(information));
  const bool paired = run.settings.PAIRED;
  return {scale.Measure(measure), scale.Error(error),
          static_cast<float>(paired ? 0.5 * information : information)};
}

}  // namespace

class PersonScoreSolver::Curve : public CurveOverItems {
  using CurveOverItems::CurveOverItems;
};

PersonScoreSolver::PersonScoreSolver(const Run& run)
    : run_(run), curve_(std::make_unique<Curve>(run)) {}
PersonScoreSolver::~PersonScoreSolver() = default;

ScoreMeasure PersonScoreSolver::Solve(float start, double score, double maximum) {
  const UserScale own(run_, Facet::Persons);
  const double target = HoldInside(score, maximum, run_.settings.EXTRSC);
  curve_->SetScore(target, maximum);
  const double measure = SolveScore(*curve_, kPersonForm, own.ToLogits(start), target, maximum);
  return Report(run_, own, measure, curve_->Information());
}

ScoreMeasure MeasureForPersonScore(const Run& run, float start, double score, double maximum) {
  return PersonScoreSolver(run).Solve(start, score, maximum);
}

ScoreMeasure MeasureForItemScore(const Run& run, int group, float start, double score,
                                 double maximum) {
  const UserScale own(run, Facet::Items);
  const double target = HoldInside(score, maximum, run.settings.EXTRSC);
  CurveOverPersons curve(run, group, target, maximum);
  const double measure = SolveScore(curve, kItemForm, own.ToLogits(start), target, maximum);
  return Report(run, own, measure, curve.Information());
}

}  // namespace vardento
