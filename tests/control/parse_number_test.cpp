#include "control/parse_number.h"

#include <gtest/gtest.h>

namespace vardento {
namespace {

TEST(ParseNumber, ReadsWhatNumbersAreMadeOf) {
  const struct {
    std::string text;
    float value;
  } good[] = {
      {"12", 12},
      {"-1.5", -1.5F},
      {".25", .25F},
      {"3.", 3},
      {".", 0},
      {"-.", 0},
      {"-0", 0},
      {"0.005", .005F},
      {"0001", 1},
      {"32000", 32000},
      {std::string(20000, '0') + "7", 7},
      {"." + std::string(20000, '0') + "7", 0},
      {"2." + std::string(20000, '1'), 2.1111112F},
  };
  for (const auto& c : good) {
    float value = 99;
    bool failed = true;
    ParseNumber(c.text, value, failed);
    EXPECT_FALSE(failed) << c.text.substr(0, 20);
    EXPECT_EQ(value, c.value) << c.text.substr(0, 20);
  }
}

TEST(ParseNumber, RefusesAllElse) {
  for (const std::string& text :
       {std::string(), std::string("-"), std::string("--1"), std::string("1-2"),
        std::string("1.2.3"), std::string("1e5"), std::string(" 1"), std::string("inf"),
        std::string("nan"), std::string("+1"), std::string(400, '9')}) {
    float value = 99;
    bool failed = false;
    ParseNumber(text, value, failed);
    EXPECT_TRUE(failed) << text;
    EXPECT_EQ(value, 99) << text;
  }
}

TEST(ParseCount, HoldsLargeNumbers) {
  EXPECT_EQ(ParseCount("007"), 7);
  EXPECT_EQ(ParseCount(std::string(100, '9')), 999999999);
  EXPECT_EQ(ParseCount("4294967297"), 999999999);
  for (const char* text : {"", "-1", "1 ", "x"}) EXPECT_LT(ParseCount(text), 0) << text;
}

}  // namespace
}  // namespace vardento
