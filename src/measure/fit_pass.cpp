#include "measure/fit_pass.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "data/work_files.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

namespace {

constexpr std::int16_t kMissingResidual = -32768;
constexpr double kLeastVariance = 0.001;  // keeps a standard error finite
constexpr char kResidualFailure[] = " STANDARDIZED RESIDUAL WORK FILE FAILURE AT RECORD =";

}  // namespace

FitPass::FitPass(Run& run)
    : run_(run),
      arrays_(run.arrays),
      settings_(run.settings),
      correlates_(run.settings.PTBIS != 'Y'),
      writesResiduals_(run.settings.PRCOMP != 'N'),
      zeroText_(FixedText(0, run.settings.numberFormat, 8)),
      here_(std::max(run.largestGroupTop, 1)),
      below_(std::max(run.largestGroupTop, 1)),
      p_(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0) {}

FitSummary FitPass::Compute() {
  Open();
  for (int n = 1; n <= run_.NPERS; ++n) {
    MeasurePerson(n);
    ShowProgress(run_, n, run_.NPERS);
  }
  ReportSpread();
  for (int i = settings_.NI; i >= 1; --i) MeasureItem(i);
  CloseCategories();
  if (settings_.LOCAL == 'Y') RescaleLocal();
  FoldExtremes();
  return std::move(summary_);
}

void FitPass::Open() {
  WriteConsole(run_, "  Calculating Fit Statistics");
  const auto items = static_cast<std::size_t>(settings_.NI);
  const auto groups = static_cast<std::size_t>(run_.NGROUPS);
  const std::size_t bytes = items * (sizeof(FitSums) + sizeof(CorrelationRecord)) +
                            static_cast<std::size_t>(run_.NCATS) * sizeof(CategoryFit) +
                            3 * groups * sizeof(double);
  if (!block_.Allocate(run_.memory, bytes)) {
    FailRun(run_, IntegerText(static_cast<int>(bytes)) +
                      " bytes of memory not available. Fit computation failed.");
  }
  BlockCutter cutter(block_);
  items_ = cutter.Cut<FitSums>(settings_.NI);
  itemCorrelations_ = cutter.Cut<CorrelationRecord>(settings_.NI);
  categories_ = cutter.Cut<CategoryFit>(run_.NCATS);
  baseline_ = cutter.Cut<double>(run_.NGROUPS);
  missingCount_ = cutter.Cut<double>(run_.NGROUPS);
  missingMeasure_ = cutter.Cut<double>(run_.NGROUPS);
  if (writesResiduals_) {
    residualRow_.assign(items, kMissingResidual);
    run_.RunIoStatus = run_.stores.residuals.Create(run_.workDirectory.NameOf("ZUU"), 2 * items);
    if (run_.RunIoStatus != 0) FatalFileFailure(run_, kResidualFailure + IntegerText(0), 'O');
  }
  UpdateGroupMaxWeight(run_);
  walk_ = MakeItemWalk(run_);
  ascending_.assign(walk_.all.rbegin(), walk_.all.rend());
  run_.ItemDisplaced = run_.PersonDisplaced = false;
  run_.PersonsReported = run_.ItemsReported = 0;
  ClearCategories();
  FindBaselines();
}

void FitPass::ClearCategories() {
  for (int p = 1; p <= run_.NCATS; ++p) {
    arrays_.CategoryExpectedHits[p] = 0;
    arrays_.CategoryMatches[p] = 0;
  }
}

void FitPass::FindBaselines() {
  double sumB = 0, weightB = 0, sumD = 0, weightD = 0;
  for (int n = 1; n <= run_.NPERS; ++n) {
    const double pw = PersonWeightOf(run_, n);
    if (!IsActive(arrays_.PersonStatus[n]) || !(pw > 0)) continue;
    sumB += arrays_.PersonMeasure[n] * pw;
    weightB += pw;
  }
  for (const ItemInHand& hand : walk_.active) {
    if (!(hand.weight > 0)) continue;
    sumD += hand.measure * hand.weight;
    weightD += hand.weight;
  }
  const double d = sumB / std::max(weightB, 1.0) - sumD / std::max(weightD, 1.0);
  for (int g = 1; g <= run_.NGROUPS; ++g) {
    baseline_[g] = CategoryProbabilities(d, TablesOfGroup(arrays_, g), p_.data());
  }
}

void FitPass::MeasurePerson(int number) {
  PersonInHand person;
  person.number = number;
  person.status = arrays_.PersonStatus[number];
  person.weight = PersonWeightOf(run_, number);
  if (writesResiduals_) std::fill(residualRow_.begin(), residualRow_.end(), kMissingResidual);
  if (IsMeasured(person.status)) {
    person.measure = arrays_.PersonMeasure[number];
    AddResponses(person);
  }
  ClosePerson(person);
}

void FitPass::AddResponses(PersonInHand& person) {
  const std::uint8_t* row = ReadScoredRow(run_, person.number);
  // An extreme person meets extreme items for the sake of the correlations only.
  here_.Set(person.measure);
  below_.Set(person.measure - 1);
  const bool meetsAll = IsActive(person.status) || correlates_;
  for (const ItemInHand& hand : ascending_) {
    if (hand.active || meetsAll) AddResponse(hand, row[hand.item - 1], person);
  }
}

void FitPass::AddResponse(const ItemInHand& hand, std::uint8_t response, PersonInHand& person) {
  const double w = person.weight * hand.pairFactor;
  const int x = hand.CategoryOf(response);
  if (x < 0) {
    if (IsActive(person.status) && hand.active && w > 0) {
      missingCount_[hand.group] += w;
      missingMeasure_[hand.group] += (person.measure - hand.measure) * w;
    }
    return;
  }
  if (correlates_) {
    const double raw = x + arrays_.CategoryToCode[hand.start];
    itemCorrelations_[hand.item].Add(person.measure, raw, person.weight);
    person.correlation.Add(-hand.measure, raw, hand.weight);
  }
  if (hand.active || IsActive(person.status)) AddObservation(hand, x, w, person);
}

void FitPass::AddObservation(const ItemInHand& hand, int x, double w, PersonInHand& person) {
  const bool personActive = IsActive(person.status);
  const double d = person.measure - hand.measure;
  double* const p = p_.data();
  const double below = below_.Expect(hand, x, p);
  Evaluation here = here_.Evaluate(hand, x, p);
  here.variance = std::max(here.variance, kTiny);
  const ScoreAndMaximum model = ModelScore(x, hand.tables.top, hand.tables.letter);
  const double raw = x + arrays_.CategoryToCode[hand.start];
  const auto add = [&](FitSums& sums, double weight) {
    sums.count += weight;
    sums.raw += raw * weight;
    sums.score += model.score * weight;
    sums.maximum += model.maximum * weight;
    sums.expected += here.expected * weight;
    sums.expectedOffset += below * weight;
    sums.variance += here.variance * weight;
  };
  if (personActive) add(items_[hand.item], person.weight);
  if (hand.active) add(person.sums, hand.weight);
  if (!personActive || !hand.active) return;
  AddPairExpectations(hand, d, w);
  AddFit(hand, x, here, d, w, person);
}

void FitPass::AddPairExpectations(const ItemInHand& hand, double d, double w) {
  const double* const p = p_.data();
  CategoryFit* const at = &categories_[hand.start];
  const auto expect = [&](int k) {
    at[k].expectedCount += p[k] * w;
    at[k].expectedMeasure += d * p[k] * w;
  };
  expect(0);
  if (hand.tables.IsSequential()) {
    for (int k = hand.tables.top; k >= 1; --k) {
      at[k].information += p[k] * (1.0 - p[k]) * w;
      expect(k);
    }
    return;
  }
  double cumulative = p[0];
  for (int k = 1; k <= hand.tables.top; ++k) {
    at[k].information += cumulative * (1.0 - cumulative) * w;
    expect(k);
    cumulative += p[k];
  }
}

void FitPass::AddFit(const ItemInHand& hand, int x, const Evaluation& here, double d, double w,
                     PersonInHand& person) {
  const ScoreAndMaximum model = ModelScore(x, hand.tables.top, hand.tables.letter);
  const double root = std::sqrt(here.variance);
  const double y = model.score - here.expected;
  const double z = y / root;
  const double zz = z * z;
  const double t = (model.score - baseline_[hand.group]) / root;
  FitSums& item = items_[hand.item];
  item.t += t;
  item.tt += t * t;
  person.sums.t += t;
  totalTT_ += t * t;
  totalZZ_ += zz;
  ++observations_;
  if (writesResiduals_) {
    residualRow_[static_cast<std::size_t>(hand.item - 1)] =
        ResidualEntry(settings_.PRCOMP,
                      {x, hand.tables.top, y, z, here.variance, p_[static_cast<std::size_t>(x)]});
  }
  spread_.Add(z, person.weight * hand.weight);
  const auto size = static_cast<float>(std::fabs(z));
  if (size >= kUnexpected) {
    person.worstZ = std::max(person.worstZ, size);
    EnterWorst(summary_.worstItems, hand.item, size);
  }
  CountHit(hand, x, y, w);
  const double fourth = std::max(here.fourth, 0.0);
  const double square = std::max(here.variance * here.variance, kTiny);
  const auto add = [&](FitSums& sums, double weight) {
    sums.outfitVariance += fourth / square * weight;
    sums.infitVariance += std::max(fourth - square, 0.0) * weight;
    sums.squaredResidual += y * y * weight;
    sums.squaredStandardised += zz * weight;
  };
  add(item, person.weight);
  add(person.sums, hand.weight);
  AddCategoryFit(hand, x, y, zz, here, d, w);
}

void FitPass::AddCategoryFit(const ItemInHand& hand, int x, double y, double zz,
                             const Evaluation& here, double d, double w) {
  CategoryFit* const at = &categories_[hand.start];
  at[x].observedY += y * y * w;
  at[x].observedZ += zz * w;
  at[x].observedMeasure += d * w;
  for (int k = hand.tables.top; k >= 0; --k) {
    const double distance = k - here.expected;
    const double u = distance * distance * p_[static_cast<std::size_t>(k)];
    at[k].variance += u * w;
    at[k].zVariance += u / here.variance * w;
  }
}

void FitPass::CountHit(const ItemInHand& hand, int x, double y, double w) {
  // Counts are whole: each addition is cut to an integer, and huge weights stop at the largest.
  const auto add = [w](std::int32_t& count) {
    constexpr double kLargestCount = std::numeric_limits<std::int32_t>::max();
    const double sum = std::min(kLargestCount, static_cast<double>(count) + w);
    count = static_cast<std::int32_t>(std::max(0.0, sum));
  };
  int expectedCategory = x;
  if (std::fabs(y) > 0.5) {
    expectedCategory =
        std::clamp(static_cast<int>(x - y + (y >= 0 ? 0.5 : 0.4999)), 0, hand.tables.top);
  } else {
    add(arrays_.CategoryMatches[hand.start + x]);
  }
  add(arrays_.CategoryExpectedHits[hand.start + expectedCategory]);
}

float FitPass::ScaleMeasure(double measure, double bias) const {
  return static_cast<float>(measure * bias * settings_.USCALE + settings_.UMEAN);
}

float FitPass::ScaleError(double variance, double bias) const {
  const double error =
      std::fabs(bias * settings_.USCALE) / std::sqrt(std::max(variance, kLeastVariance));
  return static_cast<float>(settings_.PAIRED == 'Y' ? 1.4142 * error : error);
}

bool FitPass::ShowsDisplacement(const FitSums& sums, double displacement, double bias) const {
  if (!(std::fabs(displacement) > settings_.LCONV)) return false;
  if (!(std::fabs(HeldScore(sums, settings_.EXTRSC) - sums.expected) > settings_.RCONV)) {
    return false;
  }
  const auto shown = static_cast<float>(std::fabs(displacement * bias));
  return FixedText(shown, settings_.numberFormat, 8) != zeroText_;
}

void FitPass::ClosePerson(PersonInHand& person) {
  const int n = person.number;
  PersonWorkRecord record;
  if (!correlates_) record.correlation = ReadPersonWork(run_, n).correlation;
  FitValues fit;
  arrays_.PersonMeasure[n] = 0;
  if (IsMeasured(person.status)) {
    if (IsActive(person.status)) fit = FindFit(person.sums, settings_);
    record.error = ScaleError(person.sums.variance, run_.PersonBias);
    const double displacement = FindPersonDisplacement(person.sums, settings_.EXTRSC);
    if (ShowsDisplacement(person.sums, displacement, run_.PersonBias)) run_.PersonDisplaced = true;
    record.displacement = static_cast<float>(displacement * run_.PersonBias * settings_.USCALE);
    arrays_.PersonMeasure[n] = ScaleMeasure(person.measure, run_.PersonBias);
    if (correlates_) record.correlation = static_cast<float>(person.correlation.Correlation());
  }
  record.count = static_cast<float>(person.sums.count);
  record.score = static_cast<float>(person.sums.raw);
  record.infit = fit.infit;
  record.outfit = fit.outfit;
  arrays_.PersonError[n] = record.error;
  arrays_.PersonInfit[n] = fit.infit;
  arrays_.PersonOutfit[n] = fit.outfit;
  arrays_.PersonInfitZ[n] = fit.infitZ;
  arrays_.PersonOutfitZ[n] = fit.outfitZ;
  AddPersonSlots(person, record);
  if (person.worstZ >= static_cast<float>(kUnexpected)) {
    EnterWorst(summary_.worstPersons, n, person.worstZ);
  }
  WritePersonWork(run_, n, record);
  totalT_ += person.sums.t;
  if (!writesResiduals_ || !IsActive(person.status)) return;
  run_.RunIoStatus = run_.stores.residuals.Write(n, residualRow_.data());
  if (run_.RunIoStatus != 0) FatalFileFailure(run_, kResidualFailure + IntegerText(n), 'W');
}

void FitPass::AddPersonSlots(const PersonInHand& person, const PersonWorkRecord& record) {
  const int n = person.number;
  const double w = person.weight;
  StatSlot* const slots = summary_.slots;
  const float measure = arrays_.PersonMeasure[n];
  if (IsExtreme(person.status)) {
    slots[kAllPersonMeasures].Add(measure, w);
    slots[kAllPersonErrors].Add(record.error, w);
    ++run_.PersonsReported;
    return;
  }
  if (!IsActive(person.status)) return;
  const float values[] = {record.score,  record.count,
                          measure,       record.error,
                          record.infit,  arrays_.PersonInfitZ[n],
                          record.outfit, arrays_.PersonOutfitZ[n]};
  int slot = kPersonSlots;
  for (const float value : values) slots[slot++].Add(value, w);
  slots[kPersonRealError].Add(std::sqrt(std::max(1.0F, record.infit)) * record.error, w);
}

void FitPass::ReportSpread() {
  const auto text = [](double value) {
    return std::string(Trim(FixedText(static_cast<float>(value), "(F10.2)", 10)));
  };
  const std::string line = " Standardized Residuals N(0,1)  Mean: " + text(spread_.Mean()) +
                           " S.D.: " + text(spread_.SD());
  WriteConsole(run_, line);
  WriteReportText(run_, line);
}

void FitPass::MeasureItem(int item) {
  const FitSums& sums = items_[item];
  const StatusByte status = arrays_.ItemStatus[item];
  FitValues fit;
  arrays_.ItemModelScore[item] = static_cast<float>(sums.score);
  arrays_.ItemModelMax[item] = static_cast<float>(sums.maximum);
  if (status > Status::LostHigh) arrays_.ItemCount[item] = static_cast<float>(sums.count);
  arrays_.ItemScore[item] = static_cast<float>(sums.raw);
  arrays_.ItemExpected[item] = static_cast<float>(sums.expected);
  arrays_.ItemExpectedOffset[item] = static_cast<float>(sums.expectedOffset);
  arrays_.ItemError[item] = 0;
  arrays_.ItemDisplacement[item] = 0;
  if (correlates_) arrays_.ItemCorrelation[item] = 0;
  if (!IsMeasured(status)) {
    arrays_.ItemMeasure[item] = 0;
  } else {
    if (IsActive(status)) fit = FindFit(sums, settings_);
    arrays_.ItemError[item] = ScaleError(sums.variance, run_.ItemBias);
    const double displacement = FindItemDisplacement(sums, settings_.EXTRSC);
    if (ShowsDisplacement(sums, displacement, run_.ItemBias)) run_.ItemDisplaced = true;
    arrays_.ItemDisplacement[item] =
        static_cast<float>(displacement * run_.ItemBias * settings_.USCALE);
    arrays_.ItemMeasure[item] = ScaleMeasure(arrays_.ItemMeasure[item], run_.ItemBias);
    if (correlates_) {
      arrays_.ItemCorrelation[item] = static_cast<float>(itemCorrelations_[item].Correlation());
    }
  }
  arrays_.ItemInfit[item] = fit.infit;
  arrays_.ItemOutfit[item] = fit.outfit;
  arrays_.ItemInfitZ[item] = fit.infitZ;
  arrays_.ItemOutfitZ[item] = fit.outfitZ;
  AddItemSlots(item);
}

void FitPass::AddItemSlots(int item) {
  const StatusByte status = arrays_.ItemStatus[item];
  const double w = ItemWeightOf(run_, item);
  StatSlot* const slots = summary_.slots;
  if (IsExtreme(status)) {
    slots[kAllItemMeasures].Add(arrays_.ItemMeasure[item], w);
    slots[kAllItemErrors].Add(arrays_.ItemError[item], w);
    ++run_.ItemsReported;
    return;
  }
  if (!IsActive(status)) return;
  const float values[] = {arrays_.ItemScore[item],   arrays_.ItemCount[item],
                          arrays_.ItemMeasure[item], arrays_.ItemError[item],
                          arrays_.ItemInfit[item],   arrays_.ItemInfitZ[item],
                          arrays_.ItemOutfit[item],  arrays_.ItemOutfitZ[item]};
  int slot = kItemSlots;
  for (const float value : values) slots[slot++].Add(value, w);
  slots[kItemRealError].Add(
      std::sqrt(std::max(1.0F, arrays_.ItemInfit[item])) * arrays_.ItemError[item], w);
}

void FitPass::CloseCategories() {
  for (int g = 1; g <= run_.NGROUPS; ++g) {
    arrays_.GroupMissingCount[g] = static_cast<float>(missingCount_[g]);
    arrays_.GroupMissingMeasure[g] =
        static_cast<float>(settings_.USCALE * missingMeasure_[g] / std::max(missingCount_[g], 1.0));
    for (int k = 0; k <= arrays_.GroupTop[g]; ++k) {
      const int p = arrays_.GroupStart[g] + k;
      const CategoryFit& sums = categories_[p];
      const double n = arrays_.CategoryCount[p];
      const auto meanSquare = [&](double observed, double variance) {
        return static_cast<float>(std::min<double>(
            kFitCap, observed * sums.expectedCount / std::max(n * variance, kTiny)));
      };
      const double scale = settings_.USCALE / std::max(n, 1.0);
      arrays_.CategoryObservedZ[p] = meanSquare(sums.observedZ, sums.zVariance);
      arrays_.CategoryObservedY[p] = meanSquare(sums.observedY, sums.variance);
      arrays_.CategoryVariance[p] = static_cast<float>(sums.variance);
      arrays_.CategoryZVariance[p] = static_cast<float>(sums.zVariance);
      arrays_.CategoryInformation[p] = static_cast<float>(sums.information);
      arrays_.CategoryExpectedCount[p] = static_cast<float>(n - sums.expectedCount);
      arrays_.CategoryObservedMeasure[p] = static_cast<float>(sums.observedMeasure * scale);
      arrays_.CategoryExpectedMeasure[p] = static_cast<float>(sums.expectedMeasure * scale);
    }
  }
  const double n = static_cast<double>(std::max<std::int64_t>(observations_, 1));
  const double residual = std::max(totalZZ_, kTiny);
  double itemT = 0, itemTT = 0;
  for (const FitSums& sums : items_) {
    itemT += sums.t;
    itemTT += sums.tt;
  }
  summary_.itemVariance = std::max(0.0, itemTT - itemT * itemT / n - residual);
  summary_.personVariance = std::max(0.0, totalTT_ - totalT_ * totalT_ / n - residual);
  summary_.residualVariance = residual;
}

// LOCAL=Y: standardised values rescaled by their own spread, items and then persons.
void FitPass::RescaleLocal() {
  RescaleLocalSide(arrays_.ItemInfitZ, arrays_.ItemOutfitZ, arrays_.ItemStatus, arrays_.ItemWeight,
                   run_.itemWeights, kItemSlots + 5, kItemSlots + 7);
  RescaleLocalSide(arrays_.PersonInfitZ, arrays_.PersonOutfitZ, arrays_.PersonStatus,
                   arrays_.PersonWeight, run_.personWeights, kPersonSlots + 5, kPersonSlots + 7);
}

void FitPass::RescaleLocalSide(Array1<float> infitZ, Array1<float> outfitZ,
                               Array1<StatusByte> status, Array1<float> weights, bool weighted,
                               int infitSlot, int outfitSlot) {
  const auto rescale = [&](Array1<float> values, int slot) {
    double n = 0, sum = 0, squares = 0;
    const auto weightOf = [&](int i) { return weighted ? weights[i] : 1.0F; };
    for (int i = 1; i <= values.Size(); ++i) {
      if (!IsActive(status[i]) || !(weightOf(i) > 0)) continue;
      n += weightOf(i);
      sum += static_cast<double>(values[i]) * weightOf(i);
      squares += static_cast<double>(values[i]) * values[i] * weightOf(i);
    }
    // The sum stands as it is, not squared: the settled form of this scale.
    const double scale = std::sqrt(std::max(0.0, n * squares - sum)) / std::max(n, 0.01);
    const double factor = scale > kTiny ? 1.0 / scale : 1.0;
    summary_.slots[slot] = StatSlot();
    for (int i = 1; i <= values.Size(); ++i) {
      if (!IsActive(status[i])) continue;  // a weight of 0 counts for nothing, yet is on one scale
      values[i] = ZCode(values[i] * factor, 0);
      summary_.slots[slot].Add(values[i], weightOf(i));
    }
  };
  rescale(infitZ, infitSlot);
  rescale(outfitZ, outfitSlot);
}

void FitPass::FoldExtremes() {
  StatSlot* const slots = summary_.slots;
  const auto fold = [slots](int measures, int errors, int realErrors, int active, int activeReal) {
    slots[measures].Fold(slots[active + 2]);
    // The real errors of all: those of the extremes are their model errors.
    slots[realErrors] = slots[activeReal];
    slots[realErrors].Fold(slots[errors]);
    slots[errors].Fold(slots[active + 3]);
  };
  fold(kAllPersonMeasures, kAllPersonErrors, kAllPersonRealErrors, kPersonSlots, kPersonRealError);
  fold(kAllItemMeasures, kAllItemErrors, kAllItemRealErrors, kItemSlots, kItemRealError);
  run_.PersonsReported += run_.ActivePersons;
  run_.ItemsReported += run_.ActiveItems;
  for (StatSlot& slot : summary_.slots) slot.Close();
}

void StatSlot::Add(double value, double w) {
  if (!(w > 0)) return;
  const auto shown = static_cast<float>(value);
  minimum = used ? std::min(minimum, shown) : shown;
  maximum = used ? std::max(maximum, shown) : shown;
  used = true;
  weight += w;
  sum += value * w;
  squares += value * value * w;
}

void StatSlot::Fold(const StatSlot& other) {
  if (!other.used) return;
  minimum = used ? std::min(minimum, other.minimum) : other.minimum;
  maximum = used ? std::max(maximum, other.maximum) : other.maximum;
  used = true;
  weight += other.weight;
  sum += other.sum;
  squares += other.squares;
}

void StatSlot::Close() {
  if (!(weight > 0)) return;
  const double average = sum / weight;
  mean = static_cast<float>(average);
  sd = static_cast<float>(std::sqrt(std::max(squares / weight - average * average, 0.0)));
}

FitSummary ComputeFit(Run& run) { return FitPass(run).Compute(); }

}  // namespace vardento
