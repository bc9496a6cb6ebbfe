#include "data/show_record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vardento {
namespace {

TEST(ShowRecord, RulerNumbersTheColumns) {
  using testing::ElementsAre;
  EXPECT_THAT(RulerLines(9), ElementsAre("123456789", "---------"));
  EXPECT_THAT(RulerLines(21), ElementsAre("         1         2 ",  //
                                          "123456789012345678901",  //
                                          "---------------------"));
  const std::vector<std::string> wide = RulerLines(120);
  ASSERT_EQ(wide.size(), 4U);
  EXPECT_EQ(wide[0], std::string(99, ' ') + "1" + std::string(20, ' '));
  EXPECT_EQ(wide[1].substr(79), "8         9         0         1         2");
  EXPECT_EQ(RulerLines(0).back(), "-");
}

TEST(ShowRecord, MarksStandWhereLabelAndResponsesBegin) {
  ControlSettings settings;
  settings.NI = 3;
  settings.NAME1 = 9;
  settings.ITEM1 = 2;
  EXPECT_EQ(MarkLine(RecordMarks(settings, "")), " ^I^N   ^P");
  settings.XWIDE = 2;
  EXPECT_EQ(MarkLine(RecordMarks(settings, "")), " ^I  ^N ^P");
  settings.FORMAT = "(9A2)";  // the second field of two characters
  EXPECT_EQ(MarkLine(RecordMarks(settings, "")), "  ^I  ^N^P");
  settings.FORMAT.clear();
  settings.DELIM = 'Y';
  settings.NAME1 = 1;
  EXPECT_EQ(MarkLine(RecordMarks(settings, "'A,B', 1,0,2")), "^P     ^I  ^N");
  EXPECT_EQ(MarkLine(RecordMarks(settings, "Ann,1")), "^P  ^I");
}

}  // namespace
}  // namespace vardento
