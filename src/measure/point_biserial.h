// Point-biserial correlations (PTBIS=Y): a score against the mean of the rest, the observation
// itself left out. The sums of one pass serve the correlations of the next.
#pragma once

#include "run/run.h"

namespace vardento {

class PointBiserial {
 public:
  static std::size_t BytesFor(const Run& run);
  // False when memory is refused.
  bool Allocate(Run& run);
  bool InUse() const { return inUse_; }

  // Begins a pass: `correlating` turns the sums of the last pass into correlations.
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
    double r = 0, rr = 0, xr = 0, xx = 0;
    void Add(double x, double rest, double weight);
  };
  static bool Correlate(double n, double sx, const Sums& sums, double& correlation);

  bool inUse_ = false;
  bool correlating_ = false;
  int person_ = 0;
  MemoryBlock block_;
  Array1<double> personCount_, personSum_, itemCount_, itemSum_;
  Vector1<Sums> itemSums_;
  Sums personSums_;
};

}  // namespace vardento
