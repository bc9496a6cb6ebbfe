#include "measure/summary.h"

#include <algorithm>
#include <cmath>

#include "measure/entry_values.h"
#include "run/user_scale.h"

namespace vardento {

namespace {

// The running sums of one statistic, by the entries' weights.
class StatisticSum {
 public:
  // Nothing for a weight of 0.
  void Add(float value, double w) {
    if (!(w > 0)) return;
    Widen(value, value);
    weight_ += w;
    sum_ += value * w;
    squares_ += static_cast<double>(value) * value * w;
  }
  // Adds the sums of other entries.
  void Fold(const StatisticSum& other) {
    if (!other.used_) return;
    Widen(other.minimum_, other.maximum_);
    weight_ += other.weight_;
    sum_ += other.sum_;
    squares_ += other.squares_;
  }
  Statistic Close() const {
    Statistic closed{0, 0, maximum_, minimum_};
    if (!(weight_ > 0)) return closed;
    const double mean = sum_ / weight_;
    closed.mean = static_cast<float>(mean);
    closed.sd = static_cast<float>(std::sqrt(std::max(squares_ / weight_ - mean * mean, 0.0)));
    return closed;
  }

 private:
  // `used_`: no value stands for "none yet", as measures lie on both sides of 0.
  void Widen(float low, float high) {
    minimum_ = used_ ? std::min(minimum_, low) : low;
    maximum_ = used_ ? std::max(maximum_, high) : high;
    used_ = true;
  }

  double weight_ = 0, sum_ = 0, squares_ = 0;
  float minimum_ = 0, maximum_ = 0;
  bool used_ = false;
};

// What one side of the data adds up: active entries, and beside them the extreme ones, which have
// measures and errors but no fit.
struct FacetSums {
  StatisticSum score, count, measure, error, realError, infit, infitZ, outfit, outfitZ;
  StatisticSum extremeMeasure, extremeError;

  void Add(const EntryValues& values) {
    const double w = values.weight;
    if (IsExtreme(values.status)) {
      extremeMeasure.Add(values.measure, w);
      extremeError.Add(values.error, w);
    }
    if (!IsActive(values.status)) return;
    score.Add(values.score, w);
    count.Add(values.count, w);
    measure.Add(values.measure, w);
    error.Add(values.error, w);
    realError.Add(values.realError, w);
    infit.Add(values.infit, w);
    infitZ.Add(values.infitZ, w);
    outfit.Add(values.outfit, w);
    outfitZ.Add(values.outfitZ, w);
  }
};

StatisticSum Joined(StatisticSum extremes, const StatisticSum& others) {
  extremes.Fold(others);
  return extremes;
}

void CountStatus(const Array1<StatusByte>& status, FacetSummary& summary) {
  for (const StatusByte s : status) {
    if (s == Status::ExtremeHigh) ++summary.maximum;
    if (s == Status::ExtremeLow) ++summary.minimum;
    if (s == Status::NoResponses) ++summary.lacking;
    // Those that lost their responses on the way count with those that the user left out.
    if (s < Status::NoResponses) ++summary.deleted;
  }
}

void CloseStatistics(const FacetSums& sums, FacetSummary& summary) {
  summary.score = sums.score.Close();
  summary.count = sums.count.Close();
  summary.measure = sums.measure.Close();
  summary.error = sums.error.Close();
  summary.realError = sums.realError.Close();
  summary.infit = sums.infit.Close();
  summary.infitZ = sums.infitZ.Close();
  summary.outfit = sums.outfit.Close();
  summary.outfitZ = sums.outfitZ.Close();
  summary.allMeasure = Joined(sums.extremeMeasure, sums.measure).Close();
  summary.allError = Joined(sums.extremeError, sums.error).Close();
  // The real errors of all: those of the extremes are their model errors.
  summary.allRealError = Joined(sums.realError, sums.extremeError).Close();
}

SeparationValues SeparationBy(const Statistic& error, const Statistic& measure) {
  return Separation(error.sd, error.mean, measure.sd);
}

FacetSummary SumUpFacet(Run& run, Facet facet, int measured) {
  const FacetArrays arrays = ArraysOf(run, facet);
  FacetSums sums;
  for (int entry = 1; entry <= arrays.Count(); ++entry) {
    if (IsMeasured(arrays.status[entry])) sums.Add(ReadEntryValues(run, facet, entry));
  }
  FacetSummary summary;
  summary.measured = measured;
  CountStatus(arrays.status, summary);
  CloseStatistics(sums, summary);
  summary.separation = SeparationBy(summary.error, summary.measure);
  summary.realSeparation = SeparationBy(summary.realError, summary.measure);
  summary.allSeparation = SeparationBy(summary.allError, summary.allMeasure);
  summary.allRealSeparation = SeparationBy(summary.allRealError, summary.allMeasure);
  // The S.D. has the divisor n: over sqrt(n - 1) it gives what a sample's gives over sqrt(n).
  summary.meanError = summary.measure.sd / std::sqrt(std::max(1.0, measured - 1.0));
  return summary;
}

double ValidResponses(const Run& run, double meanCount) {
  constexpr double kMost = 99.9;  // 100 is said of complete data alone
  const double items = run.results.ActiveItems;
  const bool weighted = run.given.HasPersonWeights() || run.given.HasItemWeights();
  if (weighted || meanCount <= 0 || meanCount == items) return 0;
  return std::min(kMost, 100 * meanCount / std::max(1.0, items));
}

}  // namespace

SeparationValues Separation(double seSD, double seMean, double measureSD) {
  SeparationValues values;
  const double errors = seSD * seSD + seMean * seMean;
  const double observed = measureSD * measureSD;
  const double adjusted = observed - errors;
  values.RMSE = std::sqrt(std::max(errors, 0.0));
  if (adjusted > 0 && observed > 0 && values.RMSE > 0) {
    values.Reliability = adjusted / observed;
    values.AdjustedSD = std::sqrt(adjusted);
    values.SeparationIndex = values.AdjustedSD / values.RMSE;
  }
  return values;
}

void SumUp(Run& run) {
  Summary& summary = run.results.summary;
  summary = Summary();
  summary.persons = SumUpFacet(run, Facet::Persons, run.results.ActivePersons);
  summary.items = SumUpFacet(run, Facet::Items, run.results.ActiveItems);
  run.results.PersonsReported = summary.persons.Extreme() + run.results.ActivePersons;
  run.results.ItemsReported = summary.items.Extreme() + run.results.ActiveItems;
  summary.beyondCapacity = run.personsRead - run.NPERS;
  summary.validResponses = ValidResponses(run, summary.persons.count.mean);
  const UserScale scale(run.settings);
  summary.cutBelow = scale.Difference(run.results.rangeCut.below);
  summary.cutAbove = scale.Difference(run.results.rangeCut.above);
}

}  // namespace vardento
