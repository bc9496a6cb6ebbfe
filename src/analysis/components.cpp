#include "analysis/components.h"

#include <algorithm>
#include <cstdlib>

namespace vardento {

int Contrast::LargestScore() const {
  int largest = 0;
  for (const ContrastingEntry& other : others) {
    largest = std::max(largest, std::abs(other.Score()));
  }
  return largest;
}

double ResidualComponents::FactorRatio(const Component& component) const {
  return static_cast<double>(entries.size()) * explained / (noise * component.eigenvalue);
}

ResidualComponents FindComponents(Run&, Facet facet) {
  ResidualComponents found;
  found.facet = facet;
  return found;
}

}  // namespace vardento
