#include "control/data_format.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "control/control_text.h"
#include "platform/io_status.h"
#include "support/temp_directory.h"

namespace vardento {
namespace {

using testing::HasSubstr;

std::string Repeat(int times, const std::string& text) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST(DataFormat, TellsWhatIsWrong) {
  const struct {
    std::string text;
    int xwide;
    const char* fault;
  } cases[] = {
      {"10A1", 1, "MUST BEGIN WITH ("},
      {"(10A1", 1, "MUST END WITH )"},
      {Repeat(17, "(") + "A" + Repeat(17, ")"), 1, "TOO MANY \"(\""},
      {Repeat(16, "(") + "A" + Repeat(16, ")"), 1, ""},
      {"(A))", 1, "TOO MANY \")\""},
      {"((A)", 1, "NOT ENOUGH \")\""},
      {"(5X)", 1, "NO A, A1, A2"},
      {"()", 1, "NO A, A1, A2"},
      {"(32000A1)", 1, ""},
      {"(32001A1)", 1, "TOO MANY A, A1, A2"},
      {"(32000A1)", 2, "TOO MANY A, A1, A2"},
      {"(99999(99999(99999(99999(99999A))))))", 1, "TOO MANY \")\""},
      {"(99999(99999(99999(99999(99999A)))))", 1, "TOO MANY A, A1, A2"},
      {"(A," + Repeat(15, "99999(") + "X" + Repeat(15, ")") + ")", 1, ""},
      {"(A," + Repeat(15, "99999(") + "X,TL1" + Repeat(15, ")") + ")", 1, "TOO MANY A, A1, A2"},
  };
  for (const auto& c : cases) {
    DataFormat format;
    EXPECT_EQ(ParseDataFormat(c.text, c.xwide, format), c.fault) << c.text.substr(0, 60);
  }
}

TEST(DataFormat, ReadsFieldsAsLaidOut) {
  // Expected by laying the fields out by hand, column by column.
  const struct {
    const char* format;
    int xwide;
    const char* file;
    const char* record;  // '|' between records
  } cases[] = {
      {"(3A1)", 1, "abcdef\nxyz\n", "abc|xyz"},
      {"(a1, 1x, 2 a 1)", 1, "a-bcd\n", "abc"},
      {"(2A2)", 2, "abcdef\n", "abcd"},
      {"(2A1)", 2, "ab\n", "a b "},
      {"(2A3)", 1, "12a45b\n", "ab"},
      {"(A,A3)", 2, "ab1cd\n", "abcd"},
      {"(T4,2A1,T1,A1)", 1, "abcdef\n", "dea"},
      {"(A1,TR2,A1,TL4,A1)", 1, "abcdef\n", "ada"},
      {"(2(A1,1X),A1)", 1, "a-b-c\n", "abc"},
      {"(2(2(A1)1X)A1)", 1, "ab-cd-e\n", "abcde"},
      {"(2A1/2A1)", 1, "ab\ncd\nef\ngh\n", "abcd|efgh"},
      {"(A1,2/,A1)", 1, "a\nskipped\nb\n", "ab"},
      {"(2A1,/)", 1, "ab\nskipped\ncd\n", "ab|cd"},
      {"(5A1)", 1, "ab\n\nc\n", "ab   |     |c    "},
      {"(A1,T999999999,A1)", 1, "ab\n", "a "},
      {"(A1,I5,A1)", 1, "ab\n", "ab"},
  };
  test::TempDirectory directory;
  for (const auto& c : cases) {
    DataFormat format;
    ASSERT_EQ(ParseDataFormat(c.format, c.xwide, format), "") << c.format;
    TextReader reader;
    ASSERT_EQ(reader.Open(directory.Write("data.txt", c.file)), kIoOk);
    std::string record, line, all;
    int linesRead = 0;
    while (ReadFormattedRecord(reader, format, c.xwide, record, line, linesRead) == kIoOk) {
      all += (all.empty() ? "" : "|") + record;
    }
    EXPECT_EQ(all, c.record) << c.format;
    EXPECT_EQ(linesRead, 0) << c.format;
  }
}

TEST(DataFormat, IsCheckedWithTheOtherSettings) {
  test::ControlText good("FORMAT=(2(a1,1x),t1,2a1)\n&END\n");
  ASSERT_TRUE(good.ReadFirst());
  EXPECT_EQ(good.Settings().FORMAT, "(2(A1,1X),T1,2A1)");
  EXPECT_EQ(good.Settings().formatFields, 4);
  test::ControlText bad("FORMAT=(4X)\n&END\n");
  EXPECT_FALSE(bad.ReadFirst());
  EXPECT_THAT(bad.Said(), HasSubstr(" PROBLEM WITH \"FORMAT=\": NO A, A1, A2\n FORMAT=(4X)\n"));
}

}  // namespace
}  // namespace vardento
