#include "control/check_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "control/control_text.h"
#include "control/keyword_table.h"

namespace vardento {
namespace {

using test::ControlText;
using testing::HasSubstr;

TEST(CheckSettings, EndsTheRunInItsOwnWords) {
  const struct {
    std::string lines, said;
  } cases[] = {
      {"CODES=" + std::string(1001, '1'),
       " CODES= HAS LENGTH OF 1001 WHICH IS LONGER THAN MAXIMUM OF 1000\n"},
      {"CODES=012\nCATEGS=2",
       " CODES= \"012\" HAS LENGTH OF3. THIS DOES NOT AGREE WITH (OPTIONAL) CATEGS=2 AND "
       "XWIDE=1\n"},
      {"CODES=012\nXWIDE=2", " CODES= \"012\" HAS LENGTH OF 3. THIS DOES NOT AGREE WITH XWIDE=2\n"},
      {"CODES=1", " CODES='1' IS TOO SHORT.  XWIDE=1 AND MISSNG=255\n"},
      {"ITEM1=0", " PROBLEM WITH ITEM1= 0. IT MUST BE BETWEEN 1 AND 32000\n"},
      {"NAME1=-3", " PROBLEM WITH NAME1= -3. IT MUST BE BETWEEN 1 AND 32000\n"},
      {"NI=0", " PROBLEM WITH NI= 0. IT MUST BE BETWEEN 1 AND 32000\n"},
      {"NI=20000\nXWIDE=2\nCODES=0 1",
       " CODES= \"0 1\" HAS LENGTH OF 3. THIS DOES NOT AGREE WITH XWIDE=2\n"},
      {"NI=20000\nXWIDE=2\nCODES=0011\nITEM1=5",
       " ITEMS OVERFLOW MAXIMUM RECORD LENGTH:\n  MAXIMUM RECORD LENGTH (MAXREC) IS 32000, "
       "ITEM1=5, NI=20000, XWIDE=2, ENDS AT 40004\n"},
      {"NI=32000\nXWIDE=32000\nCODES=01\nMISSING=0", "THIS DOES NOT AGREE WITH XWIDE=32000\n"},
  };
  for (const auto& c : cases) {
    ControlText control(c.lines + "\n&END\n");
    EXPECT_FALSE(control.ReadFirst()) << c.lines;
    EXPECT_THAT(control.Said(), HasSubstr(c.said)) << c.lines;
  }
}

TEST(CheckSettings, TakesTheLastColumnThatARecordMayHave) {
  ControlText control("NI=1\nITEM1=32000\nNAME1=1\n&END\n");
  EXPECT_TRUE(control.ReadFirst()) << control.Said();
}

TEST(CheckSettings, FollowsABatchSettingOfTheFileAtOnce) {
  ControlText faulty("BATCH=Y\nFOO=1\n&END\n");
  faulty.test.run.batch = false;
  faulty.test.OpenReport();
  EXPECT_FALSE(faulty.ReadFirst());
  EXPECT_THAT(faulty.test.Report(), HasSubstr("UNRECOGNIZED VARIABLE (CHECK SPELLING): FOO=1\n"));
  ControlText undone("BATCH=Y\n&END\n", {"BATCH=N"});
  undone.test.run.batch = false;
  EXPECT_TRUE(undone.ReadFirst());
  EXPECT_FALSE(undone.test.run.batch);
}

TEST(CheckSettings, WarnsAndGoesOn) {
  const struct {
    std::string lines, said;
  } cases[] = {
      {"MISSING=7", "Warning:  Unusual score assigned to missing data. MISSING= 7\n"},
      {"CODES=0120", " WARNING! \"0\" SPECIFIED TWICE IN CODES=\n"},
      {"XWIDE=2\nCODES=\"1  1\"", " WARNING! \"1 \" SPECIFIED TWICE IN CODES=\n"},
      {"OSORT=q", "unknown OSORT = \"q\"\n"},
  };
  for (const auto& c : cases) {
    ControlText control(c.lines + "\n&END\n");
    EXPECT_TRUE(control.ReadFirst()) << c.lines;
    EXPECT_THAT(control.Said(), HasSubstr(c.said)) << c.lines;
  }
  ControlText single("CODES=1\nMISSING=0\n&END\n");
  EXPECT_TRUE(single.ReadFirst());
}

// The warnings among the lines said, one a line.
std::string WarningsOf(const ControlText& control) {
  std::string warnings;
  for (const std::string& line : control.test.console.lines) {
    if (line.starts_with(" WARNING: ")) warnings += line.substr(10) + "\n";
  }
  return warnings;
}

// The first line of a case is the third of the file.
TEST(CheckSettings, TellsWhatIsUsedInThePlaceOfADoubtfulValue) {
  const struct {
    std::string lines, warnings;
  } cases[] = {
      {"LCONV=1e-3", "control.txt:3: LCONV=1e-3 READ AS 1\n"},
      {"; x\n\n umean = 500,5 ; of the items", "control.txt:5: UMEAN=500,5 READ AS 500\n"},
      {"MUCON=10 20", "control.txt:3: MUCON=10 20 READ AS 10\n"},
      {"NI=3.6x", "control.txt:3: NI=3.6x READ AS 4\n"},
      {"UMEAN=-0,5", "control.txt:3: UMEAN=-0,5 READ AS 0\n"},
      {"LOWADJ=-.125a", "control.txt:3: LOWADJ=-.125a READ AS .125\n"},
      {"USCALE=0\nUAS=0", "control.txt:3: USCALE=0 READ AS 1\ncontrol.txt:4: UAS=0 READ AS 1\n"},
      {"EXTRSC=100", "control.txt:3: EXTRSC=100 READ AS 1\n"},
      {"EXTRSC=0", "control.txt:3: EXTRSC=0 READ AS .01\n"},
      {"UDECIM=9", "control.txt:3: UDECIM=9 READ AS 4\n"},
      {"MISSING=300", "control.txt:3: MISSING=300 READ AS 255\n"},
      {"XWIDE=0", "control.txt:3: XWIDE=0 READ AS 1\n"},
      {"XWIDE=-1", "control.txt:3: XWIDE=-1 READ AS 1\n"},
      {"ITLEN=500\nNAMLEN=500",
       "control.txt:3: ITLEN=500 READ AS 300\ncontrol.txt:4: NAMLEN=500 READ AS 300\n"},
      {"LINELEN=501\nMAXPAGE=-1",
       "control.txt:3: LINELEN=501 READ AS 500\ncontrol.txt:4: MAXPAGE=-1 READ AS 0\n"},
      {"CSV=Z", "control.txt:3: CSV=Z READ AS N\n"},
      {"LOCAL=Z", "control.txt:3: LOCAL=Z READ AS N\n"},
      {"TOTAL=TRUE", "control.txt:3: TOTAL=TRUE READ AS N\n"},
      {"BLOCK=3", "control.txt:3: BLOCK=3 READ AS N\n"},
      {"CURVES=ABC", "control.txt:3: CURVES=ABC READ AS 100\n"},
      {"TABLES=3.1", "control.txt:3: TABLES=3.1 READ AS 001\n"},
      {"TITLE=ab+\n+cd\nMUCON=+\n+2x\nUD=7",
       "control.txt:5: MUCON=2x READ AS 2\n"
       "control.txt:7: UD=7 READ AS 4\n"},
      // Of several lines the last counts.
      {"UDECIM=9\nUMEAN=1e3\nUDECIM=3\nUPMEAN=50", ""},
      {"UDECIM=3\nUDECIM=9", "control.txt:4: UDECIM=9 READ AS 4\n"},
      {"KEYX=ABCD\nKEY-1=1\nKEY0=1\nKEY1X=1\nKEY=0101",
       "control.txt:3: KEYX=ABCD NOT USED: NO KEY NUMBER\n"
       "control.txt:4: KEY-1=1 NOT USED: NO KEY NUMBER\n"
       "control.txt:5: KEY0=1 NOT USED: NO KEY NUMBER\n"
       "control.txt:6: KEY1X=1 NOT USED: NO KEY NUMBER\n"},
  };
  for (const auto& c : cases) {
    ControlText control(c.lines + "\n&END\n");
    EXPECT_TRUE(control.ReadAll()) << c.lines << control.Said();
    EXPECT_EQ(WarningsOf(control), c.warnings) << c.lines;
  }
}

// Values with a meaning of their own, and faults that have their own words.
TEST(CheckSettings, DoubtsNothingElse) {
  for (const std::string line :
       {"LCONV=.01 ; 1e-3", "LCONV=.01,", "LCONV=\".01\"", "LCONV=.01\t", "LCONV=1.",
        "NI=3.6",           "EXTRSC=-.5", "HIADJ=-.5",     "MRANGE=-3",   "T1I=-2",
        "LINELEN=0",        "MAXPAGE=0",  "MAXPAGE=7",     "CATEGS=0",    "NAMLEN=0",
        "ITLEN=0",          "CURVES=000", "CURVES=0 1",    "TABLES=1 1Y", "TOTAL=n",
        "TOTAL=",           "TOTAL=yes",  "CSV=t",         "CSV=\",\"",   "LOCAL=2",
        "LOCAL=l",          "PRCOMP=z",   "FORMFD=q",      "NC=3x",       "MUCON=-1",
        "OSORT=q",          "MISSING=7",  "KEYSCR=x",      "KEYFROM=0"}) {
    ControlText control(line + "\n&END\n");
    EXPECT_TRUE(control.ReadFirst()) << line << control.Said();
    EXPECT_EQ(WarningsOf(control), "") << line;
  }
}

TEST(CheckSettings, NamesTheFileOfADoubtfulLine) {
  test::TempDirectory files;
  const std::string other = files.Write("other.txt", "\nUDECIM=9\n");
  ControlText control("SPFILE=" + other + "\nSPFILE=near.txt\nIAFILE=*\n1 1\n*\nXW=0\n&END\n",
                      {"control.txt", "LCONV=1e-3", "USCALE=0"});
  control.test.directory.Write("near.txt", "LINELEN=999\n");
  const auto start = std::filesystem::current_path();
  std::filesystem::current_path(control.test.directory.Path());
  EXPECT_TRUE(control.ReadFirst());
  std::filesystem::current_path(start);
  EXPECT_EQ(WarningsOf(control), other + ":2: UDECIM=9 READ AS 4\n" +
                                     "near.txt:1: LINELEN=999 READ AS 500\n"
                                     "control.txt:8: XW=0 READ AS 1\n"
                                     "LCONV=1e-3 READ AS 1\nUSCALE=0 READ AS 1\n");
}

TEST(CheckSettings, NamesAnUntitledRunAfterItsControlFile) {
  ControlText control("TITLE=\n&END\n");
  control.test.run.startUp.ControlFileName = "/" + std::string(80, 'x');
  ASSERT_TRUE(control.ReadFirst());
  EXPECT_EQ(control.Settings().TITLE, "/" + std::string(59, 'x'));
}

// A row that an earlier one hides can never be reached by the name that users read in the manual.
TEST(KeywordTable, ReachesEveryRowByItsName) {
  for (const KeywordRow& row : KeywordTable()) {
    const std::string name(row.name.substr(0, 8));
    const std::string value = row.condition == KeywordCondition::ValueIsList ? "*" : "1";
    if (row.kind == KeywordKind::Ignored) continue;
    const KeywordRow* found = nullptr;
    const bool keyed = row.condition == KeywordCondition::IsKeyLine;
    for (KeywordStage stage :
         {KeywordStage::Files, KeywordStage::Words, KeywordStage::Reals, KeywordStage::Integers}) {
      if (row.stage == KeywordStage::PerItem) break;
      if (found == nullptr) found = FindKeyword(stage, keyed ? "KEY1" : name, value, 1);
    }
    if (row.stage == KeywordStage::PerItem) {
      found = FindKeyword(row.stage, keyed ? "KEY1" : name, value, 2);
    }
    EXPECT_EQ(found, &row) << row.name;
    EXPECT_FALSE(row.description.empty()) << row.name;
  }
}

}  // namespace
}  // namespace vardento
