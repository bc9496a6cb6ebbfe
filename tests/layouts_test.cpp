// The same responses laid out in different ways, and the same settings given in different ways, are
// the same analysis: the measure files come out alike to the byte.

#include <gtest/gtest.h>

#include "support/estimates.h"
#include "support/program.h"

namespace vardento::test {
namespace {

const Matrix& Data() {
  static const Matrix data = Simulate(60, 6, 2, 31);
  return data;
}

// Control lines that all runs share: two scales of three items.
constexpr char kCommon[] =
    "TITLE=Layouts\nNI=6\nINUMB=Y\nNAMLEN=5\nPFILE=p.csv\nIFILE=i.csv\nCSV=Y\nHLINES=N\n";

struct Layout {
  const char* name;
  std::string control;                                     // behind kCommon, with &END
  std::vector<std::pair<std::string, std::string>> files;  // name and text
  std::vector<std::string> words;
};

void PrintTo(const Layout& layout, std::ostream* out) { *out << layout.name; }

// Each person's label in five columns and the six responses, each made into text by `code`,
// between them `separator`.
template <class Code>
std::string Records(std::size_t first, std::size_t last, const std::string& separator, Code code,
                    const std::string& lineEnd = "\n") {
  std::string text;
  for (std::size_t n = first; n < last; ++n) {
    text += "P" + std::to_string(1001 + n);
    for (char c : Data()[n]) text += separator + code(c);
    text += lineEnd;
  }
  return text;
}

std::string Same(char c) { return std::string(1, c); }
std::string Wide(char c) { return c == ' ' ? "  " : std::string("0") + c; }
std::string Letter(char c) { return c == ' ' ? "-" : std::string(1, static_cast<char>(c + 49)); }

std::vector<Layout> Layouts() {
  const std::string fixed = "CODES=012\nGROUPS=AAABBB\nNAME1=1\nITEM1=6\n";
  const std::string plain = Records(0, 60, "", Same);
  const std::string delimited = "CODES=012\nGROUPS=AAABBB\nNAME1=1\nITEM1=2\nDATA=d.txt\n";
  std::string twoLines = plain;  // label, responses behind two more characters
  for (std::size_t at = 5; at < twoLines.size(); at += 15) twoLines.insert(at, "\n..");
  std::string lines;  // the plain Control File with Windows line ends
  for (char c : kCommon + fixed + "DATA=d.txt\n&END\n") lines += c == '\n' ? "\r\n" : Same(c);
  return {
      {"DataBehindTheControlLines", fixed + "&END\n" + plain, {}, {}},
      {"DataInTwoFilesWithBlankLines",
       fixed + "DATA=a.txt+b.txt\n&END\n",
       {{"a.txt", Records(0, 17, "", Same) + "\n   \n"}, {"b.txt", Records(17, 60, "", Same)}},
       {}},
      {"DataEndedByControlZ",
       fixed + "DATA=a.txt+b.txt\n&END\n",
       {{"a.txt", Records(0, 17, "", Same) + "\x1a\nP9999012012\n"},
        {"b.txt", Records(17, 60, "", Same)}},
       {}},
      {"NoLineEndAtTheEnd",
       fixed + "DATA=d.txt\n&END",
       {{"d.txt", plain.substr(0, plain.size() - 1)}},
       {}},
      {"WindowsLineEndsAndByteOrderMarks",
       "",  // its own Control File below takes the place
       {{"control.txt", "\xEF\xBB\xBF" + lines},
        {"d.txt", "\xEF\xBB\xBF" + Records(0, 60, "", Same, "\r\n")}},
       {}},
      {"CommasBetweenFields",
       delimited + "DELIM=\",\"\n&END\n",
       {{"d.txt", Records(0, 60, ",", Same)}},
       {}},
      {"QuotedFields",
       delimited + "DELIM=Y\n&END\n",
       {{"d.txt", Records(0, 60, ",", [](char c) { return '"' + Same(c) + '"'; })}},
       {}},
      {"TabsBetweenFields",
       delimited + "SEPARATOR=T\n&END\n",
       {{"d.txt", Records(0, 60, "\t", Same)}},
       {}},
      {"BlanksBetweenFields",
       delimited + "DELIM=B\n&END\n",
       {{"d.txt", Records(0, 60, "  ", [](char c) { return c == ' ' ? "x" : Same(c); })}},
       {}},
      {"TwoColumnsForAResponse",
       "XWIDE=2\nCODES=000102\nGROUPS=\"A A A B B B\"\nNAME1=1\nITEM1=6\nDATA=d.txt\n&END\n",
       {{"d.txt", Records(0, 60, "", Wide)}},
       {}},
      {"FormatMovesTheItemsInFront",
       "CODES=012\nGROUPS=AAABBB\nFORMAT=(T6,6A,T1,5A)\nITEM1=1\nNAME1=7\nDATA=d.txt\n&END\n",
       {{"d.txt", plain}},
       {}},
      {"FormatWithTwoLinesForAPerson",
       fixed + "FORMAT=(5A,/,2X,2(3A))\nDATA=d.txt\n&END\n",
       {{"d.txt", twoLines}},
       {}},
      {"LettersRescored",
       "CODES=abc\nNEWSCR=012\nGROUPS=AAABBB\nNAME1=1\nITEM1=6\nDATA=d.txt\n&END\n",
       {{"d.txt", Records(0, 60, "", Letter)}},
       {}},
      {"LettersByAlphabet",
       "CODES=abc\nALPHANUM=abc\nGROUPS=AAABBB\nNAME1=1\nITEM1=6\nDATA=d.txt\n&END\n",
       {{"d.txt", Records(0, 60, "", Letter)}},
       {}},
      {"LettersByKeys",
       "CODES=abc\nKEY1=bbbbbb\nKEY2=cccccc\nGROUPS=AAABBB\nNAME1=1\nITEM1=6\nDATA=d.txt\n&END\n",
       {{"d.txt", Records(0, 60, "", Letter)}},
       {}},
      {"LettersByKeysWithScores",
       "CODES=abc\nKEY1=cccccc\nKEY2=bbbbbb\nKEYSCR=21\nGROUPS=AAABBB\nNAME1=1\nITEM1=6\n"
       "DATA=d.txt\n&END\n",
       {{"d.txt", Records(0, 60, "", Letter)}},
       {}},
      {"LettersByValueTables",
       "CODES=abc\nIREFER=XXXYYY\nIVALUEX=012\nIVALUEY=012\nGROUPS=AAABBB\nNAME1=1\nITEM1=6\n"
       "DATA=d.txt\n&END\n",
       {{"d.txt", Records(0, 60, "", Letter)}},
       {}},
      {"SupplementalFile",
       "SPFILE=more.txt\nITEM1=6\nDATA=d.txt\n&END\n",
       {{"more.txt", "CODES=012\nGROUPS=AAABBB\nNAME1=1\nITEM1=1\n"}, {"d.txt", plain}},
       {}},
      {"GroupsAsAList",
       "CODES=012\nNAME1=1\nITEM1=6\nGROUPS=*\n1-3 A\n6-4 B ; in either "
       "order\n*\nDATA=d.txt\n&END\n",
       {{"d.txt", plain}},
       {}},
      {"GroupsInFrontOfTheData",
       "CODES=012\nNAME1=1\nITEM1=6\nGRPFROM=Y\n&END\n.....AAABBB\n" + plain,
       {},
       {}},
      {"LinesContinuedAndCommented",
       "CODES=0+\n  +12 ; codes\nGROUPS=AAA+\n+BBB\n; a comment\nNAME1=1\nITEM1=6\nDATA=d.txt\n"
       "&INST\n&end\n",
       {{"d.txt", plain}},
       {}},
      {"WordsOfTheCommandLineComeLast",
       fixed + "CODES=9\nDATA=x.txt\nNI=4\n&END\n",
       {{"d.txt", plain}, {"x.txt", "\n"}},
       {"CODES=012", "DATA=d.txt", "NI=6"}},
  };
}

std::pair<std::string, std::string> MeasureFiles(const Layout& layout) {
  const TempDirectory directory;
  directory.Write("control.txt", kCommon + layout.control);
  for (const auto& [name, text] : layout.files) directory.Write(name, text);
  std::vector<std::string> words{"control.txt", "report.txt", "BATCH=Y"};
  words.insert(words.end(), layout.words.begin(), layout.words.end());
  const ProgramResult result = Launch(directory, words);
  EXPECT_EQ(result.status, 0) << result.errors;
  return {directory.Read("p.csv"), directory.Read("i.csv")};
}

class SameData : public testing::TestWithParam<Layout> {};

TEST_P(SameData, GiveTheSameMeasureFiles) {
  static const auto plain =
      MeasureFiles({"plain",
                    "CODES=012\nGROUPS=AAABBB\nNAME1=1\nITEM1=6\nDATA=d.txt\n&END\n",
                    {{"d.txt", Records(0, 60, "", Same)}},
                    {}});
  ASSERT_NE(plain.first, "");
  const auto files = MeasureFiles(GetParam());
  EXPECT_EQ(files.first, plain.first);
  EXPECT_EQ(files.second, plain.second);
}

INSTANTIATE_TEST_SUITE_P(LaidOut, SameData, testing::ValuesIn(Layouts()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

}  // namespace
}  // namespace vardento::test
