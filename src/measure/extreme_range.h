// The "extreme 5" range of a set of measures: how far its highest lie above its lowest. The start
// values stop when it no longer grows; the mean of several is less at the mercy of one entry.
#pragma once

#include <array>

namespace vardento {

// Keeps the few highest and lowest of the values it is given.
class ExtremeRange {
 public:
  // At most 5 values on each side, and at most half of the items, whichever side they are of.
  explicit ExtremeRange(int itemCount);
  void Add(float value);
  // The mean over i of (i-th highest - i-th lowest), logits; 0 when the lists cover everybody.
  float Range() const;
  int Count() const { return added_; }

 private:
  int limit_;                       // values kept on each side, at most 5
  int kept_ = 0;                    // so far, on each side
  int added_ = 0;                   // entries seen
  std::array<float, 6> highest_{};  // logits, highest first; one place for the newcomer
  std::array<float, 6> lowest_{};   // logits, lowest first
};

}  // namespace vardento
