// The program at a terminal: prompts and answers, stopping the iteration, ways out when idle.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/pty_session.h"

namespace vardento::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kControl[] =
    "TITLE=Terminal\nDATA=data.txt\nNI=4\nITEM1=6\nNAMLEN=4\nINUMB=Y\nPFILE=p.txt\n"
    "TABLES=001001\n";
constexpr char kData[] =
    "Ann  1100\nBob  1010\nCid  0111\nDan  1000\nEve  0101\nFay  1011\nGus  0010\n";
constexpr char kDone[] = "Measures constructed: use \"Diagnosis\" and \"Output Tables\" menus";

class Terminal : public testing::Test {
 protected:
  void Prepare(const std::string& lines = "") {
    directory.Write("control.txt", kControl + lines + "&END\n");
    directory.Write("data.txt", kData);
  }
  // The files in the work directory below TMPDIR.
  std::vector<std::string> WorkFiles() const {
    std::vector<std::string> names;
    for (const std::string& name : directory.Files()) {
      if (name.starts_with("tmp/")) names.push_back(name);
    }
    return names;
  }
  TempDirectory directory;
};

TEST_F(Terminal, AsksForWhatTheCommandLineDoesNotSay) {
  Prepare();
  PtySession session(directory, {});
  ASSERT_TRUE(session.WaitFor(" Control file name? (e.g., KCT.DAT). ")) << session.Screen();
  ASSERT_TRUE(session.WaitFor("Press Enter for Dialog Box: "));
  session.Type("nowhere.txt\n");
  ASSERT_TRUE(session.WaitFor("Input File Not Found. Please specify full path."));
  ASSERT_TRUE(session.WaitFor("Press Enter for Dialog Box: "));
  session.Type("control.txt\n");
  ASSERT_TRUE(session.WaitFor("press Enter for temporary file): ")) << session.Screen();
  session.Type("control.txt\n");
  ASSERT_TRUE(session.WaitFor("PROBLEM: REPORT FILE HAS SAME NAME AS CONTROL FILE"));
  ASSERT_TRUE(session.WaitFor("press Enter for temporary file): "));
  session.Type("nowhere/report.txt\n");
  ASSERT_TRUE(session.WaitFor("Drive or Directory Not Found"));
  ASSERT_TRUE(session.WaitFor("press Enter for temporary file): "));
  session.Type("report.txt\n");
  ASSERT_TRUE(session.WaitFor(" Extra specifications (or press Enter): "));
  session.Type("UMEAN=500 USCALE=100\n");
  for (const char* text :
       {" Temporary Workfile Directory: ", " Reading Control Variables ..", " Input in process ..",
        "CONVERGENCE TABLE", " Output written to ", kDone}) {
    ASSERT_TRUE(session.WaitFor(text)) << text << "\n" << session.Screen();
  }
  session.Type("exit\n");
  EXPECT_EQ(session.WaitForEnd(), 0);
  EXPECT_EQ(WorkFiles(), std::vector<std::string>{});
  const std::string report = directory.Read("report.txt");
  EXPECT_THAT(report, HasSubstr("TABLE 3.1 Terminal"));
  EXPECT_THAT(report, HasSubstr("UMEAN=500.000 USCALE=100.000"));
  EXPECT_THAT(report, HasSubstr("UMEAN=500\nUSCALE=100\n")) << "the copy of the control lines";
}

TEST_F(Terminal, ATemporaryReportIsTheOneFileThatStays) {
  Prepare();
  PtySession session(directory, {"control.txt"});
  ASSERT_TRUE(session.WaitFor("press Enter for temporary file): ")) << session.Screen();
  session.Type("\n");
  ASSERT_TRUE(session.WaitFor(" Extra specifications (or press Enter): "));
  session.Type("\n");
  ASSERT_TRUE(session.WaitFor(kDone)) << session.Screen();
  session.Type("exit\n");
  EXPECT_EQ(session.WaitForEnd(), 0);
  std::string report;
  for (const std::string& name : directory.Files()) {
    if (name.find("ZOU") != std::string::npos) {
      report = directory.Read(name);
    } else {
      EXPECT_FALSE(name.starts_with("tmp/")) << name;
    }
  }
  EXPECT_THAT(report, HasSubstr("TABLE 6.1 Terminal"));
}

TEST_F(Terminal, EndsByExitEndOfInputHangUpInterruptOrQuit) {
  Prepare();
  for (const std::string way : {"exit", "end of input", "hang-up", "interrupt", "quit"}) {
    SCOPED_TRACE(way);
    PtySession session(directory, {"control.txt", "report.txt"});
    ASSERT_TRUE(session.WaitFor(" Type \"exit\" and press Enter to end.")) << session.Screen();
    session.Type("a line that means nothing\n");
    if (way == "exit") session.Type("exit\n");
    if (way == "end of input") session.PressControlD();
    if (way == "hang-up") session.HangUp();
    if (way == "interrupt") session.PressControlC();
    if (way == "quit") session.Type("\x1c");
    const int status = session.WaitForEnd();
    if (way == "exit" || way == "end of input") {
      EXPECT_EQ(status, 0);
    }
    EXPECT_NE(status, -2) << "still running";
    EXPECT_EQ(WorkFiles(), std::vector<std::string>{});
    EXPECT_THAT(directory.Read("report.txt"), HasSubstr("TABLE 6.1 Terminal"));
  }
}

// Start values and estimation without end, no iteration limits, criteria that can't be met: each
// Ctrl+C finishes what is being iterated, and the run goes on.
TEST_F(Terminal, ControlCFinishesEachPhaseThatHasNoEnd) {
  Prepare("MPROX=0\nLCONV=0\nRCONV=0\n");
  PtySession session(directory, {"control.txt", "report.txt"});
  ASSERT_TRUE(session.WaitFor("CONVERGENCE TABLE")) << session.Screen();
  session.PressControlC();
  ASSERT_TRUE(session.WaitFor("UCON")) << session.Screen();
  session.PressControlC();
  ASSERT_TRUE(session.WaitFor("Calculating Fit Statistics")) << session.Screen();
  ASSERT_TRUE(session.WaitFor(kDone)) << session.Screen();
  session.Type("exit\n");
  EXPECT_EQ(session.WaitForEnd(), 0);
  EXPECT_THAT(directory.Read("report.txt"), HasSubstr("TABLE 6.1 Terminal"));
  EXPECT_THAT(directory.Read("p.txt"), HasSubstr("Gus"));
}

TEST_F(Terminal, ControlCTwiceEndsTheProcess) {
  // A group of people large enough that an iteration takes a while, so that both come in one.
  std::string data;
  for (int n = 0; n < 60000; ++n) {
    data += "P     ";
    for (int i = 0; i < 100; ++i) data += (n * 7 + i * i * 13) % 11 < 5 ? '1' : '0';
    data += '\n';
  }
  directory.Write("control.txt",
                  "NI=100\nITEM1=7\nINUMB=Y\nDATA=data.txt\nLCONV=0\nRCONV=0\n&END\n");
  directory.Write("data.txt", data);
  PtySession session(directory, {"control.txt", "report.txt"});
  ASSERT_TRUE(session.WaitFor("UCON")) << session.Screen();
  EXPECT_NE(WorkFiles(), std::vector<std::string>{});
  // Signals that a loaded machine delivers at the same moment are one.
  for (int press = 0; press < 6; ++press) {
    session.PressControlC();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_NE(session.WaitForEnd(), 0);
  EXPECT_THAT(session.Screen(), Not(HasSubstr(kDone)));
  EXPECT_EQ(WorkFiles(), std::vector<std::string>{});
}

TEST_F(Terminal, AFailedRunSaysSoAndWaits) {
  Prepare("CODES=0\n");
  PtySession session(directory, {"control.txt", "report.txt"});
  ASSERT_TRUE(session.WaitFor("IS TOO SHORT.  XWIDE=")) << session.Screen();
  ASSERT_TRUE(session.WaitFor("Oops! Use \"Edit\" menu to make corrections, then restart"));
  session.Type("exit\n");
  EXPECT_EQ(session.WaitForEnd(), 1);
  EXPECT_EQ(WorkFiles(), std::vector<std::string>{});
}

}  // namespace
}  // namespace vardento::test
