// The fit pass: one walk over the data that turns the final measures into everything reported of a
// person, an item or a category. ComputeFit (measure/estimation.h) runs it.
#pragma once

#include <vector>

#include "measure/fit_statistics.h"
#include "measure/observations.h"
#include "run/run.h"

namespace vardento {

class FitPass {
 public:
  explicit FitPass(Run& run);
  FitSummary Compute();

 private:
  // What one category position adds up.
  struct CategoryFit {
    double expectedCount, information, observedZ, observedY, variance, zVariance, observedMeasure,
        expectedMeasure;
  };
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
  void AddPersonSlots(const PersonInHand& person, const PersonWorkRecord& record);
  void ReportSpread();
  void MeasureItem(int item);
  void AddItemSlots(int item);
  void CloseCategories();
  void RescaleLocal();
  void RescaleLocalSide(Array1<float> infitZ, Array1<float> outfitZ, Array1<StatusByte> status,
                        Array1<float> weights, bool weighted, int infitSlot, int outfitSlot);
  void FoldExtremes();
  // True when the displacement shows at the printed precision.
  bool ShowsDisplacement(const FitSums& sums, double displacement, double bias) const;
  float ScaleError(double variance, double bias) const;
  float ScaleMeasure(double measure, double bias) const;

  Run& run_;
  RunArrays& arrays_;
  const ControlSettings& settings_;
  FitSummary summary_;
  bool correlates_;  // point-measure correlations are computed here (PTBIS=N)
  bool writesResiduals_;
  std::string zeroText_;
  ItemWalk walk_;
  std::vector<ItemInHand> ascending_;  // all measured items from 1 to NI
  MemoryBlock block_;
  Array1<FitSums> items_;
  Array1<CorrelationRecord> itemCorrelations_;
  Array1<CategoryFit> categories_;
  Array1<double> baseline_;                       // E of each group at the mean measures
  Array1<double> missingCount_, missingMeasure_;  // by group
  PersonPowers here_, below_;                     // at B and at B - 1
  std::vector<double> p_;
  std::vector<std::int16_t> residualRow_;
  RunningSpread spread_;
  double totalT_ = 0, totalTT_ = 0, totalZZ_ = 0;
  std::int64_t observations_ = 0;
};

}  // namespace vardento
