#include "measure/point_biserial.h"

#include <cmath>

#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

bool PointBiserial::Allocate(Run& run) {
  const int persons = run.NPERS;
  const int items = run.settings.NI;
  const std::size_t bytes =
      2 * sizeof(double) * (static_cast<std::size_t>(persons) + static_cast<std::size_t>(items));
  inUse_ = block_.Allocate(run.memory, bytes);
  if (!inUse_) {
    ReportMessage(run, IntegerText(static_cast<int>(bytes)) +
                           " bytes of memory not available. Point-biserial computation failed.");
    return false;
  }
  BlockCutter cutter(block_);
  personCount_ = cutter.Cut<double>(persons);
  personSum_ = cutter.Cut<double>(persons);
  itemCount_ = cutter.Cut<double>(items);
  itemSum_ = cutter.Cut<double>(items);
  return true;
}

void PointBiserial::BeginPass(int NI, bool correlating) {
  correlating_ = correlating;
  itemSums_.assign(static_cast<std::size_t>(NI) + 1, Sums());
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
  if (iw > 0 && pw < itemCount_[item]) {
    personSums_.Add(x, (itemSum_[item] - x * pw) / (itemCount_[item] - pw), iw);
  }
  if (pw > 0 && iw < personCount_[person_]) {
    itemSums_[static_cast<std::size_t>(item)].Add(
        x, (personSum_[person_] - x * iw) / (personCount_[person_] - iw), pw);
  }
}

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
  if (Correlate(itemCount_[item], itemSum_[item], itemSums_[static_cast<std::size_t>(item)],
                value)) {
    correlation = static_cast<float>(value);
  }
}

}  // namespace vardento
