#include "measure/joint_iteration.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "data/work_files.h"
#include "measure/estimation.h"
#include "measure/step_update.h"
#include "run/messages.h"

namespace vardento {

namespace {

// Of the distance to the target this much is travelled: persons and items move in one iteration,
// each as if the other side stood still, and whole steps of both would overshoot.
constexpr double kDamping = 0.7;
constexpr double kSmallestOffset = 0.01;  // logits: closer together two log-odds differ by rounding
constexpr int kIterationLimit = 32000;

// A measure that diverges is held back to 1 logit in an iteration.
double LimitStep(double delta) {
  if (!std::isfinite(delta)) return 0;
  while (std::fabs(delta) > 1) delta *= 0.9;
  return delta;
}

// Under TARGET=Y an entry at the top or bottom takes the bound itself. Scores are sums of variances
// there, which can be small: of less than two margins the half is the bound.
double HoldTargeted(double score, double maximum, double margin, bool top, bool bottom) {
  const double half = maximum / 2;
  const double low = std::min(margin, half);
  const double high = std::max(maximum - margin, half);
  if (top) return high;
  if (bottom) return low;
  return std::min(std::max(score, low), high);
}

}  // namespace

// a / b is the ratio of the odds of the two expected scores, so ln(a / b) / h the slope of their
// log-odds; the distance is that to the log-odds of the target.
double FindPersonStep(const ScoreTarget& t, double offset) {
  const double a = (t.maximum - t.expectedOffset) * t.expected;
  const double b = (t.maximum - t.expected) * t.expectedOffset;
  if (b <= 0 || a - b <= kTiny) return LimitStep(t.score - t.expected);
  const double slope = NaturalLog(a / b);
  if (!(slope > 0)) return LimitStep(t.score - t.expected);
  const double distance =
      SafeLogOdds((t.maximum - t.expected) * t.score, (t.maximum - t.score) * t.expected);
  return LimitStep(kDamping * offset * distance / slope);
}

// d less h is a difficulty of h more: `below` belongs to D + h.
double FindItemStep(const ScoreTarget& t, double offset) {
  const double here = SafeLogOdds(t.expected, t.maximum - t.expected);
  const double below = SafeLogOdds(t.expectedOffset, t.maximum - t.expectedOffset);
  if (std::fabs(here - below) < kTiny) return LimitStep(t.expected - t.score);
  const double wanted = SafeLogOdds(t.score, t.maximum - t.score);
  return LimitStep(kDamping * offset * (wanted - here) / (below - here));
}

JointIteration::JointIteration(Run& run)
    : run_(run),
      targetMargin_(0.25 * run.settings.EXTRSC),
      targeted_(run.settings.TARGET),
      perfect_(run.settings.USCALE > 0 ? Status::ExtremeHigh : Status::ExtremeLow),
      zero_(run.settings.USCALE > 0 ? Status::ExtremeLow : Status::ExtremeHigh),
      here_(std::max(run.results.largestGroupTop, 1)),
      below_(std::max(run.results.largestGroupTop, 1)),
      p_(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0) {
  itemScore_.Assign(run.settings.NI);
  itemMaximum_.Assign(run.settings.NI);
  for (int i = 1; i <= run.settings.NI; ++i) SetItemTarget(i);
  previousItem_.Assign(run.settings.NI);
  TakeBlock(run, persons_.Plan(run.NPERS), block_, run.NPERS, run.settings.PERSONS_LABEL);
}

BlockPlan JointIteration::PersonArrays::Plan(int persons) {
  BlockPlan plan;
  plan.Add(previous, persons).Add(classOf, persons);
  return plan;
}

std::size_t JointIteration::BytesFor(int persons) { return PersonArrays().Plan(persons).Bytes(); }

void JointIteration::SetItemTarget(int item) {
  itemScore_[item] = targeted_ ? 0 : run_.arrays.ItemModelScore[item];
  itemMaximum_[item] = targeted_ ? 0 : run_.arrays.ItemModelMax[item];
}

void JointIteration::ClearIteration() {
  record_ = UconRecord();
  record_.iteration = iteration_;
  personResidual_ = itemResidual_ = 0;
  itemExpected_.Assign(run_.settings.NI);
  itemExpectedOffset_.Assign(run_.settings.NI);
  categoryExpected_.Assign(run_.NCATS);
  categoryTarget_.Assign(run_.NCATS);
  if (targeted_) {
    for (int i = 1; i <= run_.settings.NI; ++i) SetItemTarget(i);
  } else {
    for (int p = 1; p <= run_.NCATS; ++p) {
      categoryTarget_[p] = run_.arrays.CategoryCount[p];
    }
  }
  walk_ = MakeItemWalk(run_);
  classes_.clear();
  classIndex_.clear();
}

UconRecord JointIteration::RunIteration() {
  ++iteration_;
  ClearIteration();
  StepPersons();
  CentrePersons();
  StepItems();
  CentreItems();
  const StepChange steps = UpdateSteps(run_, categoryExpected_, categoryTarget_);
  record_.stepChange = steps.change;
  if (steps.change != 0) {
    record_.categoryCode = steps.code;
    record_.categoryResidual = steps.residual;
  }
  record_.personIsWorse = std::fabs(itemResidual_) <= std::fabs(personResidual_);
  record_.scoreResidual = record_.personIsWorse ? personResidual_ : itemResidual_;
  // As far as measures still move: the secant becomes the tangent where it matters.
  offset_ = std::max(static_cast<double>(std::fabs(record_.measureChange)), kSmallestOffset);
  return record_;
}

// A person with missing responses, or judged step by step, is evaluated alone; the complete ones by
// class, since what is expected of them depends on their measure only.
void JointIteration::StepPersons() {
  RunArrays& arrays = run_.arrays;
  centreSum_ = centreWeight_ = 0;
  for (int n = 1; n <= run_.NPERS; ++n) {
    if (HasCompleteFlag(arrays.PersonStatus[n])) {
      persons_.classOf[n] = ClassifyPerson(n);
    }
  }
  for (PersonClass& persons : classes_) {
    const ScoreTarget target = AddComplete(persons);
    persons.delta = FindPersonStep(target, offset_);
    persons.residual = static_cast<float>(target.score - target.expected);
  }
  for (int n = 1; n <= run_.NPERS; ++n) {
    const StatusByte status = WithoutCompleteFlag(arrays.PersonStatus[n]);
    if (IsMeasured(status)) StepPerson(n, status);
    ShowProgress(run_, n, run_.NPERS);
  }
}

void JointIteration::StepPerson(int person, StatusByte status) {
  if (HasCompleteFlag(run_.arrays.PersonStatus[person])) {
    const auto index = persons_.classOf[person];
    const PersonClass& persons = classes_[static_cast<std::size_t>(index)];
    MovePerson(person, status, persons.delta, persons.residual);
    return;
  }
  const ScoreTarget target =
      targeted_ ? AddTargeted(person, status) : AddIncomplete(person, status);
  MovePerson(person, status, FindPersonStep(target, offset_),
             static_cast<float>(target.score - target.expected));
}

// The bits of the measure are the key: equal measures alone make equal expectations.
std::int32_t JointIteration::ClassifyPerson(int person) {
  const PersonScores record = ReadPersonScores(run_, person);
  PersonClass persons;
  persons.status = WithoutCompleteFlag(run_.arrays.PersonStatus[person]);
  persons.measure = run_.arrays.PersonMeasure[person];
  persons.score = record.modelScore;
  persons.maximum = record.modelMax;
  const auto fresh = static_cast<std::int32_t>(classes_.size());
  std::uint32_t bits = 0;
  std::memcpy(&bits, &persons.measure, sizeof bits);
  const auto [entry, isNew] = classIndex_.try_emplace(bits, fresh);
  std::int32_t index = entry->second;
  while (!isNew && index >= 0 && !classes_[static_cast<std::size_t>(index)].IsLike(persons)) {
    index = classes_[static_cast<std::size_t>(index)].next;
  }
  if (isNew || index < 0) {
    if (!isNew) persons.next = entry->second;
    entry->second = index = fresh;
    classes_.push_back(persons);
  }
  classes_[static_cast<std::size_t>(index)].weight += PersonWeightOf(run_, person);
  return index;
}

// A whole class at once: to the items and categories it weighs as much as its persons together, to
// itself as one of them. x does not matter, as all letters are "R" where anybody is complete.
ScoreTarget JointIteration::AddComplete(const PersonClass& persons) {
  ScoreTarget target{persons.score, persons.maximum, 0, 0};
  SetMeasure(persons.measure);
  for (const ItemInHand& hand : walk_.For(persons.status)) {
    AddExpected(hand, 0, persons.status, persons.weight, target);
  }
  HoldPersonTarget(target, persons.status);
  return target;
}

ScoreTarget JointIteration::AddIncomplete(int person, StatusByte status) {
  const PersonScores record = ReadPersonScores(run_, person);
  ScoreTarget target{record.modelScore, record.modelMax, 0, 0};
  const std::uint8_t* row = ReadScoredRow(run_, person);
  SetMeasure(run_.arrays.PersonMeasure[person]);
  const double pw = PersonWeightOf(run_, person);
  for (const ItemInHand& hand : walk_.For(status)) {
    const int x = hand.CategoryOf(row[hand.item - 1]);
    if (x >= 0) AddExpected(hand, x, status, pw, target);
  }
  HoldPersonTarget(target, status);
  return target;
}

void JointIteration::SetMeasure(double measure) {
  here_.Set(measure);
  below_.Set(measure - offset_);
}

// One observation's share of the likelihood equations, at d and at d - h. As in the start values,
// each sum takes the other side's active entries alone.
void JointIteration::AddExpected(const ItemInHand& hand, int x, StatusByte status, double pw,
                                 ScoreTarget& target) {
  const int item = hand.item;
  double* const p = p_.data();
  const double expected = here_.Expect(hand, x, p);
  if (IsActive(status)) {
    itemExpected_[item] += expected * pw;
    if (hand.active) {
      double* const counts = &categoryExpected_[hand.start];
      const double w = pw * hand.pairFactor;
      for (int k = hand.tables.top; k >= 0; --k) counts[k] += p[k] * w;
    }
  }
  if (hand.active) target.expected += expected * hand.weight;
  const double below = below_.Expect(hand, x, p);
  if (IsActive(status)) itemExpectedOffset_[item] += below * pw;
  if (hand.active) target.expectedOffset += below * hand.weight;
}

ScoreTarget JointIteration::AddTargeted(int person, StatusByte status) {
  ScoreTarget target;
  const std::uint8_t* row = ReadScoredRow(run_, person);
  SetMeasure(run_.arrays.PersonMeasure[person]);
  const double pw = PersonWeightOf(run_, person);
  for (const ItemInHand& hand : walk_.For(status)) {
    const int x = hand.CategoryOf(row[hand.item - 1]);
    if (x >= 0) AddTargetedObservation(hand, x, status, pw, target);
  }
  HoldPersonTarget(target, status);
  return target;
}

// TARGET=Y: every observation counts by its own variance V, the information in it: those far off
// target weigh little, as in the robust estimates of Mislevy & Bock 1982, whose weights are others.
// These weights change with the measures, so targets are made anew in each iteration and no
// likelihood is maximised. V stays as it is at d for the evaluation at d - h.
void JointIteration::AddTargetedObservation(const ItemInHand& hand, int x, StatusByte status,
                                            double pw, ScoreTarget& target) {
  const int item = hand.item;
  double* const p = p_.data();
  const Evaluation here = here_.Evaluate(hand, x, p);
  const double v = here.variance;
  // "F" with nothing passed had all steps in play; ModelScore counts it so as well.
  const ScoreAndMaximum model = ModelScore(x, hand.tables.top, hand.tables.model);
  const double scored = model.score * v;
  const double possible = model.maximum * v;
  if (IsActive(status)) {
    itemScore_[item] += scored * pw;
    itemMaximum_[item] += possible * pw;
    itemExpected_[item] += here.expected * v * pw;
    if (hand.active) {
      const double w = pw * hand.pairFactor;
      categoryTarget_[hand.start + x] += v * w;
      double* const counts = &categoryExpected_[hand.start];
      for (int k = hand.tables.top; k >= 0; --k) counts[k] += p[k] * v * w;
    }
  }
  if (hand.active) {
    target.score += scored * hand.weight;
    target.maximum += possible * hand.weight;
    target.expected += here.expected * v * hand.weight;
  }
  const double below = below_.Expect(hand, x, p) * v;
  if (IsActive(status)) itemExpectedOffset_[item] += below * pw;
  if (hand.active) target.expectedOffset += below * hand.weight;
}

void JointIteration::HoldPersonTarget(ScoreTarget& target, StatusByte status) const {
  target.score = targeted_ ? HoldTargeted(target.score, target.maximum, targetMargin_,
                                          status == perfect_, status == zero_)
                           : HoldInside(target.score, target.maximum, run_.settings.EXTRSC);
}

void JointIteration::MovePerson(int person, StatusByte status, double delta, float residual) {
  float& b = run_.arrays.PersonMeasure[person];
  persons_.previous[person] = b;
  if (!IsFree(status)) return;
  if (std::fabs(residual) > std::fabs(personResidual_)) {
    personResidual_ = residual;
    record_.person = person;
  }
  b = static_cast<float>(b + delta);
  if (status == Status::Active && CentresOnPersons(run_)) {
    centreSum_ += b * PersonWeightOf(run_, person);
    centreWeight_ += PersonWeightOf(run_, person);
  }
}

// Of two as large the later stays.
void JointIteration::KeepChange(float change) {
  if (std::fabs(change) >= std::fabs(record_.measureChange)) record_.measureChange = change;
}

// The largest change is taken behind centring: a shift of everybody is none.
void JointIteration::CentrePersons() {
  const double mean = centreWeight_ == 0 ? 0 : centreSum_ / centreWeight_;
  for (int n = 1; n <= run_.NPERS; ++n) {
    if (!IsFree(WithoutCompleteFlag(run_.arrays.PersonStatus[n]))) continue;
    float& b = run_.arrays.PersonMeasure[n];
    b = static_cast<float>(b - mean);
    KeepChange(b - persons_.previous[n]);
  }
}

ScoreTarget JointIteration::ItemTarget(int item) const {
  const StatusByte status = run_.arrays.ItemStatus[item];
  ScoreTarget target{itemScore_[item], itemMaximum_[item], itemExpected_[item],
                     itemExpectedOffset_[item]};
  // The extremes of an item are turned: the lowest difficulty is the highest score.
  target.score = targeted_ ? HoldTargeted(target.score, target.maximum, targetMargin_,
                                          status == zero_, status == perfect_)
                           : HoldInside(target.score, target.maximum, run_.settings.EXTRSC);
  return target;
}

void JointIteration::StepItems() {
  centreSum_ = centreWeight_ = 0;
  for (int i = run_.settings.NI; i >= 1; --i) {
    const StatusByte status = run_.arrays.ItemStatus[i];
    if (!IsFree(status)) continue;
    const ScoreTarget target = ItemTarget(i);
    float& d = run_.arrays.ItemMeasure[i];
    previousItem_[i] = d;
    const auto residual = static_cast<float>(target.score - target.expected);
    if (std::fabs(residual) > std::fabs(itemResidual_)) {
      itemResidual_ = residual;
      record_.item = i;
    }
    d = static_cast<float>(d + FindItemStep(target, offset_));
    if (status == Status::Active && CentresOnItems(run_)) {
      centreSum_ += d * ItemWeightOf(run_, i);
      centreWeight_ += ItemWeightOf(run_, i);
    }
  }
}

void JointIteration::CentreItems() {
  const double mean = centreWeight_ == 0 ? 0 : centreSum_ / centreWeight_;
  for (int i = run_.settings.NI; i >= 1; --i) {
    if (!IsFree(run_.arrays.ItemStatus[i])) continue;
    float& d = run_.arrays.ItemMeasure[i];
    d = static_cast<float>(d - mean);
    KeepChange(d - previousItem_[i]);
  }
}

// Changes or residuals, either is enough: a large sample leaves residuals that move nothing, and
// along a flat curve a measure drifts on with hardly any residual.
bool JointIteration::HasConverged(const UconRecord& record) const {
  const float logits = run_.settings.LCONV;
  const float score = run_.settings.RCONV;
  const bool stepsHold =
      std::fabs(record.stepChange) < logits || std::fabs(record.categoryResidual) < score;
  const bool measuresHold =
      std::fabs(record.measureChange) < logits || std::fabs(record.scoreResidual) < score;
  return stepsHold && measuresHold;
}

namespace {

// Bias factors for short tests and for paired comparisons; anchors are drawn apart by them so that
// they come out unchanged once the factors are applied at reporting.
//
// Joint estimates of item difficulties lie too far apart, on a test of L dichotomies by about L /
// (L-1) (Wright & Douglas 1977); (L-1) / L takes that back. Here L - 1 counts the steps of the
// other items, n of the average item, and persons have the like factor from the number of persons,
// since the two sides of the joint likelihood are alike. In paired comparisons every comparison
// meets two objects: L = 2, for both sides.
void SetBiasFactors(Run& run) {
  const ControlSettings& settings = run.settings;
  run.results.PersonBias = run.results.ItemBias = 1;
  if (!settings.STBIAS && !settings.PAIRED) return;
  if (settings.PAIRED) {
    run.results.PersonBias = run.results.ItemBias = 0.5F;
  } else {
    double steps = 0;
    for (int i = 1; i <= settings.NI; ++i) {
      if (IsActive(run.arrays.ItemStatus[i])) steps += run.arrays.GroupTop[run.arrays.ItemGroup[i]];
    }
    // Steps of the average active item.
    const double n = std::max(1.0, std::round(steps / run.results.ActiveItems));
    const auto factor = [n](int count) {
      const double freedom = (count - 1) * n;
      return count > 1 ? static_cast<float>(freedom / (freedom + 1)) : 1.0F;
    };
    run.results.PersonBias = factor(run.results.ActivePersons);
    run.results.ItemBias = factor(run.results.ActiveItems);
  }
  if (!run.results.ItemAnchored && !run.results.PersonAnchored) return;
  for (float& b : run.arrays.PersonMeasure) b /= run.results.PersonBias;
  for (int i = 1; i <= settings.NI; ++i) {
    if (IsRead(run.arrays.ItemStatus[i])) run.arrays.ItemMeasure[i] /= run.results.ItemBias;
  }
}

Outcome Iterate(Run& run, EstimationListener& listener) {
  listener.BeginUcon();
  JointIteration iteration(run);
  for (;;) {
    listener.BeginUconIteration();
    const UconRecord record = iteration.RunIteration();
    run.results.iterations.push_back(record);
    listener.EndUconIteration(record);
    if (iteration.HasConverged(record)) return Outcome::Converged;
    if (run.StopRequest == 1) return Outcome::StoppedByUser;
    if (record.iteration == run.settings.MUCON) return Outcome::MuconReached;
    if (record.iteration > kIterationLimit) return Outcome::LimitReached;
  }
}

}  // namespace

void EstimateJoint(Run& run, EstimationListener& listener) {
  SetBiasFactors(run);
  run.results.outcome = run.settings.MUCON < 0 ? Outcome::Skipped : Iterate(run, listener);
  listener.EndTable();
  for (StatusByte& status : run.arrays.PersonStatus) status = WithoutCompleteFlag(status);
}

}  // namespace vardento
