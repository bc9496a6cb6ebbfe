// CUTLO= and CUTHI=: dropping responses out of range is the same as never having had them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "support/estimates.h"

namespace vardento::test {
namespace {

using testing::HasSubstr;

struct Case {
  std::string codes;  // of categories 0, 1, 2
  std::string lines;
  double low, high;  // logits
  int unit = 1;      // logits times this are the user's units; a sign means nothing
};

// Persons of all kinds, one of whom nothing fits, and with user units an item that all pass.
Matrix DataOf(const Case& c) {
  Matrix data = Simulate(120, 10, static_cast<int>(c.codes.size()) - 1, 815);
  data.emplace_back("11101     ");  // four of the five easiest: all of them far below
  data.emplace_back(10, '1');
  for (std::string& row : data) {
    if (c.unit != 1) row += '1';
    for (char& code : row) {
      if (code != ' ') code = c.codes[static_cast<std::size_t>(code - '0')];
    }
  }
  return data;
}

// How many lay out of range by the start values.
int Blank(const Case& c, Matrix& data) {
  WholeRun start;
  RunData(start, data, c.lines + "\nMUCON=-1");
  const RunArrays& a = start.run.arrays;
  int dropped = 0;
  for (int n = 1; n <= start.run.NPERS; ++n) {
    for (int i = 1; i <= start.run.settings.NI; ++i) {
      char& code = data[static_cast<std::size_t>(n) - 1][static_cast<std::size_t>(i) - 1];
      if (!IsActive(WithoutCompleteFlag(a.PersonStatus[n])) || a.ItemStatus[i] < 1) continue;
      const double d = static_cast<double>(a.PersonMeasure[n]) - a.ItemMeasure[i];
      if (code == ' ' || !((c.low != 0 && d < -c.low) || (c.high != 0 && d > c.high))) continue;
      code = ' ';
      ++dropped;
    }
  }
  return dropped;
}

// Whatever codes the scale has: the second start values must read them as the first ones did.
TEST(DropOutOfRange, IsAsIfTheResponsesHadNeverBeen) {
  const Case cases[] = {
      {"01", "CODES=01", 1.5, 0},
      {"01", "CODES=01", 0, 0.7},
      {"012", "CODES=012", 1, 1.5},
      {"123", "CODES=123", 1, 1.5},
      {"125", "CODES=12345\nSTKEEP=N", 1, 1.5},
      {"125", "CODES=12345\nSTKEEP=Y", 1, 1.5},
      // Anchored persons exactly on the limits of anchored items stay.
      {"01", "CODES=01\nUSCALE=-2\nIAFILE=*\n1-3 0\n*\nPAFILE=*\n1-40 -2\n41-60 4\n*", 2, 1, -2}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.lines);
    const Matrix data = DataOf(c);
    Matrix blanked = data;
    const int dropped = Blank(c, blanked);
    ASSERT_GT(dropped, 50);
    WholeRun cut, without;
    RunData(cut, data,
            c.lines + "\nCUTLO=" + std::to_string(c.low * c.unit) +
                "\nCUTHI=" + std::to_string(c.high * c.unit));
    RunData(without, blanked, c.lines);
    EXPECT_THAT(cut.directory.Read("report.txt"),
                HasSubstr(" " + std::to_string(dropped) + " OBSERVATIONS DROPPED"));
    const AllEstimates found = EstimatesOf(cut), expected = EstimatesOf(without);
    ExpectSame(expected.persons, found.persons, Entries(0, data.size()));
    ExpectSame(expected.items, found.items, Entries(0, data[0].size()));
    ExpectSameSteps(expected, found);
    const RunArrays& a = cut.run.arrays;
    const RunArrays& b = without.run.arrays;
    for (int n = 1; n <= cut.run.NPERS; ++n) {
      if (a.PersonStatus[n] > 0) {
        EXPECT_EQ(a.PersonTotalScore[n], b.PersonTotalScore[n]) << n;
      }
    }
    for (int p = 1; p <= a.GroupTop[1] + 1; ++p) {
      EXPECT_EQ(a.CategoryToCode[p], b.CategoryToCode[p]) << p;
      EXPECT_EQ(a.CategoryCount[p], b.CategoryCount[p]) << p;
    }
    if (c.high == 0.7) {
      EXPECT_EQ(found.persons.status[120], Status::NoResponses);
    }
  }
}

TEST(DropOutOfRange, TellsOfItInTheConvergenceTable) {
  WholeRun whole;
  RunData(whole, Simulate(40, 6, 1, 3), "CODES=01\nUSCALE=10\nCUTLO=-500");
  EXPECT_THAT(whole.directory.Read("report.txt"),
              HasSubstr("\n| DROPPING OUT OF RANGE OBSERVATIONS.  CUTLOW=****** "
                        " CUTHIGH=   .00" +
                        std::string(9, ' ') +
                        "|\n"
                        "| THERE WERE NO OUT OF RANGE OBSERVATIONS" +
                        std::string(36, ' ') + "|\n"));
}

}  // namespace
}  // namespace vardento::test
