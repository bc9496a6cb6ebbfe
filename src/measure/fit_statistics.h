// The formulas of the fit pass, each for one person, item or observation. Of an observation with
// score s, expected score E, variance V and fourth central moment C: residual y = s - E, score
// points; standardised residual z = y / sqrt(V) (Wright & Masters 1982, ch. 5).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "run/control_settings.h"
#include "run/results.h"

namespace vardento {

inline constexpr double kLeastInformation = 0.001;  // keeps a standard error finite
inline constexpr float kFitCap = 9.9F;  // largest mean-square and standardised value kept
inline constexpr std::size_t kWorstListLength = 50;
inline constexpr double kUnexpected = 2.0;  // |z| from which a response is listed

// What one person adds up over the items it met, by their weights, or one item over its persons by
// theirs. Up to `variance` over the other side's active entries; from `squaredResidual` on over
// observations of active pairs.
struct FitSums {
  double count = 0;
  double raw = 0;                  // score in the scale of the data
  double score = 0, maximum = 0;   // as the model letter counts them
  double expected = 0;             // at d = B - D, score points
  double expectedOffset = 0;       // at d - 1
  double variance = 0;             // V: Fisher information about the measure, per squared logit
  double squaredResidual = 0;      // y squared
  double squaredStandardised = 0;  // z squared
  double infitVariance = 0;        // max(C - V squared, 0): the variance of y squared
  double outfitVariance = 0;       // C / V squared: less 1, the variance of z squared
  // Unweighted, for the variance totals: t is the score's distance from what the group's scale
  // gives at the mean measures, in units of sqrt(V).
  double t = 0, tt = 0;
};

struct FitValues {
  float infit = 1, infitZ = 0, outfit = 1, outfitZ = 0;
};

// The standard error of a measure or a step, logits: 1 / sqrt(Fisher information), which for the
// Rasch family is the sum of the variances of the scores. All other measures are taken as known.
double StandardError(double information);

// Mean-squares, held at 9.9, and standardised values of an active person or item (Wright & Masters
// 1982, ch. 5). OUTFIT, the mean of z squared, answers to single surprises; INFIT, y squared over
// V, weighs each response by its information. A weight stands for so many observations alike: sums
// and their variances both grow with it. NORMAL=Y takes the sums themselves as normal, without the
// cube root.
FitValues FindFit(const FitSums& sums, const ControlSettings& settings);
// Mean-square sum / df (1 is expected) and its standardised form: the cube root, which makes a
// chi-square nearly normal (Wilson & Hilferty 1931), or the logarithm under LOCAL=L. `variance` is
// that of the sum, so q = sqrt(variance) / df is the S.D. of the mean-square. Wright & Masters 1982
// add q / 3 to 3 (ms^(1/3) - 1) / q, as the mean of a cube root lies below 1; the settled form goes
// without, so that a mean-square of 1 is always 0. Floors keep an empty sum finite.
struct MeanSquare {
  double value, standardised;
};
MeanSquare MeanSquareZ(double sum, double variance, double df, char local);
// The standardised value to two decimals, held within 9.9, with the mean-square (at most 9.9) in
// its lower digits: the tie-break of every order by standardised fit.
float ZCode(double z, double meanSquare);

// How far the measure would move if it were estimated from these data alone, logits: up toward a
// higher score for a person, down for an item. One whole step of the joint iteration's secant, from
// d - 1 to d: near 0 where that has converged, and of anchored entries the misfit of the anchor.
double FindPersonDisplacement(const FitSums& sums, double extremeScore);
double FindItemDisplacement(const FitSums& sums, double extremeScore);
// The score that the displacement leads to: an extreme one is moved in from its end, score points,
// or as far as the expected score where that lies further out.
double HeldScore(const FitSums& sums, double extremeScore);

// A weighted correlation of y (score) and x (logits of the other side's measure), kept up with
// every observation by running means (Welford 1962; West 1979 for weights): in one pass, and
// without the digits that sums of squares lose. Pearson's, which is called point-measure here. n is
// the sum of weights, variances are over n. With weights other than 1 the variances shrink by 1/n
// at each, not by weight/n as West has it: the settled form, on which comparisons with earlier runs
// rely.
struct CorrelationRecord {
  double n = 0, meanY = 0, meanX = 0, varianceY = 0, varianceX = 0, covariance = 0;
  void Add(double x, double y, double weight);
  // 0 without observations or where one of the two does not vary.
  double Correlation() const;
};

// Mean and S.D. of the standardised residuals, 0 and 1 where data fit (Welford 1962). With weights
// the count is cut to a whole number at each observation, and a new square weighs by w^2 where West
// 1979 has w: the settled form. Where that would divide by 0 (weights that stay below 1) the
// weighted mean and S.D. stand in for it.
class RunningSpread {
 public:
  explicit RunningSpread(bool weighted) : weighted_(weighted) {}
  void Add(double z, double weight);
  double Mean() const { return (UsesSettled() ? settled_ : exact_).mean; }
  double SD() const;

 private:
  struct Moments {
    double n = 0, mean = 0, variance = 0;
  };
  bool UsesSettled() const { return weighted_ && !dividesByZero_; }
  void AddSettled(double z, double weight);

  bool weighted_;
  bool dividesByZero_ = false;  // the settled form has no value any more
  bool started_ = false;
  Moments exact_, settled_;  // West 1979, and the form with whole counts
};

// Keeps the most unexpected entries, largest first, each entry once, at most 50: by its largest
// |z|.
void EnterWorst(std::vector<WorstEntry>& list, int number, float z);

}  // namespace vardento
