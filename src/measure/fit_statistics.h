// The formulas of the fit pass, each for one person, item or observation.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "run/control_settings.h"
#include "run/results.h"

namespace vardento {

inline constexpr float kFitCap = 9.9F;  // largest mean-square and standardised value kept
inline constexpr std::size_t kWorstListLength = 50;
inline constexpr double kUnexpected = 2.0;  // |z| from which a response is listed

// What one person, or one item, adds up over its observations.
struct FitSums {
  double count = 0;
  double raw = 0;                 // score in the scale of the data
  double score = 0, maximum = 0;  // as the model letter counts them
  double expected = 0;            // at d
  double expectedOffset = 0;      // at d - 1
  double variance = 0;
  double squaredResidual = 0;      // y squared
  double squaredStandardised = 0;  // z squared
  double infitVariance = 0;        // max(C - V squared, 0)
  double outfitVariance = 0;       // C / V squared
  // Unweighted, for the variance totals.
  double t = 0, tt = 0;
};

struct FitValues {
  float infit = 1, infitZ = 0, outfit = 1, outfitZ = 0;
};

// Mean-squares, held at 9.9, and standardised values of an active person or item.
FitValues FindFit(const FitSums& sums, const ControlSettings& settings);
// Mean-square sum / df and its standardised form: cube root, or logarithm under LOCAL=L.
struct MeanSquare {
  double value, standardised;
};
MeanSquare MeanSquareZ(double sum, double variance, double df, char local);
// The standardised value to two decimals, held within 9.9, with the mean-square in its lower
// digits: the tie-break of every order by standardised fit.
float ZCode(double z, double meanSquare);

// How far the measure would move if it were estimated from these data alone, logits: up toward a
// higher score for a person, down for an item.
double FindPersonDisplacement(const FitSums& sums, double extremeScore);
double FindItemDisplacement(const FitSums& sums, double extremeScore);
// The score that the displacement starts from: an extreme one is moved in from its end.
double HeldScore(const FitSums& sums, double extremeScore);

// A weighted correlation of y on x, kept up with every observation. With weights other than 1 the
// variances shrink by 1/n at each, not by weight/n: the settled form, on which comparisons with
// earlier runs rely.
struct CorrelationRecord {
  double n = 0, meanY = 0, meanX = 0, varianceY = 0, varianceX = 0, covariance = 0;
  void Add(double x, double y, double weight);
  double Correlation() const;
};

// Mean and S.D. of the standardised residuals. With weights the count is cut to a whole number at
// each observation: the settled form. Where that would divide by 0 (weights that stay below 1) the
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
  bool dividesByZero_ = false;
  bool started_ = false;
  Moments exact_, settled_;
};

// Keeps the most unexpected entries, largest first, each entry once.
void EnterWorst(std::vector<WorstEntry>& list, int number, float z);

// The 2-byte entry of the residual file for one observation of an active pair. `kind` is PRCOMP=.
struct ResidualTerms {
  int x, top;
  double y, z, variance, probability;  // residual, standardised residual, V, p(x)
};
std::int16_t ResidualEntry(char kind, const ResidualTerms& terms);

}  // namespace vardento
