#include "control/control_line.h"

#include <gtest/gtest.h>

namespace vardento {
namespace {

using Kind = ControlLineParts::Kind;

TEST(ControlLine, SplitsKeywordAndValue) {
  using namespace std::string_literals;
  const struct {
    std::string line, keyword, value;
  } cases[] = {
      {"NI=10 ; comment", "NI", "10"},
      {"  ni = 10", "NI", "10"},
      {"\tni\t=\t10\t", "NI", "10"},
      {"NI=1\0 2"s, "NI", "1  2"},
      {"TITLE=a=b", "TITLE", "a=b"},
      {"=A=b", "=A", "b"},
      {"ABCDEFGHIJ=1", "ABCDEFGH", "1"},
      {"CODES=", "CODES", " "},
      {"CODES=  ; nothing", "CODES", " "},
      {"CODES=\"\"", "CODES", " "},
      {"CODES=\"01 \"", "CODES", "01 "},
      {"CODES='01 ' behind", "CODES", "01 "},
      {"CODES=`0\"1`", "CODES", "0\"1"},
      {"TITLE=\"a;b\"", "TITLE", "a"},
      {"TITLE=\x93open and close\x94", "TITLE", "open and close"},
      {"TITLE=\"never closed  ", "TITLE", "never closed"},
      {"TITLE=\"", "TITLE", " "},
      {"TABLES=101,", "TABLES", "101"},
      {"TABLES=101 ,,", "TABLES", "101 ,"},
      {"CSV=,", "CSV", " "},
      {"CSV=\",\"", "CSV", ","},
  };
  for (const auto& c : cases) {
    std::string line = c.line;
    CleanControlLine(line);
    const ControlLineParts parts = SplitControlLine(line);
    EXPECT_EQ(parts.kind, Kind::Assignment) << c.line;
    EXPECT_EQ(parts.keyword, c.keyword) << c.line;
    EXPECT_EQ(parts.value, c.value) << c.line;
  }
}

TEST(ControlLine, TellsLinesThatSetNothing) {
  const struct {
    const char* line;
    Kind kind;
  } cases[] = {
      {"", Kind::Ignored},         {"  ; comment", Kind::Ignored}, {" * ", Kind::Ignored},
      {"&INST", Kind::Ignored},    {"&", Kind::Ignored},           {"&END", Kind::End},
      {"  &end", Kind::End},       {"&Endless", Kind::End},        {"=abc", Kind::Faulty},
      {"no equals", Kind::Faulty}, {"**", Kind::Faulty},
  };
  for (const auto& c : cases) {
    std::string line = c.line;
    CleanControlLine(line);
    EXPECT_EQ(SplitControlLine(line).kind, c.kind) << c.line;
  }
}

}  // namespace
}  // namespace vardento
