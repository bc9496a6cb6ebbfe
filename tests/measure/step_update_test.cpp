// The steps of a scale as the joint iteration moves them.
#include "measure/step_update.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "support/estimates.h"

namespace vardento::test {
namespace {

// In succession the residuals of the first two categories are of the same size: the first of them
// is named, not the one that the last bit of a sum favours.
TEST(StepUpdate, NamesTheFirstOfTwoCategoriesThatAreEquallyFar) {
  WholeRun data;
  data.directory.Write(
      "control.txt",
      "TITLE=T\nNI=6\nITEM1=1\nNAME1=7\nNAMLEN=1\nCODES=0123\nMODELS=S\nLCONV=.0001\nRCONV=.001\n&"
      "END\n"
      "A\nB\nC\nD\nE\nF\nEND LABELS\n"
      "012131\n1.2023\n321.10\n230312\n02110.\n113202\n2031.1\n310021\n00.102\n100120\n");
  ASSERT_EQ(data.Execute({"TABLES=0"}), 0);
  std::istringstream report(data.directory.Read("report.txt"));
  int rows = 0, firstNamed = 0;
  bool joint = false;
  for (std::string line; std::getline(report, line);) {
    joint = joint || line.find("|    UCON") == 0;
    if (!joint || line.size() < 78 || line[8] < '0' || line[8] > '9') continue;
    ++rows;
    EXPECT_NE(line[56], '1') << line;
    if (line[56] == '0') ++firstNamed;
  }
  EXPECT_GE(rows, 8);
  EXPECT_GE(firstNamed, 3);
}

// In succession an unused category changes nothing: whoever passed the step into it passed the one
// behind it as well.
TEST(StepUpdate, ConvergesOverAnUnusedCategoryOfASuccession) {
  Matrix data = Simulate(150, 8, 2, 31);
  for (std::string& row : data) {
    std::replace(row.begin(), row.end(), '2', '4');
    std::replace(row.begin(), row.end(), '1', '3');
  }
  for (const std::string groups : {"", "GROUPS=0\n"}) {
    const std::string lines = "CODES=01234\nMODELS=S\n" + groups;
    const AllEstimates kept = Estimate(data, lines + "STKEEP=Y\nMUCON=300");
    const AllEstimates dropped = Estimate(data, lines + "STKEEP=N\nMUCON=300");
    for (std::size_t i = 0; i < kept.items.measure.size(); ++i) {
      EXPECT_NEAR(kept.items.measure[i], dropped.items.measure[i], kSame) << groups << i;
    }
    for (std::size_t n = 0; n < kept.persons.measure.size(); ++n) {
      EXPECT_NEAR(kept.persons.measure[n], dropped.persons.measure[n], kSame) << groups << n;
    }
  }
}

}  // namespace
}  // namespace vardento::test
