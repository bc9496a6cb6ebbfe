// Principal components of residuals: what the measures leave unexplained, looked through for
// further dimensions. The residuals of the entries of one side are correlated over the other side
// (analysis/residual_correlations.h), and up to five components are taken out of the correlations,
// each by power iteration (Hotelling 1933), which is then deflated.
#pragma once

#include <vector>

#include "platform/memory.h"
#include "run/facet.h"
#include "run/run.h"

namespace vardento {

// How the responses of one entry of the other side to the two ends of a component lie: more than
// half a score point above what the measures expect, below it, or as expected.
struct ContrastCounts {
  int high = 0, expected = 0, low = 0;  // entries, at most 9 together
};
struct ContrastingEntry {
  int entry = 0;  // of the other side
  ContrastCounts top, bottom;
  // Above 0: favours the top of the component; below 0: its bottom.
  int Score() const { return top.high - top.low - bottom.high + bottom.low; }
};

// The two ends of a component, and how each entry of the other side stands to them.
struct Contrast {
  std::vector<int> top;     // entries of the highest loadings, highest first; at most 9
  std::vector<int> bottom;  // as many of the lowest, lowest first
  std::vector<ContrastingEntry> others;  // in entry order
  int LargestScore() const;              // the largest |Score()|; 0: nothing to tell
};

struct Component {
  int number = 0;            // 1 to 5, in the order of extraction
  double eigenvalue = 0;     // residual variance units, of which each entry has one
  Vector1<double> loadings;  // by entry, 1..N; 0 for entries that took no part
  // Among the entries that took part.
  double smallest = 0, largest = 0;
  Contrast contrast;  // no entries: too few to tell the ends apart
};

struct ResidualComponents {
  Facet facet = Facet::Items;
  std::vector<int> entries;  // that took part, ascending: n of them, active all
  // The same by their loading on the first component, highest first; closer than 0.0001 they go by
  // number.
  std::vector<int> order;
  // Variance in units of the model's: what the measures explain (V) and what they don't (U).
  double explained = 0, noise = 0;
  std::vector<Component> components;

  // What the measures explain against what a component explains, and against all the noise.
  double FactorRatio(const Component& component) const;
  double NoiseRatio() const { return explained / noise; }
};

// Correlates when that has not been done, and extracts. Shows its progress on the console. Without
// components when the residuals or memory can't be had, which is told, when the user stops, or
// when fewer than two entries are active.
ResidualComponents FindComponents(Run& run, Facet facet);

}  // namespace vardento
