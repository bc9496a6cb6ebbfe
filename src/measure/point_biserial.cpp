#include "measure/point_biserial.h"

#include <cmath>

namespace vardento {

std::size_t PointBiserial::BytesFor(const Run& run) {
  return 2 * sizeof(double) *
         (static_cast<std::size_t>(run.NPERS) + static_cast<std::size_t>(run.settings.NI));
}

bool PointBiserial::Allocate(Run& run) {
  BlockPlan plan;
  plan.Add({&personCount_, &personSum_}, run.NPERS);
  plan.Add({&itemCount_, &itemSum_}, run.settings.NI);
  inUse_ = plan.Allocate(run.memory, block_);
  return inUse_;
}

void PointBiserial::BeginPass(int NI, bool correlating) {
  correlating_ = correlating;
  itemSums_.Assign(NI);
  if (correlating) return;
  for (double& value : itemCount_) value = 0;
  for (double& value : itemSum_) value = 0;
}

void PointBiserial::BeginPerson(int person) {
  person_ = person;
  personSums_ = Sums();
  if (correlating_) return;
  personCount_[person] = 0;
  personSum_[person] = 0;
}

void PointBiserial::Sums::Add(double x, double rest, double weight) {
  r += rest * weight;
  rr += rest * rest * weight;
  xr += x * rest * weight;
  xx += x * x * weight;
}

void PointBiserial::Add(int item, int x, double iw, double pw) {
  if (!correlating_) {
    personCount_[person_] += iw;
    personSum_[person_] += x * iw;
    itemCount_[item] += pw;
    itemSum_[item] += x * pw;
    return;
  }
  // Without anybody else on the item, or another item of the person, there is no rest.
  if (iw > 0 && pw < itemCount_[item]) {
    personSums_.Add(x, (itemSum_[item] - x * pw) / (itemCount_[item] - pw), iw);
  }
  if (pw > 0 && iw < personCount_[person_]) {
    itemSums_[item].Add(x, (personSum_[person_] - x * iw) / (personCount_[person_] - iw), pw);
  }
}

// Pearson's product-moment formula from sums; q is n^4 times the product of both variances.
bool PointBiserial::Correlate(double n, double sx, const Sums& sums, double& correlation) {
  const double q = (n * sums.xx - sx * sx) * (n * sums.rr - sums.r * sums.r);
  if (!(q > 0)) return false;
  correlation = (n * sums.xr - sx * sums.r) / std::sqrt(q);
  return true;
}

float PointBiserial::PersonCorrelation() const {
  double correlation = 0;
  Correlate(personCount_[person_], personSum_[person_], personSums_, correlation);
  return static_cast<float>(correlation);
}

void PointBiserial::FinishItem(int item, float& correlation) const {
  double value = 0;
  if (Correlate(itemCount_[item], itemSum_[item], itemSums_[item], value)) {
    correlation = static_cast<float>(value);
  }
}

}  // namespace vardento
