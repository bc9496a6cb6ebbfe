#include "measure/own_spread.h"

#include <algorithm>
#include <cmath>

#include "measure/category_model.h"
#include "measure/entry_values.h"
#include "measure/fit_statistics.h"

namespace vardento {

namespace {

void Rescale(const FacetArrays& arrays, const Array1<float>& values) {
  double n = 0, sum = 0, squares = 0;
  for (int i = 1; i <= values.Size(); ++i) {
    const double weight = arrays.WeightOf(i);
    if (!IsActive(arrays.status[i]) || !(weight > 0)) continue;
    n += weight;
    sum += values[i] * weight;
    squares += static_cast<double>(values[i]) * values[i] * weight;
  }
  // An S.D. would be sqrt(n squares - sum^2) / n. The sum stands as it is, not squared: the settled
  // form of this scale, which agrees with the S.D. as far as the mean is near 0.
  const double scale = std::sqrt(std::max(0.0, n * squares - sum)) / std::max(n, 0.01);
  // Without a spread to be told by, values stay.
  const double factor = scale > kTiny ? 1.0 / scale : 1.0;
  for (int i = 1; i <= values.Size(); ++i) {
    // An entry of weight 0 counts for nothing, yet is on the same scale.
    if (IsActive(arrays.status[i])) values[i] = ZCode(values[i] * factor, 0);
  }
}

}  // namespace

void RescaleByOwnSpread(Run& run) {
  for (const Facet facet : {Facet::Items, Facet::Persons}) {
    const FacetArrays arrays = ArraysOf(run, facet);
    Rescale(arrays, arrays.infitZ);
    Rescale(arrays, arrays.outfitZ);
  }
}

}  // namespace vardento
