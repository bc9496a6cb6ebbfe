// One "PROX" phase: the state that its passes share. EstimateStartValues (measure/estimation.h)
// runs it.
//
// The normal approximation (Cohen 1979; Wright & Stone 1979) takes the measures that an entry met
// as normally distributed: B = mean of D + sqrt(1 + variance of D / 2.65) x log-odds of the score,
// and D likewise from the persons, with the log-odds of the score that was missed. Mean and
// variance are over the items that the person met, the persons that the item met, so that missing
// responses do no harm. With complete data the passes approach the closed form of
// Wright & Stone; here they also settle who is extreme and which categories there are, which no
// closed form does.
#pragma once

#include <vector>

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
  // Without memory for point-biserial correlations the run goes on without them.
  void Open();
  // One pass over persons, items and scales; the record of what it did. Begins by making the list
  // of measured items.
  ProxRecord RunPass();
  // Another pass follows, as the pass just run and the two ranges before it tell: the spread of the
  // measures grows from pass to pass toward what the closed form would give.
  bool MustContinue(const ProxRecord& record, const ProxRecord& last) const;
  // Nothing moves that the table would show, or the limit of passes is reached.
  bool HasSettled() const;
  // From counting to the correlation pass, and on to passes that only refine measures.
  void AdvancePhase();
  // The items' total scores and counts, from the first pass, into the run's arrays.
  void LeaveTotals();

 private:
  // Sums of one person over the items of positive status that it answered, weighted by iw.
  struct PersonSums {
    double count = 0;                // responses
    double raw = 0, rawMax = 0;      // score and its maximum, categories counted as score points
    double model = 0, modelMax = 0;  // the same as the model letters count, behind counting
    double d = 0, dd = 0;            // D and D squared, logits
    bool complete = false;           // every item that it meets is answered, all letters "R"
  };
  // Sums of one item over the persons of positive status who answered it, weighted by pw. Counts
  // and raw scores stay as the last counting pass left them.
  struct ItemSums {
    double score = 0, count = 0, rawMax = 0;  // score points, responses, score points
    double model = 0, modelMax = 0;           // as the item's letter counts, behind counting
    double b = 0, bb = 0;                     // B and B squared, logits
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
  // No active item has moved from `before` (by item, from 0) by what would show.
  bool ItemsStand(const std::vector<float>& before) const;

  Run& run_;
  EstimationListener& listener_;
  PointBiserial biserial_;
  CategorySums categories_;  // of active persons on active items
  // By item, 1..NI.
  Vector1<ItemSums> items_;
  // Over all measured persons, those included that the first pass finds extreme.
  Vector1<double> itemTotalScore_, itemTotalCount_;
  ItemWalk walk_;  // of the pass in hand

  int iteration_ = 0;    // passes begun
  int stillPasses_ = 0;  // the last ones, in which neither items nor steps moved
  bool firstPass_ = true;
  bool counting_ = true;          // raw sums are rebuilt while status and structure still move
  bool correlationPass_ = false;  // the first pass behind counting
  bool completeAllowed_ = false;  // expected scores do not depend on what was answered
  // Of the pass in hand.
  bool structureChanged_ = false;  // a status or a category has moved: count once more
  float largestChange_ = 0;        // of an active entry's measure, signed, logits
  double anchorShift_ = 0;         // sum over anchored items of (estimate - anchor) iw, logits
  double anchorWeight_ = 0;        // sum of their iw
};

}  // namespace vardento
