#include "report/page.h"

#include <gtest/gtest.h>

#include "report/small_run.h"

namespace vardento::test {
namespace {

TEST(ReportLine, PlacesByColumnAndStaysInTheBuffer) {
  ReportLine line;
  line.At(3).Text("ab", 4).Fixed(-0.5, 6, 2).Integer(1234567, 4).Skip(1).Repeat('x', 2);
  EXPECT_EQ(line.View(), "  ab    -.50**** xx");
  line.Clear();
  EXPECT_EQ(line.View(), " ");
  line.At(500).Text("abc").Text("d").Repeat('e', 3).Integer(5, 2);
  EXPECT_EQ(line.View().size(), 501U);
  EXPECT_EQ(line.View().substr(498), " ab");
}

// What is drawn has a plain form, by the graphics table; a text of the same bytes keeps them, also
// where it is laid over a drawing.
TEST(ReportLine, KnowsWhatIsDrawn) {
  ReportLine line;
  const std::pair<const char*, const char*> signs[] = {
      {"\xC4\xC2\xC1", "---"},
      {"\xB3\xC3\xB4", "|||"},
      {"\xC5\xDA\xBF\xC0\xD9", "+++++"},
      {"\xC9\xCD\xBB\xC8\xBA\xBC", "******"},
      {"\xF9\xFA", ".."},
  };
  std::string drawn, plain;
  for (const auto& [bytes, shown] : signs) {
    drawn += bytes;
    plain += shown;
    for (const char* c = bytes; *c != 0; ++c) line.Repeat(static_cast<Box>(*c), 1);
  }
  line.Text(drawn).At(2).Text("\xC2").Repeat('\xC1', 1);
  EXPECT_EQ(line.View(), drawn + drawn);
  EXPECT_EQ(line.Plain(), "-\xC2\xC1" + plain.substr(3) + drawn);
}

// The name of the report ends in column 62 whatever its length, and covers a long title.
TEST(PageHeading, NameTitleAndStampStandInTheirColumns) {
  for (const std::size_t length : {1U, 39U, 40U, 41U, 300U}) {
    SmallRun small(3, 2);
    small.run.startUp.ReportFileName = "A" + std::string(length - 1, 'n');
    small.run.startUp.ReportFileName.back() = 'Z';
    small.run.DraftSettings().TITLE = std::string(60, 'T');
    small.run.request.CurrentTable = 16;
    PutPageHeading(small.run, 1);
    const std::vector<std::string> lines = small.ReportLines();
    ASSERT_EQ(lines.size(), 5U);
    const std::string shown =
        small.run.startUp.ReportFileName.substr(length - std::min<std::size_t>(length, 40));
    const std::string& heading = lines[1];
    const std::size_t first = 62 - shown.size();
    EXPECT_EQ(heading.substr(0, first - 1),
              ("\fTABLE 16.1 " + std::string(60, 'T')).substr(0, first - 1));
    EXPECT_EQ(heading.substr(first - 1), " " + shown + " " + std::string(kRunStamp)) << length;
    EXPECT_EQ(heading.size(), 80U);
  }
}

TEST(PageHeading, HeadingNoPrintsTheFirstOfEachTable) {
  SmallRun small(0, 2);
  small.run.personsRead = 0;
  small.run.DraftSettings().HEADING = false;
  small.run.report.LinesOnPage = -1;
  PutPageHeading(small.run, 0);
  PutPageHeading(small.run, 5);
  EXPECT_EQ(small.run.request.SubtableCounter, 1);
  const std::vector<std::string> lines = small.ReportLines();
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0].substr(0, 9), "TABLE 0.1") << "no form feed when no page break is wanted";
  EXPECT_EQ(lines[2] + lines[3], "  ");
}

TEST(Paging, BreaksSheetsOnlyBeyondTheirLength) {
  SmallRun small(3, 2);
  auto& run = small.run;
  EXPECT_FALSE(CheckPageBreak(run, 30000)) << "without MAXPAGE= no Table is broken";
  run.DraftSettings().MAXPAGE = 20;
  EXPECT_FALSE(CheckPageBreak(run, 20));
  EXPECT_TRUE(CheckPageBreak(run, 21));
  EXPECT_EQ(run.report.LinesOnPage, 2);
  EXPECT_EQ(run.report.PageNumber, 2);
  run.report.PageNumber = 11;
  CheckPageBreak(run, 21);
  run.report.LinesOnPage = 20;
  PutPageHeading(run, 0);  // the page is exactly full: no blank line before the form feed
  EXPECT_EQ(run.report.PageNumber, 1);
  const std::vector<std::string> lines = small.ReportLines();
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_EQ(lines[0], "\f**CONTINUED FROM PREVIOUS SHEET**   PAGE 2");
  EXPECT_EQ(lines[1], " ");
  EXPECT_EQ(lines[2], "\f**CONTINUED FROM PREVIOUS SHEET**   PAGE 12");
  EXPECT_EQ(lines[4].substr(0, 7), "\fTABLE ");
}

}  // namespace
}  // namespace vardento::test
