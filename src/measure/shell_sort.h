// The one sort by which Tables order their entries. Keys that nearly agree count as equal, so what
// stands among them depends on the way of sorting too: it is the same on every machine.
#pragma once

#include <cstddef>
#include <vector>

namespace vardento {

// The first gap of a Shell sort of `count` entries: half of the power of 3 that is nearest to twice
// their number. Of the two whole numbers next to that half the lower one, so that a gap of 1 comes
// last for every length.
int FirstGap(std::size_t count);
// The same from the largest such power that is not above twice their number.
int FirstGapBelow(std::size_t count);

// `isBefore(a, b)` tells whether entry a stands in front of entry b.
template <class Comparison>
void ShellSort(std::vector<int>& entries, int firstGap, Comparison isBefore) {
  for (auto gap = static_cast<std::size_t>(firstGap); gap > 0; gap /= 3) {
    for (std::size_t i = gap; i < entries.size(); ++i) {
      const int entry = entries[i];
      std::size_t place = i;
      while (place >= gap && isBefore(entry, entries[place - gap])) {
        entries[place] = entries[place - gap];
        place -= gap;
      }
      entries[place] = entry;
    }
  }
}

}  // namespace vardento
