#include "lists/label_mask.h"

#include <gtest/gtest.h>

namespace vardento {
namespace {

TEST(LabelMask, FitsAndMisfits) {
  const struct {
    const char* mask;
    const char* label;
    int result;
  } cases[] = {
      {"*", "", 1},
      {"A*", "Ann", 1},
      {"A*", "a1", -1},
      {"?B*", "AB", 1},
      {"?B*", "1B12", 1},
      {"?B*", "B", -2},
      {"ABC*", "ABCD", 1},
      {"ABC*", "AB", -2},
      {"?*", "", 1},
      {"?", "", 2},
      {"AB", "ABCD", 2},
      {"AB", "AB", 2},
      {"{AB}*", "B", 1},
      {"{A-B}*", "B", 1},
      {"{B-A}*", "A", 1},
      {"{A-B}*", "C", -4},
      {"{AB}*", "", -2},
      {"{a--c}x*", "-x", 1},
      {"{a--c}x*", "bx", -4},
      {"{-A}*", "-", 1},
      {"{A-}*", "-", 1},
      {"{A-C-E}*", "D", 1},
      {"{}*", "A", -4},
      {"{AB", "B", 2},
      {"x{0-9}?{ab}*", "x4-b", 1},
      {"x{0-9}?{ab}*", "x4-c", -4},
      {"{\xe0-\xff}*", "\xe9", 1},
      {"{?}*", "A", -4},
      {"A b*", "A b", 1},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(MatchLabel(c.mask, c.label), c.result) << c.mask << " on " << c.label;
  }
}

}  // namespace
}  // namespace vardento
