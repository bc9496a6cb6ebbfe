#include "data/item_labels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/data_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;

TEST(ItemLabels, ComeFromTheControlFileOrAList) {
  struct Case {
    const char* what;
    std::string control;
    const char* list;    // ILFILE=, null for none
    std::string labels;  // NI = 2
    int itlen;
    const char* nextLine;  // of the Control File
    const char* said = "";
  };
  const std::string x300(300, 'x');
  const Case cases[] = {
      {"plain", "One\nTwo\nEND LABELS\ndata\n", nullptr, "One|Two", 5, "data"},
      {"comments, blank lines, tabs, END NAMES in any form",
       "; none\nOne ;c\n\n \t \nT\two\nEnd\t names;\ndata\n", nullptr, "One|T wo", 5, "data"},
      {"leading blanks stay", "  One\nTwo\nENDLABELS\nd", nullptr, "  One|Two", 5, "d"},
      {"long labels", "Number one\nTwo\nEND LABELS\n", nullptr, "Number one|Two", 10, ""},
      {"too long", x300 + "y\nTwo\nEND LABELS\n", nullptr, x300 + "|Two", 200, ""},
      {"END LABELS is missing", "One\nTwo", nullptr, "One|Two", 5, ""},
      {"too few", "One\nEND LABELS\ndata", nullptr, "One|I0002", 5, "data",
       "Oops!  Item labels = 1, but NI=2|"
       " WRONG NUMBER OF ITEM LABELS. FOUND IN FILE =1, but NI=2"},
      {"too many", "One\nTwo\nThree\nEND LABELS\n", nullptr, "One|Two", 5, "",
       "Oops!  Item labels = 3, but NI=2|"
       " WRONG NUMBER OF ITEM LABELS. FOUND IN FILE =3, but NI=2"},
      {"none", "END LABELS\ndata", nullptr, "I0001|I0002", 5, "data",
       "Oops!  Item labels = 0, but NI=2| NO ITEM LABELS.  NI= 2"},
      {"a list; the Control File is skipped to END LABELS", "junk\nmore\nend labels\ndata\n",
       "L1\r\n\r\nL2 ; stays", "L1|L2 ; stays", 10, "data"},
      {"a list that is too short", "END NAMES\n", "L1\n", "L1|I0002", 5, "",
       " WRONG NUMBER OF ITEM LABELS. FOUND IN FILE =1, but NI=2"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    DataRun data(c.control, 2);
    data.settings.INUMB = false;
    data.run.inForce.ITLEN = 200;
    if (c.list) data.run.inForce.ILFILE = data.directory.Write("labels.txt", c.list);
    ReadItemLabels(data.run);
    EXPECT_EQ(ItemLabelOf(data.run, 1) + "|" + ItemLabelOf(data.run, 2), c.labels);
    EXPECT_EQ(data.run.inForce.ITLEN, c.itlen);
    EXPECT_EQ(Joined(data.console.lines), c.said);
    std::string next;
    static_cast<void>(data.run.input.control.ReadLine(next));
    EXPECT_EQ(next, c.nextLine);
  }
}

TEST(ItemLabels, NumbersStandForLabelsWithINUMB) {
  DataRun data("data\n", 2);
  ReadItemLabels(data.run);
  std::string next;
  EXPECT_EQ(data.run.input.control.ReadLine(next), kIoOk);
  EXPECT_EQ(next, "data");  // nothing was skipped
  EXPECT_EQ(data.run.inForce.ITLEN, 8);
  EXPECT_EQ(ItemLabelOf(data.run, 2), "I0002");
  EXPECT_EQ(ItemNumberLabel(12, 9999), "I0012");
  EXPECT_EQ(ItemNumberLabel(12, 10000), "00012");
  EXPECT_EQ(ItemNumberLabel(12345, 20000), "12345");
}

TEST(ItemLabels, FailuresSayWhatIsMissing) {
  DataRun unclosed("no end of labels\n", 2);
  unclosed.run.inForce.ILFILE = unclosed.directory.Write("labels.txt", "a\nb\n");
  EXPECT_THROW(ReadItemLabels(unclosed.run), RunEnded);
  EXPECT_THAT(unclosed.console.lines, ElementsAre("Please put \"END LABELS\" after \"&END\""));

  DataRun noList("END LABELS\n", 2);
  noList.settings.INUMB = false;
  noList.run.inForce.ILFILE = noList.directory.NameOf("none.txt");
  EXPECT_THROW(ReadItemLabels(noList.run), RunEnded);
  EXPECT_THAT(noList.console.lines,
              ElementsAre(" ITEM LABEL FILE OPEN FAILURE", noList.run.inForce.ILFILE,
                          "Input File Not Found. Please specify full path."));
  EXPECT_EQ(noList.run.RunIoStatus, -1);
}

}  // namespace
}  // namespace vardento::test
