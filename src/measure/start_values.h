// One "PROX" phase: the state that its passes share. EstimateStartValues (measure/estimation.h)
// runs it.
#pragma once

#include "measure/estimation_listener.h"
#include "measure/observations.h"
#include "measure/point_biserial.h"
#include "measure/scale_structure.h"
#include "run/run.h"

namespace vardento {

class StartValues {
 public:
  StartValues(Run& run, EstimationListener& listener) : run_(run), listener_(listener) {}
  // The head of the table; the first numbering of the categories unless the phase has run before.
  void Open();
  // One pass over persons, items and scales; the record of what it did. Begins by making the list
  // of measured items.
  ProxRecord RunPass();
  // Another pass follows, as the pass just run and the two ranges before it tell.
  bool MustContinue(const ProxRecord& record, const ProxRecord& last) const;
  bool HasSettled(const ProxRecord& record) const;
  void AdvancePhase();
  void LeaveTotals();

 private:
  // Sums of one person over the items of positive status.
  struct PersonSums {
    double count = 0, raw = 0, rawMax = 0, model = 0, modelMax = 0, d = 0, dd = 0;
    bool complete = false;
  };
  // Sums of one item over the persons of positive status.
  struct ItemSums {
    double score = 0, count = 0, rawMax = 0, model = 0, modelMax = 0, b = 0, bb = 0;
  };

  void OpenBiserial();
  void ClearPass();
  void PassOverPersons();
  void MeasurePerson(int person);
  PersonSums AddResponses(int person, StatusByte status);
  void AddObservation(const ItemInHand& hand, int x, StatusByte status, double b, double pw,
                      PersonSums& sums);
  StatusByte SettlePerson(StatusByte status, PersonSums& sums, float& correlation);
  void MovePerson(int person, StatusByte status, const PersonSums& sums);
  void PassOverItems();
  void MeasureItem(int item);
  StatusByte SettleItem(int item, StatusByte status);
  void MoveItem(int item, StatusByte status);
  void CentreMeasures();
  bool AllowsComplete() const;
  void KeepLargest(float change, StatusByte status);
  StatusByte ExtremeStatus(bool top) const;

  Run& run_;
  EstimationListener& listener_;
  PointBiserial biserial_;
  CategorySums categories_;
  // By item.
  Vector1<ItemSums> items_;
  Vector1<double> itemTotalScore_, itemTotalCount_;
  ItemWalk walk_;

  int iteration_ = 0;
  bool firstPass_ = true;
  bool counting_ = true;          // raw sums are rebuilt while status and structure still move
  bool correlationPass_ = false;  // the first pass behind counting
  bool completeAllowed_ = false;
  bool structureChanged_ = false;
  float largestChange_ = 0;
  double anchorShift_ = 0;
  double anchorWeight_ = 0;
};

}  // namespace vardento
