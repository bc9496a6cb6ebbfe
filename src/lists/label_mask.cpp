#include "lists/label_mask.h"

#include <algorithm>

namespace vardento {
namespace {

constexpr int kFit = 1;
constexpr int kFitUsedUp = 2;
constexpr int kOtherCharacter = -1;
constexpr int kLabelEnds = -2;
constexpr int kNotInSet = -4;

bool Between(char c, char a, char b) {
  const auto code = [](char x) { return static_cast<unsigned char>(x); };
  return code(c) >= std::min(code(a), code(b)) && code(c) <= std::max(code(a), code(b));
}

// Whether `c` is in the set, whose text stands between "{" and "}". A "-" at its start or end is
// itself, as is "--".
bool IsInSet(std::string_view set, char c) {
  bool hit = false;
  for (std::size_t i = 0; i < set.size(); ++i) {
    const bool isSign = set[i] == '-' && i + 1 < set.size();
    if (isSign && set[i + 1] == '-') {
      ++i;
      hit = hit || c == '-';
    } else if (isSign && i > 0) {
      hit = hit || Between(c, set[i - 1], set[i + 1]);
      ++i;
    } else {
      hit = hit || c == set[i];
    }
  }
  return hit;
}

}  // namespace

int MatchLabel(std::string_view mask, std::string_view label) {
  std::size_t l = 0;
  for (std::size_t m = 0; m < mask.size(); ++m, ++l) {
    if (mask[m] == '*') return kFit;
    if (mask[m] == '?') continue;
    if (l >= label.size()) return kLabelEnds;
    if (mask[m] == '{') {
      const std::size_t end = std::min(mask.find('}', m), mask.size());
      if (!IsInSet(mask.substr(m + 1, end - m - 1), label[l])) return kNotInSet;
      m = end;
    } else if (mask[m] != label[l]) {
      return kOtherCharacter;
    }
  }
  return kFitUsedUp;
}

}  // namespace vardento
