#include "measure/point_biserial.h"

#include <cmath>

#include "data/work_files.h"

namespace vardento {

BlockPlan PointBiserial::KeptSums::Plan(const Run& run) {
  BlockPlan plan;
  plan.Add({&personCount, &personSum}, run.NPERS);
  plan.Add({&itemCount, &itemSum}, run.settings.NI);
  return plan;
}

std::size_t PointBiserial::BytesFor(const Run& run) { return KeptSums().Plan(run).Bytes(); }

bool PointBiserial::Allocate(Run& run) {
  inUse_ = TryTakeBlock(run, kept_.Plan(run), block_);
  return inUse_;
}

void PointBiserial::BeginPass(int NI, bool correlating) {
  correlating_ = correlating;
  itemSums_.Assign(NI);
  if (correlating) return;
  for (double& value : kept_.itemCount) value = 0;
  for (double& value : kept_.itemSum) value = 0;
}

void PointBiserial::BeginPerson(int person) {
  person_ = person;
  personSums_ = Sums();
  if (correlating_) return;
  kept_.personCount[person] = 0;
  kept_.personSum[person] = 0;
}

void PointBiserial::Sums::Add(double x, double rest, double weight) {
  r += rest * weight;
  rr += rest * rest * weight;
  xr += x * rest * weight;
  xx += x * x * weight;
}

void PointBiserial::Add(int item, int x, double iw, double pw) {
  if (!correlating_) {
    kept_.personCount[person_] += iw;
    kept_.personSum[person_] += x * iw;
    kept_.itemCount[item] += pw;
    kept_.itemSum[item] += x * pw;
    return;
  }
  // Without anybody else on the item, or another item of the person, there is no rest.
  if (iw > 0 && pw < kept_.itemCount[item]) {
    personSums_.Add(x, (kept_.itemSum[item] - x * pw) / (kept_.itemCount[item] - pw), iw);
  }
  if (pw > 0 && iw < kept_.personCount[person_]) {
    itemSums_[item].Add(x, (kept_.personSum[person_] - x * iw) / (kept_.personCount[person_] - iw),
                        pw);
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
  Correlate(kept_.personCount[person_], kept_.personSum[person_], personSums_, correlation);
  return static_cast<float>(correlation);
}

void PointBiserial::FinishItem(int item, float& correlation) const {
  double value = 0;
  if (Correlate(kept_.itemCount[item], kept_.itemSum[item], itemSums_[item], value)) {
    correlation = static_cast<float>(value);
  }
}

}  // namespace vardento
