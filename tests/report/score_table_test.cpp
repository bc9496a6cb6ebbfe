#include "report/score_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/sample_norms.h"
#include "support/estimates.h"

namespace vardento::test {
namespace {

using testing::HasSubstr;
using testing::Not;

// A run whose report holds Table 20 as `request` asks for it.
struct TableRun : WholeRun {
  std::string Tables(const std::string& lines, const std::string& request = "20", int items = 5,
                     int top = 1) {
    RunData(*this, Simulate(40, items, top, 8),
            (top == 1 ? "CODES=01\n" : "CODES=012\n") + lines + "\nTFILE=*\n" + request + "\n*");
    const std::string text = directory.Read(report);
    return text.substr(0, text.find("TABLE 0.1"));
  }
};

int Count(const std::string& text, std::string_view part) {
  int count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != text.npos; at += part.size()) ++count;
  return count;
}

TEST(ScoreTable, NormsComeOnlyWhenAskedFor) {
  EXPECT_THAT(TableRun().Tables(""), Not(HasSubstr("NORMS")));
  const std::string norms = TableRun().Tables("", "20.3");
  EXPECT_THAT(norms, HasSubstr("TABLE 20.3 "));
  EXPECT_THAT(norms, Not(HasSubstr("OGIVE")));
  EXPECT_THAT(norms, Not(HasSubstr("MEASURES ON COMPLETE")));
}

TEST(ScoreTable, ApproximatesSequentialModels) {
  EXPECT_THAT(TableRun().Tables(""), Not(HasSubstr("APPROXIMATED")));
  EXPECT_THAT(TableRun().Tables("MODELS=F", "20", 5, 2),
              HasSubstr("COMPLETE TEST (APPROXIMATED FOR 'S' AND 'F' MODELS)\n"));
}

// What the tips say comes true.
TEST(ScoreTable, TipsSetTheRange) {
  const std::string first = TableRun().Tables("USCALE=3\nUMEAN=7");
  const auto behind = [&first](const std::string& tip) {
    const std::size_t mean = first.find(tip) + tip.size();
    std::string words = first.substr(mean, first.find('\n', mean) - mean);
    return words.replace(words.find(" USCALE"), 1, "\n");
  };
  const std::string hundred = TableRun().Tables(behind("AS 0-100, "));
  EXPECT_THAT(hundred, HasSubstr("|     0      .0"));
  EXPECT_THAT(hundred, HasSubstr(" AS 0-100, UMEAN="));
  EXPECT_THAT(hundred, HasSubstr("     5   100.0"));
  const std::string raw = TableRun().Tables(behind("TO MATCH RAW SCORE RANGE, "));
  EXPECT_THAT(raw, HasSubstr("|     0      .00"));
  EXPECT_THAT(raw, HasSubstr("     5     5.00"));
}

// 60 scores above 0: 10 rows of 6 each at most; the sheets repeat their heads.
TEST(ScoreTable, KeepsToSheets) {
  const std::string text = TableRun().Tables("MAXPAGE=20", "20\n20.3", 30, 2);
  const std::string ogive =
      text.substr(text.find("OGIVE"), text.find("MEASURE\n") - text.find("OGIVE"));
  EXPECT_EQ(Count(ogive, "\n"), 10 + 5);  // heading, two rules, eleven rows, numbers
  EXPECT_EQ(Count(text, "TABLE 20.1"), 1);
  EXPECT_EQ(Count(text, "TABLE 20.2"), 1);
  EXPECT_EQ(Count(text, "TABLE 20.3"), 1);
  // 21 rows of three scores, 12 on the first sheet, then 16 on each; 61 rows of norms.
  EXPECT_EQ(Count(text, "| SCORE  MEASURE    S.E.| SCORE"), 2);
  EXPECT_EQ(Count(text, "| SCORE   MEASURE"), 5);
}

// What the Table and the norms print behind the run, and what the console says.
struct LaterTables : TableRun {
  explicit LaterTables(const std::string& lines) {
    Tables(lines);
    run.SetBatchMode(false);
    console.lines.clear();
  }
  std::string Print(void (*print)(ReportContext&)) {
    const std::string name = directory.NameOf("later.txt");
    EXPECT_EQ(run.report.Open(name, FileMode::Replace), kIoOk);
    ReportContext context{.run = run, .persons = {}, .items = {}};
    run.request.CurrentTable = 20;
    print(context);
    EXPECT_EQ(run.report.Close(), kIoOk);
    return TempDirectory::ReadFile(name);
  }
};

TEST(ScoreTable, AbsurdWeightsEndInAMessage) {
  LaterTables later("IWEIGHT=*\n1 2\n*");
  later.run.given.ItemWeight[1] = 1e9F;
  const auto message = testing::ElementsAre(
      "12000000092 bytes of memory not available. Frequency Table not produced.");
  EXPECT_EQ(later.Print(PrintScoreTable), "");
  EXPECT_THAT(later.console.lines, message);
  later.console.lines.clear();
  EXPECT_EQ(later.Print(PrintSampleNorms), "");
  EXPECT_THAT(later.console.lines, message);
}

TEST(ScoreTable, RefusedMemoryCostsTheNormsAlone) {
  LaterTables later("");
  later.run.memory.RefuseRequest(1);
  EXPECT_EQ(later.Print(PrintSampleNorms), "");
  EXPECT_THAT(
      later.console.lines,
      testing::Contains("104 bytes of memory not available. Frequency Table not produced."));
  EXPECT_THAT(later.Print(PrintScoreTable), HasSubstr("OGIVE"));
}

// A measure that is no number, which nothing known can make.
TEST(ScoreTable, MeasuresOutOfOrderEndTheNorms) {
  LaterTables later("");
  later.run.arrays.PersonMeasure[1] = std::nanf("");
  EXPECT_EQ(later.Print(PrintSampleNorms), "");
  EXPECT_EQ(later.console.lines.back(),
            "SORT SEQUENCE ERROR: PLEASE SEND THIS FILE TO the developers of Vardento");
}

TEST(ScoreTable, NoScoreNoTable) {
  EXPECT_THAT(TableRun().Tables("IWEIGHT=*\n1-5 .05\n*"), Not(HasSubstr("20.1")));
}

}  // namespace
}  // namespace vardento::test
