// Which category the convergence table names as the one farthest from its expected count.
#include "measure/step_update.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "support/whole_run.h"

namespace vardento::test {
namespace {

// In succession everybody either passes the first step or stays in category 0, so that the
// residuals of the two are of the same size, with opposite signs: the first of them is named, not
// the one that the last bit of a sum favours.
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

}  // namespace
}  // namespace vardento::test
