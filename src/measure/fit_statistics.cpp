#include "measure/fit_statistics.h"

#include <algorithm>
#include <cmath>

#include "measure/category_model.h"

namespace vardento {

MeanSquare MeanSquareZ(double sum, double variance, double df, char local) {
  df = std::max(df, 0.00001);
  const double meanSquare = sum / df;
  if (local == 'L') return {meanSquare, NaturalLog(std::max(meanSquare, 0.00001))};
  const double q = std::sqrt(std::max(variance, 0.00001)) / (3.0 * df);
  return {meanSquare, (std::pow(meanSquare, 0.33333334) - 1.0) / q};
}

float ZCode(double z, double meanSquare) {
  if (std::fabs(z) >= kFitCap) z = std::copysign(static_cast<double>(kFitCap), z);
  return static_cast<float>((std::round(100.0 * z) * 10.0 + meanSquare) * 0.001);
}

double StandardError(double information) {
  return 1.0 / std::sqrt(std::max(information, kLeastInformation));
}

FitValues FindFit(const FitSums& sums, const ControlSettings& settings) {
  MeanSquare outfit{}, infit{};
  // The variance of z squared is C / V^2 - 1 (its mean is 1), that of y squared C - V^2.
  const double outfitVariance = sums.outfitVariance - sums.count;
  if (settings.NORMAL) {
    outfit.standardised =
        (sums.squaredStandardised - sums.count) / std::sqrt(std::max(outfitVariance, kTiny));
    outfit.value = sums.squaredStandardised / std::max(sums.count, kTiny);
    infit.standardised =
        (sums.squaredResidual - sums.variance) / std::sqrt(std::max(sums.infitVariance, kTiny));
    infit.value = sums.squaredResidual / std::max(sums.variance, kTiny);
  } else {
    outfit = MeanSquareZ(sums.squaredStandardised, outfitVariance, sums.count, settings.LOCAL);
    infit = MeanSquareZ(sums.squaredResidual, sums.infitVariance, sums.variance, settings.LOCAL);
  }
  FitValues values;
  values.infit = static_cast<float>(std::min<double>(infit.value, kFitCap));
  values.outfit = static_cast<float>(std::min<double>(outfit.value, kFitCap));
  // LOCAL=Y rescales the values first: lower digits would be scaled with them.
  const bool coded = settings.LOCAL != 'Y';
  values.infitZ =
      coded ? ZCode(infit.standardised, values.infit) : static_cast<float>(infit.standardised);
  values.outfitZ =
      coded ? ZCode(outfit.standardised, values.outfit) : static_cast<float>(outfit.standardised);
  return values;
}

double HeldScore(const FitSums& sums, double extremeScore) {
  if (sums.score == 0) return std::min(sums.expected, extremeScore);
  if (sums.score == sums.maximum) return std::max(sums.expected, sums.maximum - extremeScore);
  return sums.score;
}

namespace {

// The displacement in the direction of the expected score, logits: distance of the log-odds of both
// scores over their slope per logit. False when the log-odds have no slope.
bool FindShift(const FitSums& sums, double score, double& shift) {
  const double here = SafeLogOdds(sums.expected, sums.maximum - sums.expected);
  const double below = SafeLogOdds(sums.expectedOffset, sums.maximum - sums.expectedOffset);
  const double slope = here - below;
  if (std::fabs(slope) < kTiny) return false;
  shift = (SafeLogOdds(score, sums.maximum - score) - here) / slope;
  return true;
}

}  // namespace

double FindPersonDisplacement(const FitSums& sums, double extremeScore) {
  const double score = HeldScore(sums, extremeScore);
  double shift = 0;
  if (FindShift(sums, score, shift)) return shift;
  // Not a measure any more, but of the right sign and no larger than 1.
  return (score - sums.expected) / std::max(sums.maximum, kTiny);
}

double FindItemDisplacement(const FitSums& sums, double extremeScore) {
  return -FindPersonDisplacement(sums, extremeScore);
}

void CorrelationRecord::Add(double x, double y, double weight) {
  if (weight == 0) return;
  n += weight;
  const double share = 1.0 / n;
  meanY += (y - meanY) * weight * share;
  meanX += (x - meanX) * weight * share;
  // The first observation has no spread yet.
  if (!(weight < n)) return;
  const double a = weight / (n - weight);
  varianceY += (meanY - y) * (meanY - y) * a - varianceY * share;
  varianceX += (meanX - x) * (meanX - x) * a - varianceX * share;
  covariance += (meanX - x) * (meanY - y) * a - covariance * share;
}

double CorrelationRecord::Correlation() const {
  if (!(n > 0) || varianceX == 0 || varianceY == 0) return 0;
  return covariance / std::sqrt(std::fabs(std::max(varianceX * varianceY, kTiny)));
}

void RunningSpread::Add(double z, double weight) {
  if (!(weight > 0)) return;
  exact_.n += weight;
  const double distance = z - exact_.mean;
  exact_.mean += distance * weight / exact_.n;
  exact_.variance += (distance * (z - exact_.mean) - exact_.variance) * weight / exact_.n;
  if (UsesSettled()) AddSettled(z, weight);
}

// Once it has divided by 0 it would not recover, so it is given up for good.
void RunningSpread::AddSettled(double z, double weight) {
  if (!started_) {
    started_ = true;
    settled_ = {std::trunc(weight), z, 0};
    return;
  }
  const double n = std::trunc(settled_.n + weight);
  if (n == 0 || n == weight) {
    dividesByZero_ = true;
    return;
  }
  settled_.mean += (z - settled_.mean) * weight / n;
  const double a = (z - settled_.mean) * weight / (n - weight);
  settled_.variance += (n - weight) * a * a - settled_.variance * weight / n;
  settled_.n = n;
}

double RunningSpread::SD() const {
  return std::sqrt(std::max((UsesSettled() ? settled_ : exact_).variance, 0.0));
}

// An entry that is already listed with a larger |z| stays where it is.
void EnterWorst(std::vector<WorstEntry>& list, int number, float z) {
  if (list.size() == kWorstListLength && z < list.back().z) return;
  const auto place = std::find_if(list.begin(), list.end(),
                                  [z](const WorstEntry& entry) { return !(entry.z > z); });
  const auto isThis = [number](const WorstEntry& entry) { return entry.number == number; };
  if (std::any_of(list.begin(), place, isThis)) return;
  const auto index = place - list.begin();
  const auto old = std::find_if(place, list.end(), isThis);
  if (old != list.end()) {
    list.erase(old);
  } else if (list.size() == kWorstListLength) {
    list.pop_back();
  }
  list.insert(list.begin() + index, WorstEntry{number, z});
}

}  // namespace vardento
