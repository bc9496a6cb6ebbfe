#include "data/data_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/data_run.h"

namespace vardento::test {
namespace {

using testing::Contains;
using testing::ElementsAre;

struct Layout {
  int name1, namlen, item1, NI;
  int width = 1;
  const char* codes = "01";
  char delim = ' ';
  const char* format = "";
};

TEST(DataReader, TakesLabelAndResponsesFromEveryRecord) {
  struct Case {
    const char* what;
    Layout layout;
    std::string data;
    const char* labels;  // of all persons, "|" between
    const char* codes;
  };
  const Case cases[] = {
      {"label in front", {1, 3, 4, 3}, "Ann010\nBob112\n", "Ann|Bob", "121|220"},
      {"label behind", {3, 3, 1, 2}, "01Ann\n10Bo\n", "Ann|Bo ", "12|21"},
      {"label inside the responses", {2, 2, 1, 3}, "010\n", "10", "121"},
      {"no label", {1, 0, 1, 1}, "1\n0\n", "|", "2|1"},
      {"short records are blank", {1, 4, 5, 3}, "Ann 01\nB\n", "Ann |B   ", "120|000"},
      {"blank as a code", {1, 1, 2, 3, 1, "01 "}, "A0\n", "A", "133"},
      {"a blank label", {1, 7, 8, 1}, "Ann    1\n       0\n", "Ann    |00002P ", "2|1"},
      {"a blank label in little room", {1, 3, 4, 1}, "   1\n", "000", "2"},
      {"control characters in a label", {1, 3, 4, 1}, "A\tB1\n", "A B", "2"},
      {"two columns", {1, 1, 2, 3, 2, "0 1 10"}, "A 11010\nB1 0\n", "A|B", "233|210"},
      {"delimited", {1, 4, 2, 2, 1, "01", 'Y'}, "'A,B',0,1\nAnn,,0\n", "A,B |Ann ", "12|01"},
      {"delimited, no label there", {3, 6, 1, 2, 1, "01", 'B'}, "0 1\n", "00001P", "12"},
      {"format over two lines, the last record cut short",
       {1, 2, 3, 4, 1, "01", ' ', "(4A1/2A1)"},
       "AB01\n10\nCD11\n0\n",
       "AB|CD",
       "1221|2210"},
      {"format, a blank line behind the last record",
       {1, 1, 2, 2, 1, "01", ' ', "(2A1/A1)"},
       "A0\n1\n \n",
       "A",
       "12"},
      {"format, control-Z behind the last record",
       {1, 1, 2, 2, 1, "01", ' ', "(2A1/A1)"},
       "A0\n1\n\x1A\n",
       "A",
       "12"},
      {"format with wide fields",
       {1, 2, 3, 2, 2, "0001", ' ', "(2A1,2A2)"},
       "AB0100\n",
       "AB",
       "21"},
  };
  for (const Case& c : cases) {
    for (const bool inFile : {false, true}) {
      SCOPED_TRACE(testing::Message() << c.what << (inFile ? ", in a file" : ", Control File"));
      DataRun data(inFile ? "" : c.data, c.layout.NI);
      data.settings.NAME1 = c.layout.name1;
      data.settings.NAMLEN = c.layout.namlen;
      data.settings.ITEM1 = c.layout.item1;
      data.SetCodes(c.layout.codes, c.layout.width);
      data.settings.DELIM = c.layout.delim;
      data.settings.FORMAT = c.layout.format;
      if (inFile) data.settings.DATA = data.directory.Write("d.txt", "\xEF\xBB\xBF" + c.data);
      data.Read();
      EXPECT_EQ(Joined(data.Labels()), c.labels);
      EXPECT_EQ(Joined(data.CodedRows()), c.codes);
    }
  }
}

TEST(DataReader, ReadsSeveralFilesAndShowsTheFirstRecordOfEach) {
  DataRun data("END LABELS\n", 2);
  data.settings.NAMLEN = 1;
  data.settings.ITEM1 = 2;
  const std::string a = data.directory.Write("a.txt", "A01\nB11\n\x1Anot read\n");
  const std::string b = data.directory.Write("b.txt", "\n");
  const std::string c = data.directory.Write("c.txt", "C10");
  data.settings.DATA = a + " + " + b + "+" + c;
  data.Read();
  EXPECT_THAT(data.Labels(), ElementsAre("A", "B", "C"));
  EXPECT_THAT(data.CodedRows(), ElementsAre("12", "22", "21"));
  EXPECT_THAT(data.console.lines,
              ElementsAre(" Input in process ..", "Opening: " + a, " Input Data Record:", "123",
                          "---", "A01", "^P^N", "Opening: " + b, "Opening: " + c,
                          " Input Data Record:", "C10", "^P^N", " 3 PERSON Records Input."));
  EXPECT_THAT(data.console.menuEntries,
              ElementsAre("Edit Data File=" + a, "Edit Data File=" + b, "Edit Data File=" + c));
}

TEST(DataReader, ShowsARecordBeforeAndAfterFormat) {
  DataRun data("A-0\n1\n", 2);
  data.settings.NAMLEN = 1;
  data.settings.ITEM1 = 2;
  data.settings.FORMAT = "(A1,X,A1/A1)";
  data.Read();
  EXPECT_THAT(data.console.lines,
              ElementsAre(" Input in process ..", " Input Data Record before FORMAT=:", "123",
                          "---", "A-0", " Input Data Record after FORMAT=:", "123", "---", "A01",
                          "^P^N", " 1 PERSON Records Input."));
}

TEST(DataReader, StoresTheResponsesOfDeletedPersonsAndItemsToo) {
  DataRun data("A012\nB210\nC111\n", 3);
  data.SetCodes("012", 1);
  data.settings.NAMLEN = 1;
  data.settings.ITEM1 = 2;
  data.run.given.PersonStatus[2] = Status::Deleted;
  data.run.given.ItemStatus[2] = Status::Deleted;
  data.Read();
  EXPECT_THAT(data.Labels(), ElementsAre("A", "B", "C"));
  EXPECT_THAT(data.CodedRows(), ElementsAre("123", "321", "222"));
  EXPECT_THAT(data.ScoredRows(), ElementsAre("012", "210", "111"));
}

TEST(DataReader, WarnsOnceOfDataThatIsNoPlainText) {
  DataRun data("0x\n1\xE9\n\xE9\t\n", 2);
  data.Read();
  std::vector<std::string> warnings;
  for (const std::string& line : data.console.lines) {
    if (line.find("NON-ASCII") != line.npos) warnings.push_back(line);
  }
  EXPECT_THAT(warnings, ElementsAre(" NON-ASCII DATA CODE FOR PERSON: 2, ITEM: 2, DECIMAL= 233, "
                                    "CHARACTER= \xE9"));
}

TEST(DataReader, CountsPersonsBeyondCapacityAndKeepsTheRestOut) {
  DataRun data("1\n0\n1\n1\n", 1);
  data.SetCapacity(2);
  data.OpenReport();
  data.Read();
  EXPECT_EQ(data.run.NPERS, 2);
  EXPECT_EQ(data.run.personsRead, 4);
  EXPECT_THAT(data.console.lines, Contains("PERSONS SKIPPED AFTER 2").Times(1));
  EXPECT_EQ(data.Report(), "PERSONS SKIPPED AFTER 2\n4 PERSON Records Input.\n");
}

TEST(DataReader, ShowsADotForEveryThousandRecords) {
  std::string records;
  for (int p = 0; p < 79500; ++p) records += "1\n";
  DataRun data(records, 1);
  data.SetCapacity(100000);
  data.Read();
  const std::vector<std::string>& lines = data.console.lines;
  EXPECT_THAT(std::vector(lines.end() - 3, lines.end()),
              ElementsAre(std::string(78, '.'), ".", " 79500 PERSON Records Input."));
}

TEST(DataReader, StopsReadingWhenTheUserAsks) {
  DataRun data("1\n0\n1\n1\n", 1, false);
  data.console.onPump = [](RecordingConsole& console) {
    if (console.pumps == 3) console.interrupts = 1;
  };
  data.Read();
  EXPECT_EQ(data.run.StopRequest, 1);
  EXPECT_EQ(data.run.NPERS, 2);
}

TEST(DataReader, EndsTheRunWithoutPersons) {
  for (const char* records : {"", "\n  \n", "\x1A\n1\n"}) {
    DataRun data(records, 1);
    EXPECT_THROW(data.Read(), RunEnded);
    EXPECT_EQ(data.run.RunIoStatus, -1);
    EXPECT_THAT(data.console.lines, Contains("0 PERSON Records Input."));
  }
}

TEST(DataReader, EndsTheRunWithMoreCodesThanItCanTellApart) {
  DataRun data("01\n", 1);
  data.SetCodes(std::string(512, '1'), 2);
  EXPECT_THROW(data.Read(), RunEnded);
  EXPECT_THAT(data.console.lines,
              ElementsAre(" CODES= HAS 256 CODES, WHICH IS MORE THAN MAXIMUM OF 255"));
}

}  // namespace
}  // namespace vardento::test
