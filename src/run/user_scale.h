// From the logits of the estimation to the units of the user and back. Arrays stay in logits; a
// Table or a file reads them through this record, so that another USCALE= costs nothing.
#pragma once

#include <cmath>

#include "run/facet.h"
#include "run/run.h"

namespace vardento {

class UserScale {
 public:
  // The scale of one side's measures, with its bias factor.
  UserScale(const Run& run, Facet facet)
      : UserScale(run.settings,
                  facet == Facet::Persons ? run.results.PersonBias : run.results.ItemBias) {}
  // The scale of distances that no bias factor applies to: landmarks of categories, steps.
  explicit UserScale(const ControlSettings& settings) : UserScale(settings, 1) {}

  // A measure: moved by UMEAN= and turned round by a negative USCALE=.
  float Measure(double logits) const { return static_cast<float>(logits * units_ + mean_); }
  // A difference of two measures, which keeps its sign from the measures.
  float Difference(double logits) const { return static_cast<float>(logits * units_); }
  // How far two points of a scale lie apart: its direction stays whatever the sign of USCALE=.
  float Distance(double logits) const { return static_cast<float>(logits * std::fabs(units_)); }
  // A standard error. PAIRED=Y: every comparison stands in the data twice.
  float Error(double logits) const {
    const double error = std::fabs(units_) * logits;
    return static_cast<float>(paired_ ? kPairedError * error : error);
  }
  double ToLogits(double measure) const { return (measure - mean_) / units_; }
  float DistanceToLogits(double distance) const {
    return static_cast<float>(std::fabs(distance / units_));
  }

 private:
  static constexpr double kPairedError = 1.4142;

  UserScale(const ControlSettings& settings, double bias)
      : units_(bias * settings.USCALE), mean_(settings.UMEAN), paired_(settings.PAIRED) {}

  double units_;  // user units in a logit
  double mean_;   // user measure of 0 logits
  bool paired_;
};

// The scale of lists of anchors: the user's, or with UANCHOR=N that of UASCALE= around 0.
class AnchorScale {
 public:
  explicit AnchorScale(const ControlSettings& settings)
      : units_(settings.UANCHOR ? settings.USCALE : settings.UASCALE),
        mean_(settings.UANCHOR ? settings.UMEAN : 0) {}
  // In logits; not finite for a value beyond a real's range.
  float Measure(float value) const { return (value - mean_) / units_; }
  float Distance(float value) const { return value / std::fabs(units_); }

 private:
  float units_, mean_;
};

}  // namespace vardento
