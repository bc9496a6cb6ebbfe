#include "report/bias_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/small_run.h"

namespace vardento::test {
namespace {

using Lines = std::vector<std::string>;
using testing::HasSubstr;

// Items as targets unless told otherwise: Table 30, with the first characters of labels as classes.
class BiasTableTest : public testing::Test {
 protected:
  BiasTableTest() : small(6, 3), run(small.run) {
    const char* labels[] = {"A1", "B2", "A3", "B4", "C5", "C6"};
    const char* responses[] = {"100", "0  ", "0  ", "0  ", "1 1", "1  "};
    for (int n = 1; n <= 6; ++n) {
      small.SetPerson(n, labels[n - 1], {});
      small.SetResponses(n, responses[n - 1]);
    }
    run.inForce.DIF = "$S1W1";
    AboutItems();
  }
  void AboutItems() { Ask(30, Facet::Items); }
  void AboutPersons() { Ask(31, Facet::Persons); }
  void Ask(int table, Facet subject) {
    run.request.CurrentTable = table;
    run.request.SubtableCounter = 0;
    run.request.HeadingPending = true;
    small.context.needs.subject = subject;
  }
  // The report from the line that begins so.
  Lines From(const std::string& first) {
    Lines lines = small.ReportLines();
    while (!lines.empty() && !lines.front().starts_with(first)) lines.erase(lines.begin());
    return lines;
  }
  std::vector<std::string> Specifications() {
    std::vector<std::string> specifications;
    for (const std::string& line : small.ReportLines()) {
      if (line.find(" specification is: ") != line.npos) specifications.push_back(line);
    }
    return specifications;
  }

  SmallRun small;
  vardento::Run& run;
};

// Item 1: A has 1 of 2 right, B none, C all. Items 2 and 3: one class each.
TEST_F(BiasTableTest, ComparesClassesInPairs) {
  PrintBias(small.context);
  const std::string rule(88, '-');
  EXPECT_EQ(From("DIF specification"),
            (Lines{
                "DIF specification is: DIF=$S1W1",
                rule,
                "Positive DIF size is higher ITEM difficulty",
                rule,
                "PERSON                  PERSON                           JOINT       ITEM",
                rule,
                "GROUP      ADDED  S.E.  GROUP      ADDED  S.E.  CONTRAST  S.E.   t   Number  Name",
                rule,
                "A          .00    1.41  B      minimum score                              1 Item1",
                "A          .00    1.41  C      maximum score                              1 Item1",
                "B      minimum score    C      maximum score                              1 Item1",
                "A      minimum score                                                      2 Item2",
                "A      minimum score    C      maximum score                              3 Item3",
                rule,
            }));
}

// 255 of 340 right against 85: 2 ln 3 apart, each with an error of .1252.
TEST(BiasTable, HasRoomForLargeContrasts) {
  SmallRun small(680, 2);
  for (int n = 1; n <= 680; ++n) {
    small.SetPerson(n, n <= 340 ? "group1" : "group2", {});
    small.SetResponses(n, n % 4 != 0 ? (n <= 340 ? "10" : "01") : (n <= 340 ? "01" : "10"));
  }
  small.run.inForce.DIF = "$S1W6";
  small.context.needs.subject = Facet::Items;
  PrintBias(small.context);
  const Lines lines = small.ReportLines();
  EXPECT_EQ(lines.at(lines.size() - 3),
            "group1   -1.10     .13  group2    1.10     .13   -2.20     .18 -12.41     1 Item1");
  EXPECT_EQ(lines.at(lines.size() - 2),
            "group1    1.10     .13  group2   -1.10     .13    2.20     .18  12.41     2 Item2");
}

// Three items, two persons: person 1 has on class X 1 of 1 right, on Y none of 2; person 2 the
// reverse. The cells stand as X1 X2 Y1 Y2, and the row of person t takes places t and 3 + t: for
// person 1 X1 and Y2, for person 2 X2 alone.
TEST(BiasTable, StepsFromClassToClassByItems) {
  SmallRun small(2, 3);
  small.SetItemLabel(1, "X");
  small.SetItemLabel(2, "Y");
  small.SetItemLabel(3, "Y");
  small.SetResponses(1, "100");
  small.SetResponses(2, "010");
  small.run.inForce.DPF = "$S1W1";
  small.context.needs.subject = Facet::Persons;
  PrintBias(small.context);
  Lines lines = small.ReportLines();
  lines.erase(lines.begin(), lines.end() - 4);
  const std::string head = "GROUP     ADDED  S.E.  GROUP     ADDED";
  EXPECT_EQ(lines.at(1),
            "X     maximum score    Y         .00    1.41                            1 Pers1");
  EXPECT_EQ(lines.at(2),
            "X     minimum score                                                     2 Pers2");
  EXPECT_THAT(small.Report(), HasSubstr("Positive DPF size is higher PERSON ability\n"));
}

TEST_F(BiasTableTest, TakesSpecificationsFromAFile) {
  run.inForce.DIF = small.directory.Write(
      "classes.txt",
      "$S1W1 ; first letter\r\n\n\x01\n$s2e2\nnonsense\n$S1W0\n$S1W1+\"-\"+$S2W1\r\n"
      "$S1W1\r$S2W1" +
          std::string(300, ' ') + "$S9W9");
  PrintBias(small.context);
  EXPECT_EQ(Specifications(),
            (Lines{"DIF specification is: DIF=$S1W1", "DIF specification is: DIF=$s2e2",
                   "DIF specification is: DIF=$S1W1+\"-\"+$S2W1", "DIF specification is: DIF=$S1W1",
                   "DIF specification is: DIF=$S2W1"}));
  EXPECT_THAT(small.Report(), HasSubstr("TABLE 30.5 "));
  EXPECT_THAT(small.Report(), HasSubstr("\nA-1 "));
  EXPECT_THAT(small.console.Text(), HasSubstr("No $S..W. or $S..E.. : DIF=nonsense\n"));
  EXPECT_THAT(small.console.Text(), HasSubstr("$S..W.. NOT VALID in: DIF=$S1W0\n"));
  EXPECT_TRUE(run.files.IsKept(run.inForce.DIF)) << "an output file would take its place";
}

// Data in the place of specifications are told so many times and no more.
TEST_F(BiasTableTest, GivesUpAFileWithoutSense) {
  std::string text;
  for (int n = 0; n < 1000; ++n) text += "0110100" + std::string(2, '\0') + "\n";
  for (const std::string& nonsense : {text, std::string(100000, 'x') + "\n", std::string()}) {
    run.inForce.DIF = small.directory.Write("data.txt", nonsense);
    PrintBias(small.context);
  }
  EXPECT_THAT(Specifications(), testing::IsEmpty());
  EXPECT_LT(small.console.lines.size(), 60U);
  EXPECT_THAT(small.console.Text(), HasSubstr("MORE THAN 20 LINES IN ERROR"));
}

// A file of either variable that can't be read blanks DIF=.
TEST_F(BiasTableTest, TellsAFileThatIsNone) {
  AboutPersons();
  run.inForce.DPF = small.directory.Path();
  PrintBias(small.context);
  EXPECT_EQ(small.ReportLines(), (Lines{"INVALID IDIF FILE: " + small.directory.Path()}));
  EXPECT_EQ(run.inForce.DIF, "");
  EXPECT_NE(run.inForce.DPF, "");
}

TEST_F(BiasTableTest, TellsWhatIsNotGiven) {
  run.inForce.DIF = " ";
  PrintBias(small.context);
  AboutPersons();
  PrintBias(small.context);
  EXPECT_THAT(small.console.lines, testing::Contains(" TABLE 31 NOT PRINTED. IDIF= NOT SPECIFIED"));
  EXPECT_EQ(small.ReportLines(), (Lines{"TABLE 30 NOT PRINTED. PDIF= NOT SPECIFIED",
                                        "TABLE 31 NOT PRINTED. IDIF= NOT SPECIFIED"}));
  EXPECT_FALSE(run.outputFailed);
}

TEST_F(BiasTableTest, TellsWhenThereIsNoRoom) {
  run.inForce.DIF = "$S1W667";
  PrintBias(small.context);
  run.memory.SetLimit(0);
  run.inForce.DIF = "$S1W666";
  PrintBias(small.context);
  EXPECT_THAT(small.ReportLines().front(), "NO ROOM FOR DIF ESTIMATES: $S1W667");
  EXPECT_THAT(small.ReportLines().back(), "NOT ENOUGH MEMORY FOR TABLE");
  EXPECT_THAT(small.console.Text(),
              HasSubstr(" bytes of memory not available. Table not produced.\n"));
}

}  // namespace
}  // namespace vardento::test
