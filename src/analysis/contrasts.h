// Who responds differently to the two ends of a component: persons to items, or items to persons.
#pragma once

#include <vector>

#include "analysis/components.h"

namespace vardento {

// Finds the contrasts of the components of one side, in the order of extraction: each leaves marks
// for the next.
class ContrastFinder {
 public:
  ContrastFinder(Run& run, Facet facet, const std::vector<int>& order);
  Contrast Find(const Vector1<double>& loadings);

 private:
  std::size_t CountPicks(const Vector1<double>& loadings);
  void Pick(const Vector1<double>& loadings, Contrast& contrast);
  void CountResponses(Contrast& contrast);
  void CountOf(int person, const std::uint8_t* row, int item, ContrastCounts& counts);

  Run& run_;
  Facet facet_;
  const std::vector<int>& order_;
  Vector1<char> marked_;   // by entry: picked by the component before
  std::vector<double> p_;  // categories 0..MAXCAT of the pair in hand
};

}  // namespace vardento
