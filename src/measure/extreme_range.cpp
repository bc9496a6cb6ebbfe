#include "measure/extreme_range.h"

#include <algorithm>
#include <utility>

namespace vardento {

ExtremeRange::ExtremeRange(int itemCount) : limit_(std::min(5, (itemCount + 1) / 2)) {}

void ExtremeRange::Add(float value) {
  ++added_;
  auto place = static_cast<std::size_t>(kept_);
  highest_[place] = value;
  lowest_[place] = value;
  for (std::size_t i = place; i > 0 && highest_[i] > highest_[i - 1]; --i) {
    std::swap(highest_[i], highest_[i - 1]);
  }
  for (std::size_t i = place; i > 0 && lowest_[i] < lowest_[i - 1]; --i) {
    std::swap(lowest_[i], lowest_[i - 1]);
  }
  kept_ = std::min(kept_ + 1, limit_);
}

float ExtremeRange::Range() const {
  // Of so few, the same entry would be among the highest and the lowest.
  if (kept_ == 0 || kept_ >= added_) return 0;
  double sum = 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(kept_); ++i) {
    sum += static_cast<double>(highest_[i]) - lowest_[i];
  }
  return static_cast<float>(sum / kept_);
}

}  // namespace vardento
