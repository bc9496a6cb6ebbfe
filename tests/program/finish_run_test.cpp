// The end of the report: nothing that was written before the Tables may get lost.
#include "program/finish_run.h"

#include <gmock/gmock.h>

#include "run/messages.h"
#include "support/test_run.h"

namespace vardento::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

TEST(FinishRun, PutsTheSavedFrontBehindTheTablesWithEveryCharacter) {
  for (std::size_t length : {0U, 1U, 99U, 100U, 101U, 250U}) {
    TestRun test("", false);
    test.OpenReport();
    const std::string text(length, 'f');
    WriteReportText(test.run, " " + text);
    WriteReportText(test.run, " last of front");
    SaveReportFront(test.run);
    WriteReportText(test.run, " a Table");
    test.run.complete = true;
    FinishRun(test.run);
    std::string expected = "a Table\n";
    for (std::size_t i = 0; i < std::max<std::size_t>(length, 1); i += 100) {
      expected += (length == 0 ? " " : text.substr(i, 100)) + "\n";
    }
    EXPECT_THAT(test.directory.Read("report.txt"), StartsWith(expected + "last of front\n"));
    EXPECT_EQ(test.console.lines.back(),
              "Measures constructed: use \"Diagnosis\" and \"Output Tables\" menus");
  }
}

TEST(FinishRun, CopiesTheControlLinesAsTheyStandAndRunsOnce) {
  TestRun test("", false);
  test.OpenReport();
  const std::string lines = "TITLE=caf\xC3\xA9\n\n^ ; odd\n&END\n";
  test.directory.Write("work/ZIN" + test.run.workDirectory.Tail(), lines);
  test.run.RunIoStatus = -1;
  FinishRun(test.run);
  FinishRun(test.run);
  EXPECT_THAT(test.directory.Read("report.txt"), EndsWith("\n" + lines));
  EXPECT_THAT(test.console.lines,
              testing::ElementsAre("Oops! Use \"Edit\" menu to make corrections, then restart"));
  EXPECT_EQ(test.run.RunIoStatus, -1);
}

}  // namespace
}  // namespace vardento::test
