// What the user sees of whole runs in the report and at the terminal.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support/program.h"
#include "support/whole_run.h"

namespace vardento::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr char kControl[] =
    "NI=3\nNAMLEN=3\nITEM1=5\nINUMB=Y\n&END\nAnn 110\nBob 100\nCid 011\nDan 001\n";

// The number of bytes in the text that no plain text has.
long CountHighBytes(const std::string& text) {
  return std::count_if(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) > 127; });
}

void RemoveAll(std::string& text, const std::string& piece) {
  for (std::size_t at; (at = text.find(piece)) != std::string::npos;) text.erase(at, piece.size());
}

// Bytes of the user that happen to be those of box characters come out as they went in, whatever
// the boxes around them are drawn with: in Tables, headings, the front part, the copy of the
// Control File, on the console and in its summary.
TEST(Reports, KeepTheBytesOfTheUsersTexts) {
  const std::string texts[] = {"T\xB3\xC4\xDA", "K\xC5",     "I\xC1",     "A\xB4\xBF",
                               "x\xD9",         "r\xC2\xC3", "; \xC0\xC9"};
  const auto& [title, person, item, name, label, report, comment] = texts;
  for (const std::string ascii : {"Y", "N"}) {
    SCOPED_TRACE("ASCII=" + ascii);
    WholeRun whole;
    whole.report = report + ".txt";
    whole.directory.Write("control.txt",
                          "TITLE=" + title + "\nPERSON=" + person + "\nITEM=" + item +
                              "\nNI=3\nNAMLEN=3\nITEM1=5\nASCII=" + ascii + "  " + comment +
                              "\nTFILE=*\n6.1\n14.1\n3.1\n*\n&END\n" + label +
                              "1\nb\nc\nEND LABELS\n" + name + " 110\nBob 100\nCid 011\nDan 001\n");
    whole.Execute({}, "BATCH=N");
    std::string file = whole.directory.Read(whole.report);
    std::string console = whole.console.Text();
    EXPECT_THAT(console, AllOf(HasSubstr(title), HasSubstr(person), HasSubstr(name),
                               HasSubstr(item), HasSubstr(report)));
    for (const std::string& text : texts) {
      EXPECT_THAT(file, HasSubstr(text));
      RemoveAll(file, text);
      RemoveAll(console, text);
    }
    EXPECT_EQ(CountHighBytes(file) > 0, ascii == "N") << file;
    EXPECT_EQ(CountHighBytes(console), 0) << console;
  }
}

// A number that its field can't show is no other number.
TEST(Reports, ShowNoPartOfANumber) {
  WholeRun whole;
  whole.directory.Write("control.txt", kControl);
  whole.Execute({"TABLES=001", "UMEAN=12345.5", "USCALE=-1000"});
  EXPECT_THAT(whole.directory.Read("report.txt"), HasSubstr("\nUMEAN=******** USCALE=********\n"));
}

// What is asked for by name and isn't there yet is told once, and not in the report; a part that
// only a whole Table or a setting would bring is no such thing, nor is a number without a Table.
TEST(Reports, TellOfWhatIsNotAvailable) {
  const struct {
    std::vector<std::string> words, missing;
  } cases[] = {
      {{"TABLES=011000000000000000000100", "TFILE=*", "2", "22 - 3", "10.2", "*"},
       {"TABLE 2", "TABLE 22", "TABLE 10.2"}},
      {{"CHART=Y", "TFILE=*", "10.2", "2.5", "10", "7.2", "2.05", "29", "*"},
       {"TABLE 10.2", "TABLE 2.5", "TABLE 7.2", "TABLE 29"}},
      {{"CHART=Y", "DISTRT=Y", "PRCOMP=N", "TFILE=*", "10", "23", "24.1", "32", "40", "10.9", "*"},
       {}},
      {{"GRFILE=g.txt", "SIFILE=s.txt", "PFILE=p.txt"}, {"GRFILE=", "SIFILE="}},
  };
  for (const auto& c : cases) {
    std::string expected;
    for (const std::string& name : c.missing) {
      expected += " " + name + " IS NOT AVAILABLE IN THIS VERSION\n";
    }
    for (const std::string mode : {"BATCH=Y", "BATCH=N"}) {
      SCOPED_TRACE(mode + " " + expected);
      WholeRun whole;
      whole.directory.Write("control.txt", kControl);
      testing::internal::CaptureStderr();
      EXPECT_EQ(whole.Execute(c.words, mode), kExitGood);
      const std::string errors = testing::internal::GetCapturedStderr();
      std::string console;
      for (const std::string& line : whole.console.lines) {
        if (line.ends_with("IS NOT AVAILABLE IN THIS VERSION")) console += line + "\n";
      }
      EXPECT_EQ(errors, mode == "BATCH=Y" ? expected : "");
      EXPECT_EQ(console, mode == "BATCH=Y" ? "" : expected);
      EXPECT_EQ(whole.directory.Read("report.txt").find("NOT AVAILABLE"), std::string::npos);
      EXPECT_FALSE(whole.directory.Exists("g.txt"));
    }
  }
}

// Each pair is one plain file, by its name or by a link: the run ends, and what lies there stays.
TEST(Reports, AreNotBegunWhenTwoFilesToWriteAreOne) {
  const TempDirectory directory;
  const struct {
    std::vector<std::string> words;
    std::string message;
  } cases[] = {
      {{"PFILE=new.txt", "IFILE=./new.txt"}, " PFILE= AND IFILE= ARE THE SAME FILE: ./new.txt\n"},
      {{"ISFILE=sub/../new.txt", "SFILE=" + directory.NameOf("new.txt")}, " SFILE= AND ISFILE= "},
      {{"XFILE=dangling", "IFILE=new.txt"}, " IFILE= AND XFILE= "},
      {{"RFILE=linked/new.txt", "PFILE=new.txt"}, " RFILE= AND PFILE= "},
      {{"PFILE=old.txt", "SFILE=hard.txt"}, " PFILE= AND SFILE= "},
      {{"PFILE=old.txt", "GRFILE=soft.txt"}, " PFILE= AND GRFILE= "},
      {{"IFILE=linked/report.txt"}, " IFILE= AND THE REPORT OUTPUT FILE ARE THE SAME FILE: "},
      {{"IFILE=to-report"}, " IFILE= AND THE REPORT OUTPUT FILE "},
  };
  directory.Write("control.txt", kControl);
  directory.Write("old.txt", "old");
  fs::create_directory(directory.NameOf("sub"));
  fs::create_symlink("new.txt", directory.NameOf("dangling"));
  fs::create_symlink("report.txt", directory.NameOf("to-report"));
  fs::create_directory_symlink(".", directory.NameOf("linked"));
  fs::create_symlink("old.txt", directory.NameOf("soft.txt"));
  fs::create_hard_link(directory.NameOf("old.txt"), directory.NameOf("hard.txt"));
  for (const bool hasReport : {false, true}) {
    if (hasReport) directory.Write("report.txt", "kept");
    for (const auto& c : cases) {
      std::vector<std::string> words{"control.txt", "report.txt", "BATCH=Y"};
      words.insert(words.end(), c.words.begin(), c.words.end());
      const ProgramResult result = Launch(directory, words);
      EXPECT_EQ(result.status, 1) << c.message;
      EXPECT_THAT(result.errors, HasSubstr(c.message));
      EXPECT_EQ(directory.Read("old.txt"), "old");
      EXPECT_FALSE(directory.Exists("new.txt"));
      EXPECT_EQ(directory.Exists("report.txt"), hasReport);
      EXPECT_EQ(directory.Read("report.txt"), hasReport ? "kept" : "");
    }
  }
}

}  // namespace
}  // namespace vardento::test
