// What is said of files, how they are made fit, lines of the report, and the user's interrupts.
#include "run/messages.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>

#include "platform/io_status.h"
#include "support/test_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(ReportFileFailure, ChoosesTheWordsByStatusAndOperation) {
  struct Case {
    int status;
    char operation;
    const char* text;
  };
  const Case cases[] = {
      {kIoNoFinalLineEnd, 'I', "Use File Menu to add BLANK LINE at end of"},
      {2, 'I', "Input File Not Found. Please specify full path."},
      {kIoFileNotFound, 'I', "Input File Not Found. Please specify full path."},
      {kIoFileNotFound, 'O', "Unusable Output File Name"},
      {kIoDirectoryNotFound, 'O', "Drive or Directory Not Found"},
      {kIoDiskFull, 'W', "Not Enough Disk Space"},
      {0, 'R', "Processing has stopped"},
      {1, 'R', "Invalid function"},
      {EACCES, 'O', "Permission denied"},
  };
  for (const Case& c : cases) {
    TestRun test("", false);
    test.run.RunIoStatus = c.status;
    ReportFileFailure(test.run, std::string("my.txt  \0rest", 13), c.operation);
    EXPECT_THAT(test.console.lines, ElementsAre("my.txt", c.text));
  }
  TestRun test("", false);
  test.run.RunIoStatus = 99999;  // in no list: the text shows the number
  ReportFileFailure(test.run, "my.txt", 'R');
  EXPECT_THAT(test.console.lines.back(), HasSubstr("99999"));
}

TEST(ReportMessage, GoesToTheReportOfABatchRunAndIsCut) {
  TestRun test("", true);
  test.OpenReport();
  ReportMessage(test.run, "Something is wrong   ");
  ReportMessage(test.run, std::string(2000, 'y'));
  EXPECT_THAT(test.console.lines, ElementsAre("Something is wrong", std::string(1024, 'y')));
  EXPECT_THAT(test.Report(), testing::StartsWith("Something is wrong\nyyyy"));
}

TEST(PrepareFile, MakesTextFilesFit) {
  struct Case {
    std::string text, after;
  };
  const Case cases[] = {
      {"", ""},
      {"a\n", "a\n"},
      {"a\n   \t ", "a\n   \t "},
      {"a", "a\n"},
      {"a\nb   ", "a\nb   \n"},
      {"   ", "   "},
      {"a\r", "a\r\n"},
      {"x\n" + std::string(9000, ' '), "x\n" + std::string(9000, ' ')},
  };
  for (const Case& c : cases) {
    TestRun test("", false);
    std::string name = test.directory.Write("data.txt", c.text);
    PrepareFile(test.run, name, "IAFILE=");
    EXPECT_EQ(test.run.RunIoStatus, 0);
    EXPECT_EQ(test.directory.Read("data.txt"), c.after);
    EXPECT_TRUE(test.console.lines.empty());
  }
}

TEST(PrepareFile, RefusesUtf16AndNothingElse) {
  using namespace std::string_literals;
  const struct {
    std::string text;
    bool refused;
  } cases[] = {
      {"\xFF\xFE\x31\x04"s, true},
      {"\xFE\xFF\x04\x31"s, true},
      {"1\0\n\0"s, true},
      {"\0A\0n\0n"s, true},                               // no line end is added either
      {"\x18\x04\x32\x04 \0001\0000\0001\0\n\0"s, true},  // a name in Cyrillic letters
      {"\xEF\xBB\xBF"
       "Ann 1\n"s,
       false},
      {"\xFFnn 1\n"s, false},
      {"1\0"s, false},
      {"Ann\0 1100\nBob\0 1010\n"s, false},  // a NUL behind each name
      {"A\0\0\0"
       "1\0\0\0\n"s,
       false},
  };
  for (const auto& c : cases) {
    TestRun test("", false);
    std::string name = test.directory.Write("data.txt", c.text);
    if (!c.refused) {
      PrepareFile(test.run, name, "IAFILE=");
      continue;
    }
    EXPECT_THROW(PrepareFile(test.run, name, "IAFILE="), RunEnded) << c.text;
    EXPECT_THAT(test.console.lines, ElementsAre(name + " IS UTF-16 TEXT: SAVE IT AS UTF-8"));
    EXPECT_EQ(test.directory.Read("data.txt"), c.text);
  }
}

TEST(PrepareFile, AsksForAnotherFileWhenTheLineEndCantBeWritten) {
  TestRun test("", false);
  std::string name = test.directory.Write("bad.txt", "no end");
  const std::string good = test.directory.Write("good.txt", "fit\n");
  test.console.answers = {good};
  FailFileOperation(4, EROFS);  // open, read twice, then the write
  PrepareFile(test.run, name, "IAFILE=");
  FailFileOperation(0, 0);
  EXPECT_EQ(name, good);
  EXPECT_EQ(test.run.RunIoStatus, 0);
  EXPECT_EQ(test.console.lines[0],
            "Failed to read last line of file: " + test.directory.NameOf("bad.txt"));
  EXPECT_THAT(test.console.menuEntries, ElementsAre("Select here then add blank line at end of " +
                                                    test.directory.NameOf("bad.txt")));
}

TEST(PrepareFile, EndsABatchRunThatCantAsk) {
  TestRun test("", true);
  std::string name = test.directory.Write("bad.txt", "no end");
  FailFileOperation(4, EROFS);
  EXPECT_THROW(PrepareFile(test.run, name, "IAFILE="), RunEnded);
  FailFileOperation(0, 0);
}

TEST(PutLine, FollowsTheControlColumnAndKeepsEveryByte) {
  struct Case {
    char formfd;
    std::string line, expected;
    int linesOnPage;
  };
  const Case cases[] = {
      {'^', " a line", "a line\n", 8},
      {'^', " ", " \n", 8},
      {'^', "", " \n", 8},
      {'^', "^TABLE 1.0", "\fTABLE 1.0\n", 1},
      {'1', "^TABLE 1.0", "1TABLE 1.0\n", 1},
      {'1', " a line  ", " a line\n", 8},
      {'1', "", " \n", 8},
      {'^', " \xB3\xC4\xDA", "\xB3\xC4\xDA\n", 8},
      {'^', " " + std::string(600, 'z'), std::string(500, 'z') + "\n", 8},
  };
  for (const Case& c : cases) {
    TestRun test;
    test.OpenReport();
    test.run.DraftSettings().FORMFD = c.formfd;
    test.run.report.LinesOnPage = 7;
    EXPECT_EQ(test.run.report.PutLine(c.line, test.run.settings), kIoOk);
    EXPECT_EQ(test.run.report.LinesOnPage, c.linesOnPage);
    EXPECT_EQ(test.Report(), c.expected);
  }
}

TEST(WriteReportText, TellsOfAFullDiskOnceHoweverManyLinesFollow) {
  TestRun test("", false);
  ASSERT_EQ(test.run.report.Open("/dev/full", FileMode::Replace), kIoOk);
  for (int i = 0; i < 5000; ++i) WriteReportText(test.run, " a line of the report", " as shown");
  EXPECT_EQ(
      std::count(test.console.lines.begin(), test.console.lines.end(), "Not Enough Disk Space"),
      2);  // the failure and that of the second try
  EXPECT_LT(test.console.lines.size(), 10U);
  EXPECT_THAT(test.console.lines, testing::Contains(" as shown"));
  EXPECT_TRUE(test.run.outputFailed);
  EXPECT_EQ(test.run.RunIoStatus, 0);  // the run goes on
}

TEST(PumpMessages, StopsOnceThenLeaves) {
  TestRun test("", false);
  PumpMessages(test.run);
  EXPECT_EQ(test.run.StopRequest, 0);
  test.console.interrupts = 1;
  PumpMessages(test.run);
  EXPECT_EQ(test.run.StopRequest, 1);
  test.run.StopRequest = 0;  // a phase has honoured it
  PumpMessages(test.run);
  EXPECT_EQ(test.run.StopRequest, 0);
  test.console.interrupts = 2;
  EXPECT_THROW(PumpMessages(test.run), RunEnded);
  EXPECT_TRUE(test.run.leaving);
  EXPECT_EQ(test.run.RunIoStatus, -1);

  TestRun closing("", false);
  closing.console.closing = true;
  EXPECT_THROW(PumpMessages(closing.run), RunEnded);
  TestRun batch("", true);
  batch.console.interrupts = 1;
  EXPECT_THROW(PumpMessages(batch.run), RunEnded);
}

TEST(ShowProgress, DrawsSeventyFiveMarksHoweverManySteps) {
  for (int total : {1, 7, 75, 1000, 2000000}) {
    TestRun test("", false);
    const int step = total > 10000 ? 997 : 1;
    for (int done = 1; done < total; done += step) ShowProgress(test.run, done, total);
    ShowProgress(test.run, total, total);
    EXPECT_THAT(test.console.lines, ElementsAre(">" + std::string(75, '=') + "<")) << total;
  }
  TestRun test("", false);
  ShowProgress(test.run, 1, 2);  // half of 75 places, rounded to nearest: 38
  test.console.interrupts = 1;
  ShowProgress(test.run, 2, 2);
  EXPECT_EQ(test.console.lines[0], ">" + std::string(38, '=') + std::string(37, '#') + "<");
}

TEST(WorkDirectory, TakesTheLastFreeNumberAndRefusesLinks) {
  const TempDirectory directory;
  for (int number = 0; number < 1000; ++number) {
    const std::string digits = std::to_string(1000 + number).substr(1);
    if (number != 417) directory.Write((number % 2 ? "ZIN" : "ZOU") + digits + "kq.txt", "");
  }
  WorkDirectory none;
  {
    WorkDirectory work;
    ASSERT_TRUE(work.Prepare(directory.Path()));
    EXPECT_EQ(work.Tail(), "417kq.txt");
    EXPECT_FALSE(none.Prepare(directory.Path()));
    work.Keep(work.NameOf("ZIN"));
  }
  EXPECT_TRUE(directory.Exists("ZIN417kq.txt"));
  const TempDirectory other;
  ASSERT_EQ(symlink(directory.Path().c_str(), other.NameOf("link").c_str()), 0);
  EXPECT_FALSE(none.Prepare(other.NameOf("link")));
}

}  // namespace
}  // namespace vardento::test
