// Runs that users and machines spoil: whatever stands in the files, the program says what is wrong,
// ends with the status that tells a script so, and leaves no work file behind.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>
#include <sstream>

#include "support/program.h"

namespace vardento::test {
namespace {

using testing::AnyOf;
using testing::HasSubstr;

constexpr char kControl[] =
    "TITLE=Hostile\nDATA=data.txt\nNI=4\nITEM1=6\nNAMLEN=4\nINUMB=Y\nPFILE=p.txt\n";
constexpr char kData[] =
    "Ann  1100\nBob  1010\nCid  0111\nDan  1000\nEve  0101\nFay  1011\nGus  0010\n";

struct Fault {
  const char* name;
  std::string control;  // text of control.txt
  std::string data;     // text of data.txt
  int status;
  std::string message;  // part of what the standard error stream says; "" for nothing in particular
  std::vector<std::string> words{"control.txt", "report.txt", "BATCH=Y"};
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

std::string Bytes(std::size_t count) {
  std::string text;
  unsigned state = 12345;
  while (text.size() < count) {
    state = state * 1103515245U + 12345U;
    text += static_cast<char>(state >> 16);
  }
  return text;
}

std::string With(const std::string& lines) { return kControl + lines + "&END\n"; }

std::vector<Fault> Faults() {
  const std::string nul(3, '\0');
  return {
      {"SoundRun", With(""), kData, 0, ""},
      {"EmptyControlFile", "", kData, 1, "PROBLEM WITH ITEM1="},
      {"ControlFileOfBlankLines", "\n   \n\t\n", kData, 1, "PROBLEM WITH ITEM1="},
      {"BinaryControlFile", "\x7f" + Bytes(5000) + "\n", kData, 1, "Variable=Value expected here:"},
      {"NulsInTheControlFile", With("CODES=01" + nul + "\n" + nul + "\n"), kData, 0, ""},
      {"LongControlLine", With("TITLE=" + std::string(70000, 'x') + "\n"), kData, 0, ""},
      {"EndlessContinuation", With("TITLE=a+\n+b+\n+c+\n"), kData, 1, "CONTINUATION PROBLEM"},
      {"SubListWithoutEnd", With("TFILE=*\n3.1\n"), kData, 1, "NO LINE WITH * FOUND MATCHING"},
      {"MissingTableList", With("TFILE=nowhere.txt\n"), kData, 1, "Input File Not Found"},
      {"SupplementalFileNamesItself", With("SPFILE=control.txt\n"), kData, 1, "SPFILE= FAILED:"},
      {"ReportNamedAsTheData",
       With(""),
       kData,
       1,
       "REPORT FILE HAS SAME NAME AS DATA FILE",
       {"control.txt", "data.txt", "BATCH=Y"}},
      {"MeasureFileNamedAsTheControlFile", With("PFILE=control.txt\n"), kData, 1, "File exists"},
      {"MeasureFileNamedAsTheData", With("IFILE=./data.txt\n"), kData, 1, "File exists"},
      {"MeasureFileNamedAsTheReport", With("IFILE=report.txt\n"), kData, 1, "File exists"},
      {"UnknownVariable", With("ZZZ=abc\n"), kData, 1, "NUMERIC VALUE EXPECTED"},
      {"FormatWithoutEnd", With("FORMAT=(A5,4A1\n"), kData, 1, "PROBLEM WITH \"FORMAT=\""},
      {"TooManyItems", With("NI=40000\n"), kData, 1, "NUMERIC VALUE IN RANGE"},
      {"MoreItemsThanColumns", With("NI=30\n"), kData, 0, ""},
      {"ItemsBehindEveryRecord", With("ITEM1=30000\n"), kData, 1, "No Non-Extreme Persons"},
      {"DataMissing", With("DATA=nowhere.txt\n"), kData, 1, "UNABLE TO OPEN DATA"},
      {"DataAreADirectory", With("DATA=.\n"), kData, 1, "UNABLE TO OPEN DATA"},
      {"DataAreAPipe", With("DATA=pipe\n"), kData, 1, "UNABLE TO OPEN DATA"},
      {"DataEmpty", With(""), "", 1, ""},
      {"DataBinary", With(""), Bytes(20000), 1, "No Non-Extreme Persons"},
      {"DataWithNuls", With(""), kData + ("Hal" + nul + "1" + nul) + "\n", 0,
       "NON-ASCII DATA CODE"},
      {"DataWithLongLine", With(""), kData + std::string("Ida  0110") + std::string(90000, '1'), 0,
       ""},
      {"DataEndWithinARecord", With("FORMAT=(5A,/,2A,/,2A)\n"),
       "Ann  \n11\n00\nBob  \n10\n10\nCid  \n01\n", 1, "ERROR IN DATA AT PERSON"},
      {"AllResponsesAlike", With(""), "Ann  1111\nBob  1111\n", 1, "No Non-Extreme Persons"},
      {"TooFewItemLabels", With("INUMB=N\n") + "One\nTwo\nEND LABELS\n", kData, 0,
       "Item labels = 2, but NI=4"},
      {"EveryScoreZero", With("NEWSCR=00\n"), kData, 1,
       "NONE OF YOUR RESPONSES ARE SCORED 1 OR ABOVE"},
      {"ControlFileMissing",
       "",
       "",
       1,
       "Input File Not Found",
       {"nowhere.txt", "report.txt", "BATCH=Y"}},
      {"ControlFileIsADirectory", "", "", 1, "", {".", "report.txt", "BATCH=Y"}},
      {"ReportInNoDirectory",
       With(""),
       kData,
       1,
       "Drive or Directory Not Found",
       {"control.txt", "nowhere/report.txt", "BATCH=Y"}},
      {"ReportIsADirectory", With(""), kData, 1, "", {"control.txt", ".", "BATCH=Y"}},
      {"ReportOnFullDisk",
       With(""),
       kData,
       1,
       "Not Enough Disk Space",
       {"control.txt", "/dev/full", "BATCH=Y"}},
      {"ReportIsTheControlFile",
       With(""),
       kData,
       1,
       "PROBLEM: REPORT FILE HAS SAME NAME AS CONTROL FILE",
       {"control.txt", "control.txt", "BATCH=Y"}},
      {"MeasureFileOnFullDisk", With("PFILE=/dev/full\n"), kData, -1, "Not Enough Disk Space"},
      {"ReportMissing",
       With(""),
       kData,
       2,
       "BATCH MODE REQUIRES CONTROL AND OUTFILES. CONTROL: ",
       {"control.txt", "BATCH=Y"}},
      {"ThirdFileName",
       With(""),
       kData,
       2,
       "Unknown Command on DOS prompt line:",
       {"control.txt", "report.txt", "third.txt", "BATCH=Y"}},
  };
}

class Hostile : public testing::TestWithParam<Fault> {};

TEST_P(Hostile, EndsInWordsAndLeavesNothingBehind) {
  const Fault& fault = GetParam();
  const TempDirectory directory, scratch;
  const std::string control = directory.Write("control.txt", fault.control);
  directory.Write("data.txt", fault.data);
  ASSERT_EQ(mkfifo(directory.NameOf("pipe").c_str(), 0600), 0);
  const ProgramResult result = Launch(directory, fault.words, scratch.Path());
  if (fault.status >= 0) {
    EXPECT_EQ(result.status, fault.status) << result.errors;
  } else {
    EXPECT_THAT(result.status, AnyOf(0, 1));
  }
  EXPECT_THAT(result.errors, HasSubstr(fault.message));
  EXPECT_EQ(result.errors.empty(), fault.status == 0 && fault.message.empty()) << result.errors;
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(scratch.Files(), std::vector<std::string>{});
  EXPECT_TRUE(TempDirectory::ReadFile(control) == fault.control) << "the Control File was changed";
  // A last line may have been given its end, no more.
  EXPECT_TRUE(directory.Read("data.txt").starts_with(fault.data)) << "the data were changed";
}

INSTANTIATE_TEST_SUITE_P(Runs, Hostile, testing::ValuesIn(Faults()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

// A failed batch run tells in its report, too, what went wrong.
TEST(HostileReport, HoldsTheMessage) {
  const TempDirectory directory;
  directory.Write("control.txt", With("CODES=0\n"));
  EXPECT_EQ(Launch(directory, {"control.txt", "report.txt", "BATCH=Y"}).status, 1);
  EXPECT_THAT(directory.Read("report.txt"), HasSubstr("IS TOO SHORT.  XWIDE="));
}

TEST(WorkFiles, OfRunsAtOnceAreNeverShared) {
  const TempDirectory directory, scratch;
  directory.Write("data.txt", kData);
  std::vector<std::unique_ptr<Program>> programs;
  for (int n = 0; n < 6; ++n) {
    const std::string number = std::to_string(n);
    directory.Write("control" + number + ".txt",
                    With("PFILE=p" + number + ".txt\nHLINES=N\nUMEAN=" + number + "00\n"));
    programs.push_back(
        std::make_unique<Program>(directory,
                                  std::vector<std::string>{"control" + number + ".txt",
                                                           "report" + number + ".txt", "BATCH=Y"},
                                  scratch.Path()));
  }
  for (auto& program : programs) EXPECT_EQ(program->Wait().status, 0);
  for (int n = 0; n < 6; ++n) {
    // Bob's measure: three of four below the mean of the items by the same amount in every run.
    const std::string row = directory.Read("p" + std::to_string(n) + ".txt");
    ASSERT_GE(row.size(), 14U);
    const std::string alone = directory.Read("p0.txt");
    EXPECT_NEAR(std::stod(row.substr(6, 8)) - 100 * n, std::stod(alone.substr(6, 8)), 0.011);
  }
  EXPECT_EQ(scratch.Files(), std::vector<std::string>{});
}

TEST(WorkFiles, AreGoneAfterATerminationSignal) {
  const TempDirectory directory, scratch;
  // Never ends by itself: the start values have no limit.
  directory.Write("control.txt", With("MPROX=0\n"));
  directory.Write("data.txt", kData);
  Program program(directory, {"control.txt", "report.txt", "BATCH=Y"}, scratch.Path());
  while (scratch.Files().size() < 4) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  kill(program.Process(), SIGTERM);
  EXPECT_NE(program.Wait().status, 0);
  EXPECT_EQ(scratch.Files(), std::vector<std::string>{});
}

// Work files hold private data: their directory and they themselves are open to their owner alone.
TEST(WorkFiles, AreTheUsersOwn) {
  const TempDirectory directory, scratch;
  directory.Write("control.txt", With("LCONV=0\nRCONV=0\n"));
  directory.Write("data.txt", kData);
  Program program(directory, {"control.txt", "report.txt", "BATCH=Y"}, scratch.Path());
  while (scratch.Files().size() < 4) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  int seen = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(scratch.Path())) {
    struct stat info {};
    ASSERT_EQ(lstat(entry.path().c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 077U, 0U) << entry.path();
    ++seen;
  }
  EXPECT_GT(seen, 4);
  kill(program.Process(), SIGTERM);
  program.Wait();
}

TEST(CommandLine, HelpIsOneScreenAndVersionOneLine) {
  const TempDirectory directory;
  const ProgramResult help = Launch(directory, {"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.errors, "");
  int lines = 0;
  std::istringstream text(help.output);
  for (std::string line; std::getline(text, line); ++lines) EXPECT_LE(line.size(), 80U) << line;
  EXPECT_LE(lines, 24);
  for (const char* word : {"BATCH=Y", "NI=", "CODES=", "DATA=", "PFILE="}) {
    EXPECT_THAT(help.output, HasSubstr(word));
  }
  const ProgramResult version = Launch(directory, {"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(std::count(version.output.begin(), version.output.end(), '\n'), 1);
  EXPECT_THAT(version.output, testing::MatchesRegex(".*[0-9]+\\.[0-9]+.*\n"));
}

}  // namespace
}  // namespace vardento::test
