// The fit pass: one walk over the data that turns the final measures into everything reported of a
// person, an item or a category. ComputeFit (measure/estimation.h) runs it. Residuals, mean-squares
// and their variances are those of Wright & Masters 1982, ch. 5; measure/fit_statistics.h has the
// formulas of an entry.
#pragma once

#include <vector>

#include "measure/fit_statistics.h"
#include "measure/observations.h"
#include "run/run.h"

namespace vardento {

// What one category position adds up over the observations of active persons on active items, by
// the pairs' weights. The model's part takes in every observation of the group: expectedCount sums
// p(k), information the variance of step k (per squared logit), expectedMeasure d p(k), variance
// and zVariance (k - E)^2 p(k) and the same over V. The observed part those in category k: y
// squared, z squared, d (logits).
struct CategoryFit {
  double expectedCount, information, observedZ, observedY, variance, zVariance, observedMeasure,
      expectedMeasure;
};

// The sums of the pass, cut from one block.
struct FitArrays {
  Array1<FitSums> items;                       // 1..NI
  Array1<CorrelationRecord> itemCorrelations;  // 1..NI, extreme persons included
  Array1<CategoryFit> categories;              // by position, 1..NCATS
  Array1<double> baseline;                     // E of each group at the mean measures, score points
  // By group: weighted count of missing responses of active pairs, and sum of their B - D, logits.
  Array1<double> missingCount, missingMeasure;
  BlockPlan Plan(const Run& run);
};

class FitPass {
 public:
  explicit FitPass(Run& run);
  // Persons, then items, categories and totals; ends the run without memory for its sums.
  void Compute();

 private:
  // The person in hand.
  struct PersonInHand {
    int number = 0;
    StatusByte status = 0;
    double measure = 0;             // B, logits
    double weight = 1;              // pw
    FitSums sums;                   // over items, by iw
    CorrelationRecord correlation;  // of scores with -D, so that it is positive where data fit
    float worstZ = 0;               // largest |z| of at least 2, else 0
  };

  void Open();
  void ClearCategories();
  void FindBaselines();
  void MeasurePerson(int number);
  void AddResponses(PersonInHand& person);
  void AddResponse(const ItemInHand& hand, std::uint8_t response, PersonInHand& person);
  void AddObservation(const ItemInHand& hand, int x, double w, PersonInHand& person);
  void AddPairExpectations(const ItemInHand& hand, double d, double w);
  void AddFit(const ItemInHand& hand, int x, const Evaluation& here, double d, double w,
              PersonInHand& person);
  void AddCategoryFit(const ItemInHand& hand, int x, double y, double zz, const Evaluation& here,
                      double d, double w);
  void CountHit(const ItemInHand& hand, int x, double y, double w);
  void ClosePerson(PersonInHand& person);
  void MeasureItem(int item);
  void CloseCategories();
  void CloseTotals();
  // True when the displacement shows at the printed precision.
  bool ShowsDisplacement(const FitSums& sums, double displacement, double bias) const;

  Run& run_;
  RunArrays& arrays_;
  const ControlSettings& settings_;
  FitOutcome& outcome_;
  bool correlates_;  // point-measure correlations are computed here (PTBIS=N)
  std::string zeroText_;  // of a measure of 0 as printed
  ItemWalk walk_;
  std::vector<ItemInHand> ascending_;  // all measured items from 1 to NI
  MemoryBlock block_;
  FitArrays sums_;
  PersonPowers here_, below_;              // at B and at B - 1
  std::vector<double> p_;                  // categories 0..MAXCAT of the pair in hand
  RunningSpread spread_;  // of z, by the weights of the pairs
  // Sums of t, t squared and z squared over all observations of active pairs, unweighted.
  double totalT_ = 0, totalTT_ = 0, totalZZ_ = 0;
  std::int64_t observations_ = 0;  // how many those are
};

}  // namespace vardento
