// How numbers look in reports and output files, worked out by hand from the rules of the fields.
#include "text/number_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

namespace vardento::test {
namespace {

// Reports show asterisks where an output file loses high digits.
TEST(NumberText, FieldsOfFilesAndReportsFollowTheirRules) {
  struct Case {
    float value;
    int width;
    const char* format;
    const char* expected;
    const char* inReport = expected;
  };
  const Case cases[] = {
      {0.5F, 6, "(F6.2)", "   .50"},
      {-0.5F, 6, "(F6.2)", "  -.50"},
      {0.0F, 6, "(F6.2)", "   .00"},
      {-0.004F, 6, "(F6.2)", "   .00"},  // rounds to zero: no sign
      {-0.0F, 6, "(F6.1)", "    .0"},
      {0.05F, 6, "(F6.2)", "   .05"},
      {1234.56F, 6, "(F6.2)", "234.56", "******"},  // high digits are lost
      {-234.56F, 7, "(F7.2)", "-234.56"},
      {-1234.56F, 6, "(F6.2)", "-34.56", "******"},  // no room for the sign but in column 1
      {0.125F, 6, "(F6.2)", "   .13"},               // halves go away from zero
      {-0.125F, 6, "(F6.2)", "  -.13"},
      {2.5F, 4, "(F4.0)", "   3"},
      {-2.5F, 4, "(F4.0)", "  -3"},
      {-0.4F, 4, "(F4.0)", "   0"},
      {12.0F, 8, "(F8.4)", " 12.0000"},
      {2147483648.0F, 12, "(F12.0)", "  2147483648"},
      {2147483904.0F, 8, "(F8.2)", "********"},  // the next larger 32-bit real
      {-3e9F, 3, "(F3.0)", "***"},
      {std::numeric_limits<float>::infinity(), 5, "(F5.1)", "*****"},
      {std::nanf(""), 5, "(F5.1)", "*****"},
      {7.0F, 1, "(F1.2)", "7", "*"},  // no room for a point
      {12345.5F, 8, "(F8.3)", "2345.500", "********"},
      {1234.5F, 8, "(F8.3)", "1234.500"},
      {-1234.5F, 8, "(F8.3)", "-234.500", "********"},
      {-9999.6F, 5, "(F5.0)", "-0000", "*****"},  // grows a digit by rounding
      {7.0F, 0, "(F0.2)", ""},
      {7.6F, 3, "F3", "  8"},  // a format without decimals
  };
  for (const Case& c : cases) {
    EXPECT_EQ(number_text(c.value, c.width, c.format), c.expected) << c.value << " " << c.format;
    EXPECT_EQ(FixedText(c.value, c.format, c.width), c.inReport) << c.value;
  }
}

// Against the library's own digits, where the field holds them and no half is near: at all sizes.
TEST(NumberText, FieldsOfFilesHoldTheDigitsOfTheLibrary) {
  for (int decimals = 1; decimals <= 4; ++decimals) {
    const double scale = std::pow(10.0, decimals);
    for (float value = 1e-5F; value * scale < 1e5; value *= 1.0007F) {
      const double scaled = value * scale;
      const long long rounded = std::llround(scaled);
      if (std::fabs(scaled - std::floor(scaled) - 0.5) < 0.03) continue;
      std::string digits = std::to_string(rounded);
      if (digits.size() < static_cast<std::size_t>(decimals) + 1) {
        digits.insert(0, static_cast<std::size_t>(decimals) + 1 - digits.size(), '0');
      }
      digits.insert(digits.size() - static_cast<std::size_t>(decimals), ".");
      if (digits[0] == '0') digits.erase(0, 1);
      const std::string sign = rounded == 0 ? "" : "-";
      std::string line = "|";
      AppendNumber(line, value, 12, decimals);
      AppendNumber(line, -value, 13, decimals);
      ASSERT_EQ(line, "|" + PadLeft(digits, 12) + PadLeft(sign + digits, 13)) << value;
    }
  }
}

TEST(NumberText, IntegersAreSetFromTheRight) {
  EXPECT_EQ(integer_text(42, 5), "   42");
  EXPECT_EQ(integer_text(123456, 5), "23456");
  EXPECT_EQ(integer_text(-7, 3), " -7");
  EXPECT_EQ(integer_text(-123, 3), "-23");
  EXPECT_EQ(integer_text(0, 2), " 0");
  EXPECT_EQ(integer_text(INT_MIN, 11), "-2147483648");
  EXPECT_EQ(IntegerText(-40), "-40");
}

TEST(NumberText, ReportFieldsAreOrdinaryEditing) {
  struct Case {
    double value;
    int width, decimals;
    const char* expected;
  };
  const Case cases[] = {
      {0.5, 5, 2, "  .50"},
      {-0.5, 4, 2, "-.50"},
      {-0.5, 3, 2, "***"},
      {0.5, 3, 2, ".50"},
      {-0.004, 6, 2, "   .00"},
      {1234.56, 6, 2, "******"},
      {1234.56, 7, 2, "1234.56"},
      {99.996, 5, 2, "*****"},  // grows a digit by rounding
      {0.125, 5, 2, "  .13"},
      {-0.125, 5, 2, " -.13"},
      {0.375, 5, 2, "  .38"},
      // 1.115 is stored as 1.1149999...: the product with 100 is above the half, the value below.
      {1.115, 5, 2, " 1.11"},
      {1.005, 5, 2, " 1.00"},
      {2.5, 3, 0, " 3."},
      {0.0, 3, 0, " 0."},
      {-0.3, 3, 0, " 0."},
      {1e20, 12, 2, "************"},
      {std::nan(""), 4, 1, "****"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(fixed_field(c.value, c.width, c.decimals), c.expected) << c.value;
  }
  EXPECT_EQ(integer_field(-12, 4), " -12");
  EXPECT_EQ(integer_field(12345, 4), "****");
}

TEST(NumberText, ShortestDigits) {
  const struct {
    float value;
    const char* expected;
  } cases[] = {{0, "0"},        {-0.0F, "0"},    {12, "12"},   {-0.5F, "-.5"},
               {.005F, ".005"}, {1.05F, "1.05"}, {-20, "-20"}, {3e9F, "3000000000"}};
  for (const auto& c : cases) EXPECT_EQ(ShortestText(c.value), c.expected);
}

TEST(NumberText, TextHelpersTreatBytesAsBytes) {
  EXPECT_TRUE(SameText("ab  ", "ab"));
  EXPECT_FALSE(SameText(" ab", "ab"));
  EXPECT_EQ(Trim("  \xE4 b  "), "\xE4 b");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(UpperCase("aZ\xE4{"), "AZ\xE4{");
  EXPECT_EQ(PadRight("abc", 2) + PadRight("a", 3), "aba  ");
  EXPECT_EQ(PadLeft("abc", 2) + PadLeft("a", 3), "bc  a");
}

}  // namespace
}  // namespace vardento::test
