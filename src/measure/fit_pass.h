// The fit pass: one walk over the data that turns the final measures into everything reported of a
// person, an item or a category. ComputeFit (measure/estimation.h) runs it.
#pragma once

#include <vector>

#include "measure/fit_statistics.h"
#include "measure/observations.h"
#include "run/run.h"

namespace vardento {

// What one category position adds up over the observations of active persons on active items.
struct CategoryFit {
  double expectedCount, information, observedZ, observedY, variance, zVariance, observedMeasure,
      expectedMeasure;
};

// The sums of the pass, cut from one block.
struct FitArrays {
  Array1<FitSums> items;
  Array1<CorrelationRecord> itemCorrelations;
  Array1<CategoryFit> categories;               // by position
  Array1<double> baseline;                      // E of each group at the mean measures
  Array1<double> missingCount, missingMeasure;  // by group
  BlockPlan Plan(const Run& run);
};

class FitPass {
 public:
  explicit FitPass(Run& run);
  void Compute();

 private:
  // The person in hand.
  struct PersonInHand {
    int number = 0;
    StatusByte status = 0;
    double measure = 0;  // logits
    double weight = 1;
    FitSums sums;
    CorrelationRecord correlation;
    float worstZ = 0;
  };

  void Open();
  void OpenResiduals();
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
  bool writesResiduals_;
  std::string zeroText_;
  ItemWalk walk_;
  std::vector<ItemInHand> ascending_;  // all measured items from 1 to NI
  MemoryBlock block_;
  FitArrays sums_;
  PersonPowers here_, below_;  // at B and at B - 1
  std::vector<double> p_;
  std::vector<std::int16_t> residualRow_;
  RunningSpread spread_;
  double totalT_ = 0, totalTT_ = 0, totalZZ_ = 0;
  std::int64_t observations_ = 0;
};

}  // namespace vardento
