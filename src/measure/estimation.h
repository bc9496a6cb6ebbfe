// The phases of the measurement, in the order in which they run.
#pragma once

#include <vector>

#include "measure/estimation_records.h"
#include "run/run.h"

namespace vardento {

// The normal-approximation phase ("PROX"): settles extreme entries and the structure of the scales,
// leaves measures in logits. Ends the run when no active person or item is left. Run once more
// after observations were dropped it goes on from the statuses and scales that the first phase
// left.
void EstimateStartValues(Run& run, EstimationListener& listener);
// Makes the responses of active persons to active items missing where the person is further below
// the item than CUTLO= or further above it than CUTHI=, which become distances in logits. True when
// any was dropped: EstimateStartValues must then run once more.
bool DropOutOfRange(Run& run, EstimationListener& listener);
// Looks for subsets of persons and items that nothing in the data ties to each other; warns of them
// and leaves run.connectivityText. Nothing when there is no memory for it or the user stops it.
void CheckConnectivity(Run& run);
// The joint maximum likelihood iteration ("UCON").
Outcome EstimateJoint(Run& run, EstimationListener& listener);

// Mean, S.D., maximum and minimum of one statistic; S.D. over the population.
struct StatSlot {
  double weight = 0, sum = 0, squares = 0;
  float minimum = 0, maximum = 0;
  bool used = false;
  float mean = 0, sd = 0;            // once the fit pass is over
  void Add(double value, double w);  // nothing for a weight of 0
  void Fold(const StatSlot& other);  // adds another slot's sums to this one's
  void Close();                      // turns the sums into mean and S.D.
};

// A most unexpected person or item: its number and the largest |z| of its responses.
struct WorstEntry {
  int number = 0;
  float z = 0;
};

struct FitSummary {
  StatSlot slots[25];                                // index 1..24; see the constants below
  std::vector<WorstEntry> worstItems, worstPersons;  // at most 50, largest first
  double itemVariance = 0, personVariance = 0, residualVariance = 0;  // totals for components
  const StatSlot& operator[](int slot) const { return slots[slot]; }
};

// Slots 1-8 active persons, 9-16 active items: raw score, count, measure, model S.E., INFIT
// mean-square, INFIT standardised, OUTFIT mean-square, OUTFIT standardised (offset 0 to 7).
inline constexpr int kPersonSlots = 1, kItemSlots = 9;
inline constexpr int kPersonRealError = 17, kItemRealError = 18;
// With extreme entries: measures, model S.E., real S.E.
inline constexpr int kAllPersonMeasures = 19, kAllPersonErrors = 20, kAllPersonRealErrors = 21;
inline constexpr int kAllItemMeasures = 22, kAllItemErrors = 23, kAllItemRealErrors = 24;

// Fit statistics, standard errors, displacements; measures become user-scaled.
FitSummary ComputeFit(Run& run);

struct SeparationValues {
  double RMSE = 0, AdjustedSD = 0, SeparationIndex = 0, Reliability = 0;
};
SeparationValues Separation(double seSD, double seMean, double measureSD);

// The landmarks of every category: half points, score points, Thurstone thresholds. The two
// adjustments are HIADJ= and LOWADJ= or what a Table request puts in their place.
void ComputeCategoryPoints(Run& run, float highAdjustment, float lowAdjustment);

}  // namespace vardento
