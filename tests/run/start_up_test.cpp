// The command line and the start-up dialogue.
#include "run/start_up.h"

#include <gmock/gmock.h>

#include "run/messages.h"
#include "support/test_run.h"

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
    setenv("TMPDIR", directory.NameOf("tmp").c_str(), 1);
    std::filesystem::create_directories(directory.NameOf("tmp"));
    std::filesystem::create_directories(directory.NameOf("start"));
    std::filesystem::current_path(directory.NameOf("start"));
  }
  ~Dialogue() override {
    std::filesystem::current_path(before_);
    unsetenv("TMPDIR");
  }
  void Start(const std::vector<std::string>& words) {
    run.startUp.words = words;
    StartDialogue(run);
  }

  TempDirectory directory;
  RecordingConsole console;
  vardento::Run run{console};

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
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

TEST_F(Dialogue, AsksUntilBothFilesAreGood) {
  directory.Write("start/c.txt", "NI=1\n");
  console.chosenFiles = {"c.txt"};
  console.answers = {"none.txt",       // no such file
                     "",               // a dialog instead
                     "c.txt",          // the report may not lie over the Control File
                     "nowhere/r.txt",  // nor in a directory that is not there
                     "r.txt",
                     "TABLES=1 NI=3"};
  Start({});
  EXPECT_EQ(run.startUp.ReportFileName, directory.NameOf("start/r.txt"));
  EXPECT_EQ(run.startUp.ExtraSpecifications, "TABLES=1 NI=3");
  EXPECT_THAT(console.dialogs, ElementsAre("Control File"));
  EXPECT_EQ(directory.Read("start/c.txt"), "NI=1\n");
  for (const char* text :
       {"Control file name? (e.g., KCT.DAT). Press Enter for Dialog Box:",
        "Input File Not Found. Please specify full path.",
        "PROBLEM: REPORT FILE HAS SAME NAME AS CONTROL FILE", "Drive or Directory Not Found"}) {
    EXPECT_THAT(console.Text(), HasSubstr(text));
  }
  EXPECT_FALSE(run.outputFailed);
}

TEST_F(Dialogue, ABlankReportIsATemporaryFileOfThisRun) {
  directory.Write("start/c.txt", "NI=1\n");
  console.answers = {"", ""};
  Start({"c.txt"});
  EXPECT_EQ(run.startUp.ReportFileName, directory.NameOf("start/ZOU" + run.workDirectory.Tail()));
  EXPECT_TRUE(run.startUp.reportIsTemporary);
  EXPECT_TRUE(directory.Exists("start/ZOU" + run.workDirectory.Tail()));
}

TEST_F(Dialogue, EndsOnACommandLineThatCantBeUsed) {
  EXPECT_THROW(Start({"c", "r", "more"}), RunEnded);
  EXPECT_TRUE(run.usageError);
  EXPECT_THAT(console.Text(), HasSubstr(" Unknown Command on DOS prompt line: \"more\"\n"));
  vardento::Run batch(console);
  batch.startUp.words = {"c", "BATCH=Y"};
  testing::internal::CaptureStderr();
  EXPECT_THROW(StartDialogue(batch), RunEnded);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "BATCH MODE REQUIRES CONTROL AND OUTFILES. CONTROL: c OUTPUT:\n");
  EXPECT_TRUE(batch.usageError);
}

TEST_F(Dialogue, EndsWhenTheUserIsGone) {
  EXPECT_THROW(Start({}), RunEnded);
  EXPECT_TRUE(run.leaving);
  EXPECT_NE(run.RunIoStatus, 0);
}

}  // namespace
}  // namespace vardento::test
