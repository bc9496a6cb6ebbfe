#include "data/code_lookup.h"

#include <gtest/gtest.h>

#include "data/data_reader.h"

namespace vardento {
namespace {

TEST(CodeLookup, FindsThePlaceOfACodeInCodes) {
  struct Case {
    const char* what;
    std::string codes;
    int width;
    std::string field;  // as it stands in the record, full width
    int category;
  };
  const Case cases[] = {
      {"first", "012", 1, "0", 1},
      {"last", "012", 1, "2", 3},
      {"not there", "012", 1, "3", 0},
      {"a blank is no code of itself", "012", 1, " ", 0},
      {"a blank is a code like any other", "0 2", 1, " ", 2},
      {"given twice, one wide: the first place", "0110", 1, "0", 1},
      {"bytes above the ASCII range", "a\xE9", 1, "\xE9", 2},
      {"two wide", "0 1 10", 2, "10", 3},
      {"left-adjusted", "0 1 10", 2, " 1", 2},
      {"a part of a code is not the code", "101112", 2, "1 ", 0},
      {"given twice, two wide: the last place", "A B A ", 2, " A", 3},
      {"blank code, two wide", "A   B ", 2, "  ", 2},
      {"three wide", "A  BB CCC", 3, " BB", 2},
      {"three wide, adjusted by two", "A  BB CCC", 3, "  A", 1},
      {"three wide, blank inside stays", "A  B BCCC", 3, "B B", 2},
      {"three wide, not there", "A  BB CCC", 3, "CC ", 0},
      {"three wide, twice", "A  BB A  ", 3, "A  ", 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    ControlSettings settings;
    settings.CODES = c.codes;
    settings.XWIDE = c.width;
    settings.CATEGS = static_cast<int>(c.codes.size()) / c.width;
    EXPECT_EQ(CategoryOfCode(settings, c.field), c.category);
    EXPECT_EQ(CodeLookup(settings).Find(c.field.data()), c.category);
  }
}

}  // namespace
}  // namespace vardento
