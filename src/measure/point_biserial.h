// Point-biserial correlations (PTBIS=Y): Pearson's correlation of the scores on an item with the
// mean scores of its persons on their other items, and of a person's scores with the mean scores of
// the others on the same items. The observation itself is left out of the mean, or a short test
// would correlate with itself; means instead of sums, so that missing responses do no harm. With
// two categories it is the point-biserial. The sums of one pass serve the correlations of the next.
#pragma once

#include "run/run.h"

namespace vardento {

class PointBiserial {
 public:
  // Of the sums that stay from pass to pass, over NPERS and NI.
  static std::size_t BytesFor(const Run& run);
  // False when memory is refused: it is then not in use.
  bool Allocate(Run& run);
  bool InUse() const { return inUse_; }

  // Begins a pass: `correlating` turns the sums of the last pass into correlations, otherwise
  // counts and sums are made anew.
  void BeginPass(int NI, bool correlating);
  void BeginPerson(int person);
  // One response: x the ordered category, iw and pw the weights of item and person.
  void Add(int item, int x, double iw, double pw);
  // The correlation of the person in hand; 0 when it has none.
  float PersonCorrelation() const;
  // Changes `correlation` only when the item has one.
  void FinishItem(int item, float& correlation) const;

 private:
  struct Sums {
    // Of x the score and r the mean of the rest, both in score points.
    double r = 0, rr = 0, xr = 0, xx = 0;
    void Add(double x, double rest, double weight);
  };
  // Of all responses to measured items by measured persons, from the last pass that did not
  // correlate: weighted counts, and sums in score points.
  struct KeptSums {
    Array1<double> personCount, personSum, itemCount, itemSum;
    BlockPlan Plan(const Run& run);
  };
  // False when one of the two does not vary. n and sx: weighted count and sum of x.
  static bool Correlate(double n, double sx, const Sums& sums, double& correlation);

  bool inUse_ = false;
  bool correlating_ = false;
  int person_ = 0;  // in hand
  MemoryBlock block_;
  KeptSums kept_;
  Vector1<Sums> itemSums_;  // weighted by pw
  Sums personSums_;         // of the person in hand, weighted by iw
};

}  // namespace vardento
