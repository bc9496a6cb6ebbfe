// Runs that users and machines spoil: whatever stands in the files, the program says what is wrong,
// ends with the status that tells a script so, and leaves no work file behind.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <iterator>
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
  std::string words = "control.txt report.txt";  // of the command line, before "BATCH=Y"
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

// With a byte order mark, low bytes first.
std::string Utf16(const std::string& text) {
  std::string wide = "\xFF\xFE";
  for (const char c : text) wide += {c, '\0'};
  return wide;
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
      {"MissingTableList", With("TFILE=nowhere.txt\n"), kData, 1, "Input File Not Found"},
      {"SupplementalFileNamesItself", With("SPFILE=control.txt\n"), kData, 1, "SPFILE= FAILED:"},
      {"ReportNamedAsTheData", With(""), kData, 1, "REPORT FILE HAS SAME NAME AS DATA FILE",
       "control.txt data.txt"},
      {"ReportNamedAsAList", With("IAFILE=data.txt\n"), kData, 1,
       "REPORT FILE HAS SAME NAME AS IAFILE=", "control.txt data.txt"},
      {"MeasureFileNamedAsTheControlFile", With("PFILE=control.txt\n"), kData, 1, "File exists"},
      {"MeasureFileNamedAsTheData", With("SFILE=./data.txt\n"), kData, 1, "File exists"},
      {"MeasureFileNamedAsTheReport", With("ISFILE=report.txt\n"), kData, 1,
       " ISFILE= AND THE REPORT OUTPUT FILE ARE THE SAME FILE: "},
      {"OneDeviceForTwoFiles", With("IFILE=/dev/null\nSFILE=/dev/null\n"), kData, 0, ""},
      {"FormatWithoutEnd", With("FORMAT=(A5,4A1\n"), kData, 1, "PROBLEM WITH \"FORMAT=\""},
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
      {"DataInUtf16", With(""), Utf16(kData), 1, "data.txt IS UTF-16 TEXT: SAVE IT AS UTF-8"},
      {"DataInUtf16WithoutMark", With(""), Utf16(kData).substr(2), 1, "data.txt IS UTF-16 TEXT"},
      {"ControlFileInUtf16", Utf16(With("")), kData, 1, "control.txt IS UTF-16 TEXT"},
      {"ControlLinesInUtf16", With("SPFILE=data.txt\n"), Utf16(kData), 1, "data.txt IS UTF-16"},
      {"ItemLabelsInUtf16", With("ILFILE=data.txt\n"), Utf16(kData), 1, "data.txt IS UTF-16"},
      {"ListInUtf16", With("IAFILE=data.txt\n"), Utf16(kData), 1, "data.txt IS UTF-16"},
      {"FormsDataInUtf16", With("MFORMS=*\nD=data.txt\nC1-9=1\n*\n"), Utf16(kData), 1,
       "data.txt IS UTF-16"},
      {"DataEndWithinARecord", With("FORMAT=(5A,/,2A,/,2A)\n"),
       "Ann  \n11\n00\nBob  \n10\n10\nCid  \n01\n", 1, "ERROR IN DATA AT PERSON"},
      {"AllResponsesAlike", With(""), "Ann  1111\nBob  1111\n", 1, "No Non-Extreme Persons"},
      {"TooFewItemLabels", With("INUMB=N\n") + "One\nTwo\nEND LABELS\n", kData, 0,
       "Item labels = 2, but NI=4"},
      {"ControlFileMissing", "", "", 1, "Input File Not Found", "nowhere.txt report.txt"},
      {"ControlFileIsADirectory", "", "", 1, "", ". report.txt"},
      {"ReportInNoDirectory", With(""), kData, 1, "Drive or Directory Not Found",
       "control.txt nowhere/report.txt"},
      {"ReportIsADirectory", With(""), kData, 1, "", "control.txt ."},
      {"ReportOnFullDisk", With(""), kData, 1, "Not Enough Disk Space", "control.txt /dev/full"},
      {"ReportIsTheControlFile", With(""), kData, 1,
       "PROBLEM: REPORT FILE HAS SAME NAME AS CONTROL FILE", "control.txt control.txt"},
      {"MeasureFileOnFullDisk", With("PFILE=/dev/full\n"), kData, -1, "Not Enough Disk Space"},
      {"ReportMissing", With(""), kData, 2,
       "BATCH MODE REQUIRES CONTROL AND OUTFILES. CONTROL: ", "control.txt"},
      {"ThirdFileName", With(""), kData, 2,
       "Unknown Command on DOS prompt line:", "control.txt report.txt third.txt"},
  };
}

class Hostile : public testing::TestWithParam<Fault> {};

TEST_P(Hostile, EndsInWordsAndLeavesNothingBehind) {
  const Fault& fault = GetParam();
  const TempDirectory directory, scratch;
  const std::string control = directory.Write("control.txt", fault.control);
  directory.Write("data.txt", fault.data);
  ASSERT_EQ(mkfifo(directory.NameOf("pipe").c_str(), 0600), 0);
  std::istringstream words(fault.words + " BATCH=Y");
  const std::vector<std::string> line{std::istream_iterator<std::string>(words), {}};
  const ProgramResult result = Launch(directory, line, scratch.Path());
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

TEST(HostileLists, AreNotWrittenOver) {
  for (const std::string name : {"IAFILE", "SAFILE", "IWEIGHT", "EDFILE", "SPFILE", "TFILE"}) {
    SCOPED_TRACE(name);
    const TempDirectory directory, scratch;
    directory.Write("control.txt", With(name + "=list.txt\nIFILE=./list.txt\n"));
    directory.Write("data.txt", kData);
    directory.Write("list.txt", ";1 1 1\n");
    const ProgramResult result =
        Launch(directory, {"control.txt", "report.txt", "BATCH=Y"}, scratch.Path());
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("list.txt\nFile exists"));
    EXPECT_EQ(directory.Read("list.txt"), ";1 1 1\n");
  }
}

// Lines that make no sense are passed over, a list that can't be read is told.
TEST(HostileLists, EndInWordsOrAreReadAsFarAsTheyMakeSense) {
  const std::string nonsense =
      "0\n0-0 1\n-99 -1\n99 1\n99999999999999999999 1\n5-99999999999 1.0\nabc 1\n1 abc\n"
      "1 1e5\n1-\n1--2 1\n\"\n,,,\n;\n4 99 1\n" +
      std::string(500, '1') + " 1\n";
  for (const std::string name : {"IDFILE", "PDFILE", "IAFILE", "PAFILE", "SDFILE", "SAFILE",
                                 "IWEIGHT", "PWEIGHT", "PIVOT", "EDFILE", "MFORMS"}) {
    const struct {
      std::string lines, message;
    } cases[] = {{"=*\n" + nonsense + "*\n", "?"},
                 {"=binary.txt\n", "?"},
                 {"=*\n1 1\n", "NO LINE WITH * FOUND MATCHING " + name},
                 {"=.\n", "Is a directory"},
                 {"=nowhere.txt\n", "Input File Not Found. Please specify full path."},
                 {"=pipe\n", ""}};
    for (const auto& c : cases) {
      SCOPED_TRACE(name + c.lines);
      const TempDirectory directory, scratch;
      directory.Write("control.txt", With(name + c.lines));
      directory.Write("data.txt", kData);
      directory.Write("binary.txt", Bytes(3000) + "\n");
      ASSERT_EQ(mkfifo(directory.NameOf("pipe").c_str(), 0600), 0);
      const ProgramResult result =
          Launch(directory, {"control.txt", "report.txt", "BATCH=Y"}, scratch.Path());
      EXPECT_EQ(scratch.Files(), std::vector<std::string>{});
      EXPECT_TRUE(std::none_of(result.errors.begin(), result.errors.end(),
                               [](unsigned char b) { return b < ' ' && b != '\n'; }));
      if (c.message != "?") {
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.errors, HasSubstr(c.message));
      } else if (name == "MFORMS") {
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.errors, HasSubstr(name + "="));
      } else {
        EXPECT_THAT(result.status, AnyOf(0, 1));  // all entries may be gone
      }
    }
  }
}

TEST(WorkFiles, OfRunsAtOnceAreNeverShared) {
  const TempDirectory directory, scratch;
  directory.Write("data.txt", kData);
  std::vector<std::unique_ptr<Program>> programs;
  for (const std::string n : {"1", "2", "3", "4", "5", "6"}) {
    directory.Write(n + "c.txt", With("HLINES=N\nPFILE=" + n + "p.txt\n"));
    const std::vector<std::string> words{n + "c.txt", n + "r.txt", "BATCH=Y"};
    programs.push_back(std::make_unique<Program>(directory, words, scratch.Path()));
  }
  for (auto& program : programs) EXPECT_EQ(program->Wait().status, 0);
  EXPECT_NE(directory.Read("1p.txt"), "");
  for (const char* file : {"2p.txt", "3p.txt", "4p.txt", "5p.txt", "6p.txt"}) {
    EXPECT_EQ(directory.Read(file), directory.Read("1p.txt"));
  }
  EXPECT_EQ(scratch.Files(), std::vector<std::string>{});
}

// Work files hold private data: their directory and they themselves are open to their owner alone.
TEST(WorkFiles, AreTheUsersOwnAndGoneAfterATerminationSignal) {
  const TempDirectory directory, scratch;
  // Never converges: it would take minutes to reach the limit of iterations.
  directory.Write("control.txt", With("LCONV=0\nRCONV=0\n"));
  std::string data;
  for (int i = 0; i < 1000; ++i) data += kData;
  directory.Write("data.txt", data);
  Program program(directory, {"control.txt", "report.txt", "BATCH=Y"}, scratch.Path());
  while (scratch.Files().size() < 4) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  for (const auto& entry : std::filesystem::recursive_directory_iterator(scratch.Path())) {
    struct stat info {};
    ASSERT_EQ(lstat(entry.path().c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 077U, 0U) << entry.path();
  }
  kill(program.Process(), SIGTERM);
  EXPECT_NE(program.Wait().status, 0);
  EXPECT_EQ(scratch.Files(), std::vector<std::string>{});
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

// A file that is opened must not become a standard stream, nor what the program reads from itself.
TEST(CommandLine, ClosedStandardStreamsAreEmptyOnes) {
  std::string lines[2];
  for (const char* streams : {"</dev/null >/dev/null 2>&1", "<&- >&- 2>&-"}) {
    for (const std::string batch : {"", " BATCH=Y"}) {
      SCOPED_TRACE(streams + batch);
      const TempDirectory directory;
      directory.Write("control.txt", With("PFILE=nowhere/p.txt\n"));
      directory.Write("data.txt", kData);
      const std::string command = "cd " + directory.Path() + " && TMPDIR=$PWD timeout 60 " +
                                  VARDENTO_PROGRAM " control.txt report.txt" + batch + streams;
      EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
      const std::string report = directory.Read("report.txt");
      EXPECT_THAT(report, HasSubstr("RELIABILITY"));
      EXPECT_THAT(directory.Files(), testing::ElementsAre("control.txt", "data.txt", "report.txt"));
      std::string& expected = lines[batch.empty()];
      const auto count = std::to_string(std::count(report.begin(), report.end(), '\n'));
      if (expected.empty()) expected = count;
      EXPECT_EQ(count, expected);
    }
  }
}

}  // namespace
}  // namespace vardento::test
