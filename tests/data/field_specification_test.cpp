#include "data/field_specification.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/data_run.h"
#include "data/select_items.h"

namespace vardento {
namespace {

using testing::HasSubstr;

TEST(FieldSpecification, TakesColumnsAndLiterals) {
  const struct {
    const char* text;
    const char* value;  // of the record below
  } cases[] = {
      {"$S3W2", "cd"},      {"$s3e4", "cd"},        {"$S3E3", "c"},
      {"$S8W9", "h 2"},     {"$S30W2", ""},         {"$S1W1+$S10W1", "a2"},
      {"$S1W1$S3W1", "ac"}, {"-$S10W1", "-2"},      {"$S10W1 + \".5\"", "2.5"},
      {"$S9W1+'.5'", ".5"}, {"'$S1'$S2W1", "$S1b"}, {"2$S30W1", "2"},
  };
  for (const auto& c : cases) {
    test::TestRun t;
    const FieldSpecification fields = ParseFieldSpecification(t.run, "PWEIGHT", c.text);
    EXPECT_EQ(ExtractField(fields, "abcdefgh 2"), c.value) << c.text;
  }
}

TEST(FieldSpecification, CountsFieldsOfADelimitedRecord) {
  test::TestRun t;
  const FieldSpecification fields = ParseFieldSpecification(t.run, "PAFILE", "$S2E3+\"0\"");
  EXPECT_EQ(ExtractDelimitedField(fields, "Ann, 1.,5 ,0,1", ','), "1.50");
  EXPECT_EQ(ExtractDelimitedField(fields, "Ann", ','), "0");
}

TEST(FieldSpecification, FaultsAreToldAndTheFieldIsLeftOut) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"$X1", "UNKNOWN $X in: IWEIGHT=$X1"},
      {"$SW2", "$S.. NOT NUMERIC in: IWEIGHT=$SW2"},
      {"$S3X2", "$S..E or $S..W only in: IWEIGHT=$S3X2"},
      {"$S3E2", "$S..E.. NOT VALID in: IWEIGHT=$S3E2"},
      {"$S3W0", "$S..W.. NOT VALID in: IWEIGHT=$S3W0"},
      {"$S3W+", "$S..W.. NOT VALID in: IWEIGHT=$S3W+"},
      {"$S3", "Unexpected ending to: IWEIGHT=$S3"},
      {"$S1W1+\"x", "Unexpected ending to: IWEIGHT=$S1W1+\"x"},
      {"abc", "No $S..W. or $S..E.. : IWEIGHT=abc"},
      {"$S99999999999999W99999999999999", ""},
  };
  for (const auto& c : cases) {
    test::TestRun t("", false);
    const FieldSpecification fields = ParseFieldSpecification(t.run, "IWEIGHT", c.text);
    EXPECT_EQ(fields.IsEmpty(), *c.message != '\0') << c.text;
    EXPECT_EQ(test::Joined(t.console.lines), c.message);
    EXPECT_EQ(ExtractField(fields, "abc"), "");
  }
}

TEST(SelectItems, LabelsChooseItemsAndCarryValues) {
  test::DataRun t("A1 2.0\nB2 -1\nA3\nC4 x\nEND NAMES\n0101\n1010\n", 4);
  t.settings.INUMB = false;
  t.settings.ISELECT = "{AC}*";
  t.settings.IWEIGHT = "$S4W3";
  t.settings.IAFILE = "$S6W1+\".5\"";  // only one label is that long
  t.Read();
  EXPECT_EQ(t.run.given.ItemStatus[1], Status::Active);
  EXPECT_EQ(t.run.given.ItemStatus[2], Status::Deleted);
  EXPECT_EQ(t.directory.ReadFile(t.run.inForce.IWEIGHT), "1 2.0\n2 -1\n4 x\n");
  EXPECT_EQ(t.directory.ReadFile(t.run.inForce.IAFILE), "1 0.5\n2 .5\n3 .5\n4 .5\n");
  EXPECT_TRUE(t.run.workDirectory.IsWorkFile(t.run.inForce.IWEIGHT));
}

TEST(SelectItems, RecordsCarryThePersonsValues) {
  test::DataRun t("Ann 010  2\nBob 101 .5\nAda 011\nAl  001-1 \n", 3, false);
  t.settings.NAMLEN = 3;
  t.settings.ITEM1 = 5;
  t.settings.PSELECT = "A*";
  t.settings.PWEIGHT = "$S8W3";
  t.settings.PAFILE = "$S8";
  t.Read();
  EXPECT_EQ(t.directory.ReadFile(t.run.inForce.PWEIGHT), "1 2\n4 -1\n");
  EXPECT_EQ(t.run.inForce.PAFILE, "");
  EXPECT_EQ(t.run.given.PersonStatus[2], Status::Deleted);
  EXPECT_THAT(t.console.Text(), HasSubstr("Unexpected ending to: PAFILE=$S8"));
  EXPECT_THAT(t.console.Text(), HasSubstr("\nAnn 010  2\n^P  ^I^^W\n"));
}

}  // namespace
}  // namespace vardento
