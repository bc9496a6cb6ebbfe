#include "measure/fit_pass.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "data/work_files.h"
#include "measure/own_spread.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

FitPass::FitPass(Run& run)
    : run_(run),
      arrays_(run.arrays),
      settings_(run.settings),
      outcome_(run.results.fit),
      correlates_(!run.inForce.pointBiserial),
      zeroText_(FixedText(0, run.settings.numberFormat, 8)),
      here_(std::max(run.results.largestGroupTop, 1)),
      below_(std::max(run.results.largestGroupTop, 1)),
      p_(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0),
      spread_(run.given.HasPersonWeights() || run.given.HasItemWeights()) {}

void FitPass::Compute() {
  Open();
  for (int n = 1; n <= run_.NPERS; ++n) {
    MeasurePerson(n);
    ShowProgress(run_, n, run_.NPERS);
  }
  outcome_.residualMean = spread_.Mean();
  outcome_.residualSD = spread_.SD();
  for (int i = settings_.NI; i >= 1; --i) MeasureItem(i);
  CloseCategories();
  CloseTotals();
  if (settings_.LOCAL == 'Y') RescaleByOwnSpread(run_);
}

BlockPlan FitArrays::Plan(const Run& run) {
  BlockPlan plan;
  plan.Add(items, run.settings.NI).Add(itemCorrelations, run.settings.NI);
  plan.Add(categories, run.NCATS);
  plan.Add({&baseline, &missingCount, &missingMeasure}, run.NGROUPS);
  return plan;
}

void FitPass::Open() {
  const BlockPlan plan = sums_.Plan(run_);
  if (!TryTakeBlock(run_, plan, block_)) {
    FailRun(run_, std::to_string(plan.Bytes()) +
                      " bytes of memory not available. Fit computation failed.");
  }
  run_.stores.ForgetResiduals();
  UpdateGroupMaxWeight(run_);
  walk_ = MakeItemWalk(run_);
  ascending_.assign(walk_.all.rbegin(), walk_.all.rend());
  outcome_ = FitOutcome();
  ClearCategories();
  FindBaselines();
}

void FitPass::ClearCategories() {
  for (int p = 1; p <= run_.NCATS; ++p) {
    arrays_.CategoryExpectedHits[p] = 0;
    arrays_.CategoryMatches[p] = 0;
  }
}

// What everybody would score if only the scale of the group told: E at the mean of B less the mean
// of D. The variance that measures explain is told against it.
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
    sums_.baseline[g] = CategoryProbabilities(d, TablesOfGroup(arrays_, g), p_.data());
  }
}

void FitPass::MeasurePerson(int number) {
  PersonInHand person;
  person.number = number;
  person.status = arrays_.PersonStatus[number];
  person.weight = PersonWeightOf(run_, number);
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
      sums_.missingCount[hand.group] += w;
      sums_.missingMeasure[hand.group] += (person.measure - hand.measure) * w;
    }
    return;
  }
  if (correlates_) {
    const double raw = x + arrays_.CategoryToCode[hand.start];
    sums_.itemCorrelations[hand.item].Add(person.measure, raw, person.weight);
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
  const ScoreAndMaximum model = ModelScore(x, hand.tables.top, hand.tables.model);
  const double raw = x + arrays_.CategoryToCode[hand.start];
  // As in the estimation: each sum takes the other side's active entries, so that extreme ones have
  // errors and displacements as well.
  const auto add = [&](FitSums& sums, double weight) {
    sums.count += weight;
    sums.raw += raw * weight;
    sums.score += model.score * weight;
    sums.maximum += model.maximum * weight;
    sums.expected += here.expected * weight;
    sums.expectedOffset += below * weight;
    sums.variance += here.variance * weight;
  };
  if (personActive) add(sums_.items[hand.item], person.weight);
  if (hand.active) add(person.sums, hand.weight);
  if (!personActive || !hand.active) return;
  AddPairExpectations(hand, d, w);
  AddFit(hand, x, here, d, w, person);
}

// What the model expects of the categories, whichever was observed. The information of step k is
// the variance p(1 - p) of being below category k or not ("R"), or of the step itself.
void FitPass::AddPairExpectations(const ItemInHand& hand, double d, double w) {
  const double* const p = p_.data();
  CategoryFit* const at = &sums_.categories[hand.start];
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

// y, z and their moments (Wright & Masters 1982, ch. 5). Active pairs alone: the measure of an
// extreme entry follows EXTRSC=, and so would its residuals.
void FitPass::AddFit(const ItemInHand& hand, int x, const Evaluation& here, double d, double w,
                     PersonInHand& person) {
  const ScoreAndMaximum model = ModelScore(x, hand.tables.top, hand.tables.model);
  const double root = std::sqrt(here.variance);
  const double y = model.score - here.expected;
  const double z = y / root;
  const double zz = z * z;
  const double t = (model.score - sums_.baseline[hand.group]) / root;
  FitSums& item = sums_.items[hand.item];
  item.t += t;
  item.tt += t * t;
  person.sums.t += t;
  totalTT_ += t * t;
  totalZZ_ += zz;
  ++observations_;
  spread_.Add(z, person.weight * hand.weight);
  const auto size = static_cast<float>(std::fabs(z));
  if (size >= kUnexpected) {
    person.worstZ = std::max(person.worstZ, size);
    EnterWorst(outcome_.worstItems, hand.item, size);
  }
  CountHit(hand, x, y, w);
  // Rounding can make C negative, and the C of "S" and "F" can lie below V squared.
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

// Squared residuals go to the observed category; their expectations, (k - E)^2 p(k), to every
// category.
void FitPass::AddCategoryFit(const ItemInHand& hand, int x, double y, double zz,
                             const Evaluation& here, double d, double w) {
  CategoryFit* const at = &sums_.categories[hand.start];
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

// The expected category is the one nearest to the expected score x - y; of two as near, the one
// toward the observed category.
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

// Within what the iteration was asked for, a displacement is no finding; nor is one that prints as
// 0.
bool FitPass::ShowsDisplacement(const FitSums& sums, double displacement, double bias) const {
  if (!(std::fabs(displacement) > settings_.LCONV)) return false;
  if (!(std::fabs(HeldScore(sums, settings_.EXTRSC) - sums.expected) > settings_.RCONV)) {
    return false;
  }
  const auto shown = static_cast<float>(std::fabs(displacement * bias));
  return FixedText(shown, settings_.numberFormat, 8) != zeroText_;
}

// An extreme person has a measure and an error, but fit values of 1 and 0: it cannot misfit.
void FitPass::ClosePerson(PersonInHand& person) {
  const int n = person.number;
  PersonWorkRecord record;
  if (!correlates_) record.correlation = ReadPersonScores(run_, n).correlation;
  FitValues fit;
  if (IsMeasured(person.status)) {
    if (IsActive(person.status)) fit = FindFit(person.sums, settings_);
    const double bias = run_.results.PersonBias;
    record.error = StandardError(person.sums.variance);
    record.displacement = FindPersonDisplacement(person.sums, settings_.EXTRSC);
    if (ShowsDisplacement(person.sums, record.displacement, bias)) outcome_.PersonDisplaced = true;
    if (correlates_) record.correlation = static_cast<float>(person.correlation.Correlation());
  } else {
    arrays_.PersonMeasure[n] = 0;
  }
  record.count = static_cast<float>(person.sums.count);
  record.score = static_cast<float>(person.sums.raw);
  record.infit = fit.infit;
  record.outfit = fit.outfit;
  arrays_.PersonInfit[n] = fit.infit;
  arrays_.PersonOutfit[n] = fit.outfit;
  arrays_.PersonInfitZ[n] = fit.infitZ;
  arrays_.PersonOutfitZ[n] = fit.outfitZ;
  if (person.worstZ >= static_cast<float>(kUnexpected)) {
    EnterWorst(outcome_.worstPersons, n, person.worstZ);
  }
  WritePersonWork(run_, n, record);
  totalT_ += person.sums.t;
}

void FitPass::MeasureItem(int item) {
  const FitSums& sums = sums_.items[item];
  const StatusByte status = arrays_.ItemStatus[item];
  FitValues fit;
  arrays_.ItemModelScore[item] = static_cast<float>(sums.score);
  arrays_.ItemModelMax[item] = static_cast<float>(sums.maximum);
  if (status > Status::LostHigh) arrays_.ItemCount[item] = static_cast<float>(sums.count);
  arrays_.ItemScore[item] = static_cast<float>(sums.raw);
  arrays_.ItemError[item] = 0;
  arrays_.ItemDisplacement[item] = 0;
  if (correlates_) arrays_.ItemCorrelation[item] = 0;
  if (!IsMeasured(status)) {
    arrays_.ItemMeasure[item] = 0;
  } else {
    if (IsActive(status)) fit = FindFit(sums, settings_);
    arrays_.ItemError[item] = StandardError(sums.variance);
    const double displacement = FindItemDisplacement(sums, settings_.EXTRSC);
    if (ShowsDisplacement(sums, displacement, run_.results.ItemBias)) outcome_.ItemDisplaced = true;
    arrays_.ItemDisplacement[item] = displacement;
    if (correlates_) {
      arrays_.ItemCorrelation[item] =
          static_cast<float>(sums_.itemCorrelations[item].Correlation());
    }
  }
  arrays_.ItemInfit[item] = fit.infit;
  arrays_.ItemOutfit[item] = fit.outfit;
  arrays_.ItemInfitZ[item] = fit.infitZ;
  arrays_.ItemOutfitZ[item] = fit.outfitZ;
}

void FitPass::CloseCategories() {
  for (int g = 1; g <= run_.NGROUPS; ++g) {
    arrays_.GroupMissingCount[g] = static_cast<float>(sums_.missingCount[g]);
    arrays_.GroupMissingMeasure[g] =
        static_cast<float>(sums_.missingMeasure[g] / std::max(sums_.missingCount[g], 1.0));
    for (int k = 0; k <= arrays_.GroupTop[g]; ++k) {
      const int p = arrays_.GroupStart[g] + k;
      const CategoryFit& sums = sums_.categories[p];
      const double n = arrays_.CategoryCount[p];
      // The mean square of n observations in the category over the mean square that the model
      // expects of one in it: 1 where data fit.
      const auto meanSquare = [&](double observed, double variance) {
        return static_cast<float>(std::min<double>(
            kFitCap, observed * sums.expectedCount / std::max(n * variance, kTiny)));
      };
      const double share = 1.0 / std::max(n, 1.0);
      arrays_.CategoryObservedZ[p] = meanSquare(sums.observedZ, sums.zVariance);
      arrays_.CategoryObservedY[p] = meanSquare(sums.observedY, sums.variance);
      arrays_.CategoryVariance[p] = static_cast<float>(sums.variance);
      arrays_.CategoryZVariance[p] = static_cast<float>(sums.zVariance);
      arrays_.CategoryInformation[p] = static_cast<float>(sums.information);
      // Observed less expected: from here on a residual.
      arrays_.CategoryExpectedCount[p] = static_cast<float>(n - sums.expectedCount);
      arrays_.CategoryObservedMeasure[p] = static_cast<float>(sums.observedMeasure * share);
      arrays_.CategoryExpectedMeasure[p] = static_cast<float>(sums.expectedMeasure * share);
    }
  }
}

// Sums of squares over all observations: what scores vary by about their baselines, less what
// residuals vary by, is what the measures explain. In units of V, so that all observations count
// alike.
void FitPass::CloseTotals() {
  const double n = static_cast<double>(std::max<std::int64_t>(observations_, 1));
  const double residual = std::max(totalZZ_, kTiny);
  double itemT = 0, itemTT = 0;
  for (const FitSums& sums : sums_.items) {
    itemT += sums.t;
    itemTT += sums.tt;
  }
  outcome_.itemVariance = std::max(0.0, itemTT - itemT * itemT / n - residual);
  outcome_.personVariance = std::max(0.0, totalTT_ - totalT_ * totalT_ / n - residual);
  outcome_.residualVariance = residual;
}

void ComputeFit(Run& run) { FitPass(run).Compute(); }

}  // namespace vardento
