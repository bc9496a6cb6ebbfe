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

TEST(CheckSettings, NamesAnUntitledRunAfterItsControlFile) {
  ControlText control("TITLE=\n&END\n");
  ASSERT_TRUE(control.ReadFirst());
  EXPECT_EQ(control.Settings().TITLE, control.test.run.startUp.ControlFileName.substr(0, 60));
}

// A row that an earlier one hides can never be reached by the name that users read in the manual.
TEST(KeywordTable, ReachesEveryRowByItsName) {
  for (const KeywordRow& row : KeywordTable()) {
    const std::string name(row.name.substr(0, 8));
    const std::string value = row.condition == KeywordCondition::ValueIsList ? "*" : "1";
    if (row.kind == KeywordKind::Ignored) continue;
    const KeywordRow* found = nullptr;
    const bool keyed = row.condition == KeywordCondition::IsKeyNumber;
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
