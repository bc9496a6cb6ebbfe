// What a batch run tells of input that it can use only in part: the same lines on the standard
// error stream and in the report, each once, and the run goes on.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/program.h"

namespace vardento::test {
namespace {

using testing::HasSubstr;
using testing::Not;

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
      // A sub-list stands in the Control File; values from labels and records stand in no list.
      {"IAFILE=*\n1 .5\n\nI02 x ; why\n3 -.5\n*\n",
       " WARNING: control.txt:8: IAFILE= 1 LINE NOT USED: I02 x\n"},
      {"IAFILE=*\nI2 1\n*\nIAFILE=*\n; x\n2 1\n3 y\n*\n",
       " WARNING: control.txt:11: IAFILE= 1 LINE NOT USED: 3 y\n"},
      {"EDFILE=*\n\"late corrections\"\n1 1 0\nAnn 2 1\n2 x 1\n*\n",
       " WARNING: control.txt:8: EDFILE= 2 LINES NOT USED, THE FIRST: Ann 2 1\n"},
      {"SAFILE=*\n1 .5\n1 x\n\"3 short forms\"\n*\nPIVOT=*\n\"Of forms\"\nI29\n1 1\n*\n",
       " WARNING: control.txt:7: SAFILE= 1 LINE NOT USED: 1 x\n"
       " WARNING: control.txt:12: PIVOT= 1 LINE NOT USED: I29\n"},
      {"CURVES=No\n", " WARNING: control.txt:5: CURVES=No READ AS 100\n"},
      {"IDFILE=*\n3-x\n*\n", " WARNING: control.txt:6: IDFILE= 1 LINE NOT USED: 3-x\n"},
      // The title of a measure file may be a number.
      {"IDFILE=*\n\"ITEM MEASURE FILE FOR\"\n\"1-3\"\n\"Nov\"\n\"ENTRY\",\"MEASURE\"\n*\n", ""},
      {"IWEIGHT=$S5W1\n", " WARNING: IWEIGHT= 1 LINE NOT USED: 2 x\n"},
      {"PWEIGHT=$S1W3\n", " WARNING: PWEIGHT= 6 LINES NOT USED, THE FIRST: 1 Ann\n"},
      {"",
       " WARNING: IDFILE= 1 LINE NOT USED: I3\n"
       " WARNING: data.txt:1: PDFILE= 6 LINES NOT USED, THE FIRST: Ann 110\n",
       {"IDFILE=*", "I3", "*", "PDFILE=data.txt"}},
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

// Measures and steps come back as lists with their heads, in whatever form they were written.
TEST(Warnings, FilesOfTheProgramAreListsWithoutADoubt) {
  for (const std::string form : {"N", "Y", "T"}) {
    for (const std::string groups : {"", "GROUPS=0\n"}) {
      const TempDirectory directory;
      const std::string lines = "TITLE=\"2 3 4; a\"\n" + groups + "CSV=" + form + "\n";
      RunLines(directory, lines + "PFILE=p\nIFILE=i\nSFILE=s\nISFILE=t\n");
      for (const std::string list : {"IAFILE=i", "PAFILE=p", "SAFILE=s", "IDFILE=i", "PDFILE=p",
                                     "IAFILE=t", "IDFILE=t", "SAFILE=t", "SDFILE=t"}) {
        SCOPED_TRACE(lines + list);
        ASSERT_NE(directory.Read(list.substr(7)), "");
        EXPECT_THAT(RunLines(directory, lines, {list}).errors, Not(HasSubstr("WARNING")));
      }
    }
  }
}

}  // namespace
}  // namespace vardento::test
