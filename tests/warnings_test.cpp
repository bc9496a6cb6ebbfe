// What a batch run tells of input that it can use only in part: the same lines on the standard
// error stream and in the report, each once, and the run goes on.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/program.h"

namespace vardento::test {
namespace {

using testing::HasSubstr;

constexpr char kData[] = "Ann 110\nBob 101\nCid 011\nDan 100\nEve 010\nFay 1?1\n";

// Runs control lines, "NI=3", "ITEM1=5" and "NAMLEN=3" before them, on the data above.
ProgramResult RunLines(const TempDirectory& directory, const std::string& lines,
                       const std::vector<std::string>& words = {}) {
  directory.Write("control.txt", "NI=3\nITEM1=5\nNAMLEN=3\nDATA=data.txt\n" + lines +
                                     "&END\nOne\nTwo x\nSix\nEND LABELS\n");
  directory.Write("data.txt", kData);
  std::vector<std::string> line{"control.txt", "report.txt", "BATCH=Y"};
  line.insert(line.end(), words.begin(), words.end());
  return Launch(directory, line);
}

TEST(Warnings, ReachStandardErrorAndTheReport) {
  const struct {
    std::string lines, warnings;
    std::vector<std::string> words{};
  } cases[] = {
      {"", ""},
      {"RCONV=1e-3\nCSV=Z\nKEYX=ABC\nMUCON=0\n",
       " WARNING: control.txt:5: RCONV=1e-3 READ AS 1\n WARNING: control.txt:6: CSV=Z READ AS N\n"
       " WARNING: control.txt:7: KEYX=ABC NOT USED: NO KEY NUMBER\n WARNING: UDECIM=9 READ AS 4\n",
       {"UDECIM=9"}},
      {"MISSING=1\nOSORT=q\n",
       "unknown OSORT = \"q\"\n"
       "Warning:  Unusual score assigned to missing data. MISSING= 1\n"},
      {"CODES=0110\nNEWSCR=0110\n",
       " WARNING! \"1\" SPECIFIED TWICE IN CODES=\n WARNING! \"0\" SPECIFIED TWICE IN CODES=\n"},
      {"PAFILE=$S1\n", "Unexpected ending to: PAFILE=$S1\n"},
      {"NI=2\n",
       "Oops!  Item labels = 3, but NI=2\n"
       " WRONG NUMBER OF ITEM LABELS. FOUND IN FILE =3, but NI=2\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.lines);
    const TempDirectory directory;
    const ProgramResult result = RunLines(directory, c.lines, c.words);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, c.warnings);
    EXPECT_THAT(directory.Read("report.txt"), HasSubstr(c.warnings));
  }
}

}  // namespace
}  // namespace vardento::test
