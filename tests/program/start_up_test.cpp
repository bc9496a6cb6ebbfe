// The command line and the start-up dialogue.
#include "program/start_up.h"

#include <gmock/gmock.h>

#include "run/messages.h"
#include "support/whole_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(ScanCommandLine, TellsNamesVariablesAndSubListsApart) {
  struct Case {
    std::vector<std::string> words;
    const char *control, *report;
    bool batch, variables;
    const char* surplus;
  };
  const Case cases[] = {
      {{}, "", "", false, false, ""},
      {{"c", "r"}, "c", "r", false, false, ""},
      {{"c", "r", "BATCH=YES"}, "c", "r", true, true, ""},
      {{"c", "r", "b=y"}, "c", "r", true, true, ""},
      {{"c", "r", "BATCH=Y", "BATCH=N"}, "c", "r", false, true, ""},
      {{"c", "NI=5", "r", "TITLE=By=You"}, "c", "r", false, true, ""},
      {{"c", "r", "third"}, "c", "r", false, false, "third"},
      {{"c", "r", "IDFILE=*", "3", "5-7", "*", "NI=2"}, "c", "r", false, true, ""},
      {{"c", "r", "IDFILE=*", "3", "*", "third"}, "c", "r", false, true, "third"},
  };
  for (const Case& c : cases) {
    const CommandLine line = ScanCommandLine(c.words);
    const std::string about = testing::PrintToString(c.words);
    EXPECT_EQ(line.ControlFileName, c.control) << about;
    EXPECT_EQ(line.ReportFileName, c.report) << about;
    EXPECT_EQ(line.batch, c.batch) << about;
    EXPECT_EQ(line.hasVariables, c.variables) << about;
    EXPECT_EQ(line.surplusWord, c.surplus) << about;
  }
}

TEST(MakeRunStamp, FillsMinutesWithZerosAndNothingElse) {
  EXPECT_EQ(MakeRunStamp(1, 2, 9, 5, 2026), "Jan  2  9:05 2026");
  EXPECT_EQ(MakeRunStamp(12, 31, 23, 59, 2026), "Dec 31 23:59 2026");
}

// A dialogue with its own directories; the user's lines are the console's answers.
class Dialogue : public testing::Test {
 protected:
  Dialogue() {
    std::filesystem::create_directories(directory.NameOf("start"));
    std::filesystem::current_path(directory.NameOf("start"));
  }
  void Start(const std::vector<std::string>& words) {
    run.startUp.words = words;
    StartDialogue(run);
  }

  TempDirectory directory;
  OwnPlace place{directory};
  RecordingConsole console;
  vardento::Run run{console};
};

TEST_F(Dialogue, BasesTheReportOnTheStartAndMovesToTheControlFile) {
  directory.Write("start/study/c.txt", "NI=1\n");
  Start({"study/c.txt", "r.txt"});
  EXPECT_EQ(run.startUp.ControlFileName, directory.NameOf("start/study/c.txt"));
  EXPECT_EQ(run.startUp.ReportFileName, directory.NameOf("start/r.txt"));
  EXPECT_EQ(std::filesystem::current_path(), directory.NameOf("start/study"));
  EXPECT_TRUE(run.input.control.IsOpen());
  EXPECT_TRUE(run.report.IsOpen());
  EXPECT_THAT(console.Text(), testing::Not(HasSubstr("Extra specifications")));
  EXPECT_THAT(console.menuEntries[0], testing::StartsWith("Edit Control File=/"));
}

TEST_F(Dialogue, TakesTheControlFileFromADialog) {
  directory.Write("start/c.txt", "NI=1\n");
  console.chosenFiles = {"c.txt"};
  console.answers = {"", "r.txt", "TABLES=1 NI=3"};
  Start({});
  EXPECT_EQ(run.startUp.ControlFileName, directory.NameOf("start/c.txt"));
  EXPECT_EQ(run.startUp.ExtraSpecifications, "TABLES=1 NI=3");
  EXPECT_THAT(console.dialogs, ElementsAre("Control File"));
  EXPECT_FALSE(run.outputFailed);
}

TEST_F(Dialogue, EndsWhenTheUserIsGone) {
  EXPECT_THROW(Start({}), RunEnded);
  EXPECT_TRUE(run.leaving);
  EXPECT_NE(run.RunIoStatus, 0);
}

}  // namespace
}  // namespace vardento::test
