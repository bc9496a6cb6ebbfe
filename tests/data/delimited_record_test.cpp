#include "data/delimited_record.h"

#include <gtest/gtest.h>

namespace vardento {
namespace {

TEST(DelimitedRecord, TakesLabelAndResponses) {
  struct Case {
    const char* what;
    char delim;
    std::string record;
    int name1, item1, width;
    std::string label;  // 5 characters
    std::string codes;  // 3 items
  };
  const Case cases[] = {
      {"comma", 'Y', "Ann,1,0,2", 1, 2, 1, "Ann  ", "102"},
      {"the character itself", ';', "Ann;1;0;2", 1, 2, 1, "Ann  ", "102"},
      {"tab, an empty field", 'T', "Ann\t1\t\t2", 1, 2, 1, "Ann  ", "1 2"},
      {"runs of blanks, blanks in front", 'B', "   Ann  1   0 2  ", 1, 2, 1, "Ann  ", "102"},
      {"label behind the responses", 'S', "1 0 2 Ann", 4, 1, 1, "Ann  ", "102"},
      {"label between, also a response", ',', "1,0,2", 2, 1, 1, "0    ", "102"},
      {"too few fields", ',', "Ann,1", 1, 2, 1, "Ann  ", "1  "},
      {"too many fields", ',', "Ann,1,0,2,9,9", 1, 2, 1, "Ann  ", "102"},
      {"blanks around a field", ',', "Ann , 1, 0 ,2 ", 1, 2, 1, "Ann  ", "102"},
      {"responses cut and filled up", ',', "Ann,10,1,123", 1, 2, 2, "Ann  ", "101 12"},
      {"label cut", ',', "Annabella,1,0,2", 1, 2, 1, "Annab", "102"},
      {"double quotes", ',', "\"A, B\",\"1\",0,2", 1, 2, 1, "A, B ", "102"},
      {"single quotes, blank delimiter", 'B', "'A B' 1 '0' 2", 1, 2, 1, "A B  ", "102"},
      {"empty quotes", ',', "\"\",1,'',2", 1, 2, 1, "     ", "1 2"},
      {"text behind the closing quote", ',', "'A'x,1,0,2", 1, 2, 1, "A    ", "102"},
      {"an apostrophe inside", ',', "O'B,1,0,2", 1, 2, 1, "O'B  ", "102"},
      {"a quote without a partner", ',', "\"Ann,1,0,2", 1, 2, 1, "\"Ann ", "102"},
      {"a quote at the very end", 'B', "Ann 1 0 '", 1, 2, 1, "Ann  ", "10'"},
      {"empty record", ',', "", 1, 2, 1, "     ", "   "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    ControlSettings settings;
    settings.DELIM = c.delim;
    settings.NAME1 = c.name1;
    settings.ITEM1 = c.item1;
    settings.NI = 3;
    settings.NAMLEN = 5;
    settings.XWIDE = c.width;
    std::string label = "old label", codes = "old codes";
    SplitDelimited(c.record, settings, label, codes);
    EXPECT_EQ(label, c.label);
    EXPECT_EQ(codes, c.codes);
  }
}

}  // namespace
}  // namespace vardento
