#include "measure/shell_sort.h"

#include <algorithm>
#include <cmath>

namespace vardento {
namespace {

double PowerOf3(std::size_t count) {
  return std::log(2.0 * static_cast<double>(count) + 0.1) / std::log(3.0);
}

int HalfOf(double power) { return std::max(1, static_cast<int>(std::pow(3.0, power) / 2)); }

}  // namespace

int FirstGap(std::size_t count) { return HalfOf(std::round(PowerOf3(count))); }

int FirstGapBelow(std::size_t count) { return HalfOf(std::floor(PowerOf3(count))); }

}  // namespace vardento
