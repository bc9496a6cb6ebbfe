#include "measure/start_values.h"

#include <algorithm>
#include <cmath>

#include "data/work_files.h"
#include "measure/estimation.h"
#include "measure/extreme_range.h"
#include "run/messages.h"

namespace vardento {

namespace {

constexpr double kScoreFloor = 0.5;        // score points: an extreme score's log-odds stay finite
constexpr float kRangeGrowth = 0.5F;       // logits a range must grow by for another pass
constexpr float kUnseenChange = 0.00005F;  // logits: the table shows it as .0000
constexpr int kIterationLimit = 32000;

// Where an entry goes that has no responses left.
StatusByte LostStatus(StatusByte status) {
  if (status == Status::ExtremeHigh) return Status::LostHigh;
  if (status == Status::ExtremeLow) return Status::LostLow;
  return Status::NoResponses;
}

// The expansion factor of Cohen 1979, sqrt(1 + variance / 2.65) (see kLogisticSpread): how far
// log-odds are drawn apart by the spread they were met with. n counts, sum and squares are of
// measures in logits. Rounding can leave a variance just below 0.
double Expand(double n, double sum, double squares) {
  const double variance = (squares - sum * sum / n) / n;
  return std::sqrt(std::max(0.0, 1.0 + variance / kLogisticSpread));
}

// Score points passed against failed, logits.
double FlooredLogOdds(double passed, double failed) {
  return NaturalLog(std::max(passed, kScoreFloor) / std::max(failed, kScoreFloor));
}

}  // namespace

void StartValues::Open() {
  Results& results = run_.results;
  const bool repeated = !results.startValues.empty();
  results.startValues.emplace_back();
  listener_.BeginProx();
  // The responses keep the codes of the data, so categories that the first phase has numbered keep
  // their codes as well: numbering them anew would tell one code for another once any was dropped.
  if (!repeated) NumberCategories(run_.arrays);
  for (float& value : run_.arrays.PersonTotalScore) value = 0;
  for (float& value : run_.arrays.PersonTotalCount) value = 0;
  itemTotalScore_.Assign(run_.settings.NI);
  itemTotalCount_.Assign(run_.settings.NI);
  items_.Assign(run_.settings.NI);
  OpenBiserial();
  if (repeated) return;
  results.ActivePersons = run_.NPERS;
  results.ActiveItems = run_.settings.NI;
  results.ActiveCategories = run_.NCATS;
}

void StartValues::OpenBiserial() {
  if (!run_.inForce.pointBiserial || biserial_.Allocate(run_)) return;
  run_.inForce.pointBiserial = false;
  listener_.MissBiserial(PointBiserial::BytesFor(run_));
}

ProxRecord StartValues::RunPass() {
  ++iteration_;
  ProxRecord record;
  record.iteration = iteration_;
  record.activePersons = run_.results.ActivePersons;
  record.activeItems = run_.results.ActiveItems;
  record.activeCategories = run_.results.ActiveCategories;
  listener_.BeginProxPass();
  ClearPass();

  // Persons first, each by the difficulties of the pass before; items then by the measures with
  // which persons entered this pass, since their sums were made on the way.
  PassOverPersons();
  firstPass_ = false;
  ExtremeRange persons(run_.settings.NI);
  for (int n = 1; n <= run_.NPERS; ++n) {
    if (IsActive(WithoutCompleteFlag(run_.arrays.PersonStatus[n]))) {
      persons.Add(run_.arrays.PersonMeasure[n]);
    }
  }
  const std::vector<float> before(run_.arrays.ItemMeasure.begin(), run_.arrays.ItemMeasure.end());
  PassOverItems();
  CentreMeasures();
  ExtremeRange items(run_.settings.NI);
  for (int i = 1; i <= run_.settings.NI; ++i) {
    if (IsActive(run_.arrays.ItemStatus[i])) items.Add(run_.arrays.ItemMeasure[i]);
  }
  const ScalePassResult scales = EstimateScales(run_, categories_);
  structureChanged_ = structureChanged_ || scales.structureChanged;
  const bool isStill = ItemsStand(before) && std::fabs(scales.stepChange) < kUnseenChange;
  stillPasses_ = isStill ? stillPasses_ + 1 : 0;

  record.personRange = persons.Range();
  record.itemRange = items.Range();
  record.measureChange = largestChange_;
  record.stepChange = scales.stepChange;
  run_.results.startValues.back().push_back(record);
  listener_.EndProxPass(record);
  run_.results.ActivePersons = persons.Count();
  run_.results.ActiveItems = items.Count();
  run_.results.ActiveCategories = scales.activeCategories;
  run_.results.largestGroupTop = scales.largestTop;
  return record;
}

void StartValues::ClearPass() {
  completeAllowed_ = AllowsComplete();
  for (ItemSums& sums : items_) {
    sums.b = sums.bb = sums.model = sums.modelMax = 0;
    if (counting_) sums.score = sums.count = sums.rawMax = 0;
  }
  categories_.Clear(run_.NCATS);
  if (biserial_.InUse()) biserial_.BeginPass(run_.settings.NI, correlationPass_);
  UpdateGroupMaxWeight(run_);
  walk_ = MakeItemWalk(run_);
  largestChange_ = 0;
  anchorShift_ = anchorWeight_ = 0;
  structureChanged_ = false;
  run_.results.ItemAnchored = run_.results.PersonAnchored = false;
}

// Under TARGET=Y what is to be matched, and for "S" and "F" what is expected, changes with each
// response: the joint iteration then has to read them even where none is missing.
bool StartValues::AllowsComplete() const {
  if (run_.settings.TARGET) return false;
  for (int i = 1; i <= run_.settings.NI; ++i) {
    if (IsMeasured(run_.arrays.ItemStatus[i]) &&
        run_.arrays.GroupModel[run_.arrays.ItemGroup[i]] != Model::Rating) {
      return false;
    }
  }
  return true;
}

void StartValues::PassOverPersons() {
  for (int n = 1; n <= run_.NPERS; ++n) {
    MeasurePerson(n);
    ShowProgress(run_, n, run_.NPERS);
  }
}

void StartValues::MeasurePerson(int person) {
  StatusByte status = WithoutCompleteFlag(run_.arrays.PersonStatus[person]);
  PersonSums sums;
  PersonScores record;
  if (status >= Status::ExtremeLow) {
    if (run_.inForce.pointBiserial) {
      // Passes behind the correlation pass write the record anew and carry what it found.
      record.correlation = firstPass_ ? 0.0F : ReadPersonScores(run_, person).correlation;
    }
    sums = AddResponses(person, status);
    status = SettlePerson(status, sums, record.correlation);
    if (IsMeasured(status)) MovePerson(person, status, sums);
  }
  const bool flagged = sums.complete && IsMeasured(status);
  run_.arrays.PersonStatus[person] =
      flagged ? static_cast<StatusByte>(status + Status::Complete) : status;
  record.modelScore = static_cast<float>(sums.model);
  record.modelMax = static_cast<float>(sums.modelMax);
  WritePersonScores(run_, person, record);
}

StartValues::PersonSums StartValues::AddResponses(int person, StatusByte status) {
  const std::uint8_t* row = firstPass_ ? FillScoredRow(run_, person) : ReadScoredRow(run_, person);
  const double b = run_.arrays.PersonMeasure[person];
  const double pw = PersonWeightOf(run_, person);
  PersonSums sums;
  sums.complete = completeAllowed_;
  if (biserial_.InUse()) biserial_.BeginPerson(person);
  double totalScore = 0, totalCount = 0;
  for (const ItemInHand& hand : walk_.For(status)) {
    const std::uint8_t code = row[hand.item - 1];
    const int x = hand.CategoryOf(code);
    if (x < 0) {
      sums.complete = false;
      continue;
    }
    if (firstPass_) {
      // By code, which stays when categories are renumbered.
      totalCount += hand.weight;
      totalScore += code * hand.weight;
      itemTotalCount_[hand.item] += pw;
      itemTotalScore_[hand.item] += code * pw;
    }
    if (biserial_.InUse()) biserial_.Add(hand.item, x, hand.weight, pw);
    AddObservation(hand, x, status, b, pw, sums);
  }
  if (firstPass_) {
    run_.arrays.PersonTotalCount[person] = static_cast<float>(totalCount);
    run_.arrays.PersonTotalScore[person] = static_cast<float>(totalScore);
  }
  return sums;
}

// Each sum takes the other side's active entries alone: an extreme person or item is measured by
// them but moves none of them.
void StartValues::AddObservation(const ItemInHand& hand, int x, StatusByte status, double b,
                                 double pw, PersonSums& sums) {
  const bool personActive = IsActive(status);
  const double iw = hand.weight;
  if (hand.active) {
    sums.count += iw;
    sums.raw += x * iw;
    sums.rawMax += hand.tables.top * iw;
    sums.d += hand.measure * iw;
    sums.dd += hand.measure * hand.measure * iw;
  }
  ItemSums& item = items_[hand.item];
  if (personActive) {
    item.b += b * pw;
    item.bb += b * b * pw;
    if (counting_) {
      item.count += pw;
      item.score += x * pw;
      item.rawMax += hand.tables.top * pw;
    }
    if (hand.active) {
      const int position = hand.start + x;
      const double w = pw * hand.pairFactor;
      const double d = b - hand.measure;
      categories_.count[position] += w;
      categories_.measure[position] += d * w;
      categories_.squares[position] += d * d * w;
    }
  }
  // Scores as the letters count them need the final categories.
  if (counting_) return;
  const ScoreAndMaximum model = ModelScore(x, hand.tables.top, hand.tables.model);
  if (hand.active) {
    sums.model += model.score * iw;
    sums.modelMax += model.maximum * iw;
  }
  if (personActive) {
    item.model += model.score * pw;
    item.modelMax += model.maximum * pw;
  }
}

// High and low are meant as the user reads them: a negative USCALE= turns the scale round.
StatusByte StartValues::ExtremeStatus(bool top) const {
  const bool high = top == (run_.settings.USCALE > 0);
  return high ? Status::ExtremeHigh : Status::ExtremeLow;
}

// An extreme score has no finite likeliest measure: its entry leaves the sums of the others, which
// can make others extreme in turn, until a pass finds none.
StatusByte StartValues::SettlePerson(StatusByte status, PersonSums& sums, float& correlation) {
  StatusByte settled = status;
  if (!(sums.count > 0)) {
    settled = LostStatus(status);
  } else if (status == Status::Active && sums.raw > 0 && sums.raw == sums.rawMax) {
    settled = ExtremeStatus(true);
  } else if (status == Status::Active && sums.raw <= 0) {
    settled = ExtremeStatus(false);
  } else if (correlationPass_) {
    if (biserial_.InUse()) correlation = biserial_.PersonCorrelation();
    if (sums.modelMax == 0) settled = LostStatus(status);
  }
  if (settled != status) structureChanged_ = true;
  if (correlationPass_ && settled == status) {
    sums.model = HoldInside(sums.model, sums.modelMax, run_.settings.EXTRSC);
  }
  return settled;
}

// B = mean of D + expansion x log-odds of the score (Cohen 1979), over the items met.
// Scores of more than two categories enter as the score points passed out of those possible.
void StartValues::MovePerson(int person, StatusByte status, const PersonSums& sums) {
  if (IsAnchored(status)) {
    run_.results.PersonAnchored = true;
    return;
  }
  const double mean = sums.d / sums.count;
  const double measure =
      mean + Expand(sums.count, sums.d, sums.dd) * FlooredLogOdds(sums.raw, sums.rawMax - sums.raw);
  float& b = run_.arrays.PersonMeasure[person];
  KeepLargest(static_cast<float>(measure - b), status);
  b = static_cast<float>(measure);
}

// Of active entries alone: how an extreme one moves says nothing of convergence.
void StartValues::KeepLargest(float change, StatusByte status) {
  if (status == Status::Active && std::fabs(change) > std::fabs(largestChange_)) {
    largestChange_ = change;
  }
}

void StartValues::PassOverItems() {
  for (int i = run_.settings.NI; i >= 1; --i) {
    if (IsMeasured(run_.arrays.ItemStatus[i])) MeasureItem(i);
  }
}

void StartValues::MeasureItem(int item) {
  StatusByte& status = run_.arrays.ItemStatus[item];
  const StatusByte settled = SettleItem(item, status);
  if (settled != status) structureChanged_ = true;
  status = settled;
  const ItemSums& sums = items_[item];
  RunArrays& arrays = run_.arrays;
  arrays.ItemScore[item] = static_cast<float>(sums.score);
  arrays.ItemCount[item] = static_cast<float>(sums.count);
  arrays.ItemModelScore[item] = static_cast<float>(sums.model);
  arrays.ItemModelMax[item] = static_cast<float>(sums.modelMax);
  if (IsMeasured(status)) MoveItem(item, status);
}

StatusByte StartValues::SettleItem(int item, StatusByte status) {
  ItemSums& sums = items_[item];
  if (sums.rawMax == 0) return LostStatus(status);
  if (status == Status::Active) {
    // The easiest item has the highest score: it stands at the minimum measure.
    if (sums.score > 0 && sums.score == sums.rawMax) return ExtremeStatus(false);
    if (sums.score <= 0) return ExtremeStatus(true);
  }
  if (correlationPass_ && biserial_.InUse()) {
    biserial_.FinishItem(item, run_.arrays.ItemCorrelation[item]);
  }
  if (counting_) return status;
  if (sums.modelMax == 0) return LostStatus(status);
  sums.model = HoldInside(sums.model, sums.modelMax, run_.settings.EXTRSC);
  return status;
}

// D = mean of B + expansion x log-odds of what was missed, over the persons met. An anchored item
// stays, and tells by how much its estimate is off the frame that its anchor sets.
void StartValues::MoveItem(int item, StatusByte status) {
  const ItemSums& sums = items_[item];
  const double n = std::max(sums.count, kTiny);
  const double mean = sums.b / n;
  const double measure =
      mean + Expand(n, sums.b, sums.bb) * FlooredLogOdds(sums.rawMax - sums.score, sums.score);
  float& d = run_.arrays.ItemMeasure[item];
  const double change = d - measure;
  if (IsAnchored(status)) {
    run_.results.ItemAnchored = true;
    anchorShift_ -= change * ItemWeightOf(run_, item);
    anchorWeight_ += ItemWeightOf(run_, item);
    return;
  }
  KeepLargest(static_cast<float>(change), status);
  d = static_cast<float>(measure);
}

// The zero of the scale: the mean of the active items or persons, by weight, or the anchored items.
// By those the free items move as a whole, as far as the anchored ones' estimates are off their
// anchors on the average.
void StartValues::CentreMeasures() {
  RunArrays& arrays = run_.arrays;
  if (CentresOnItems(run_)) {
    anchorShift_ = anchorWeight_ = 0;
    for (int i = 1; i <= run_.settings.NI; ++i) {
      if (arrays.ItemStatus[i] != Status::Active) continue;
      anchorShift_ += arrays.ItemMeasure[i] * ItemWeightOf(run_, i);
      anchorWeight_ += ItemWeightOf(run_, i);
    }
  }
  if (anchorWeight_ != 0) {
    const double shift = anchorShift_ / anchorWeight_;
    for (int i = 1; i <= run_.settings.NI; ++i) {
      if (!IsFree(arrays.ItemStatus[i])) continue;
      arrays.ItemMeasure[i] = static_cast<float>(arrays.ItemMeasure[i] - shift);
    }
  }
  if (!CentresOnPersons(run_)) return;
  double sum = 0, weight = 0;
  for (int n = 1; n <= run_.NPERS; ++n) {
    if (WithoutCompleteFlag(arrays.PersonStatus[n]) != Status::Active) continue;
    sum += arrays.PersonMeasure[n] * PersonWeightOf(run_, n);
    weight += PersonWeightOf(run_, n);
  }
  const double mean = weight == 0 ? 0 : sum / weight;
  for (int n = 1; n <= run_.NPERS; ++n) {
    if (!IsFree(WithoutCompleteFlag(arrays.PersonStatus[n]))) continue;
    arrays.PersonMeasure[n] = static_cast<float>(arrays.PersonMeasure[n] - mean);
  }
}

// Half a logit of growth is rough, yet near enough for the joint iteration to start from.
bool StartValues::MustContinue(const ProxRecord& record, const ProxRecord& last) const {
  if (counting_) return true;
  if (run_.StopRequest == 1) return false;
  const int limit = run_.settings.MPROX;
  // MPROX=0: the user ends the phase. A batch run has nobody to do so.
  if (limit == 0) return !run_.batch || !HasSettled();
  return iteration_ < limit && (record.personRange - last.personRange > kRangeGrowth ||
                                record.itemRange - last.itemRange > kRangeGrowth);
}

// The record's change is taken before the measures are centred, so it keeps a shift that centring
// takes back in every pass. Persons follow from the items of the pass before and items from its
// persons: when the items have stood for two passes, so has everything.
bool StartValues::HasSettled() const { return stillPasses_ >= 2 || iteration_ >= kIterationLimit; }

bool StartValues::ItemsStand(const std::vector<float>& before) const {
  for (int i = 1; i <= run_.settings.NI; ++i) {
    const float change = run_.arrays.ItemMeasure[i] - before[static_cast<std::size_t>(i - 1)];
    if (run_.arrays.ItemStatus[i] == Status::Active && !(std::fabs(change) < kUnseenChange)) {
      return false;
    }
  }
  return true;
}

// The first pass in which nothing changed ends the counting for good: a status that changes later
// leaves the raw sums as they are.
void StartValues::AdvancePhase() {
  correlationPass_ = !structureChanged_ && counting_;
  if (correlationPass_) counting_ = false;
}

void StartValues::LeaveTotals() {
  for (int i = 1; i <= run_.settings.NI; ++i) {
    run_.arrays.ItemTotalScore[i] = static_cast<float>(itemTotalScore_[i]);
    run_.arrays.ItemTotalCount[i] = static_cast<float>(itemTotalCount_[i]);
  }
}

bool EstimateStartValues(Run& run, EstimationListener& listener) {
  StartValues phase(run, listener);
  phase.Open();
  ProxRecord last;
  for (;;) {
    const ProxRecord record = phase.RunPass();
    if (run.results.ActivePersons == 0 || run.results.ActiveItems == 0) return false;
    const bool more = phase.MustContinue(record, last);
    last = record;
    phase.AdvancePhase();
    if (!more) break;
  }
  phase.LeaveTotals();
  return true;
}

}  // namespace vardento
