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
  std::string control;                                       // behind kCommon
  std::string data;                                          // "" for none in d.txt
  std::vector<std::pair<std::string, std::string>> files{};  // further ones: name and text
  std::vector<std::string> words{};
  std::string end = "DATA=d.txt\n&END\n";  // of the control lines
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
  const std::string places = "NAME1=1\nITEM1=6\n";
  const std::string fixed = "CODES=012\nGROUPS=AAABBB\n" + places;
  const std::string delimited = "CODES=012\nGROUPS=AAABBB\nNAME1=1\nITEM1=2\n";
  const std::string letters = "CODES=abc\nGROUPS=AAABBB\n" + places;
  const std::string plain = Records(0, 60, "", Same), abc = Records(0, 60, "", Letter);
  std::string twoLines = plain;  // label, responses behind two more characters
  for (std::size_t at = 5; at < twoLines.size(); at += 15) twoLines.insert(at, "\n..");
  std::string formA, formB;  // responses in front; label, items 4 to 6, items 1 to 3 on three lines
  for (std::size_t n = 0; n < 60; ++n) {
    const std::string label = "P" + std::to_string(1001 + n), &row = Data()[n];
    (n < 17 ? formA : formB) += n < 17
                                    ? row + "." + label + "\n"
                                    : label + "\n" + row.substr(3) + "\n" + row.substr(0, 3) + "\n";
  }
  std::string spoiled = plain, corrections = "99 1-6 0\n";  // person 3 has person 4's responses
  for (std::size_t i = 0; i < 6; ++i) {
    spoiled[2 * 12 + 5 + i] = Data()[3][i];
    corrections += "3 " + std::to_string(i + 1) + " '" + Data()[2][i] + "' ; as on the sheet\n";
  }
  std::string lines;  // the plain Control File with Windows line ends
  for (char c : kCommon + fixed + "DATA=d.txt\n&END\n") lines += c == '\n' ? "\r\n" : Same(c);
  const std::string first = Records(0, 17, "", Same), rest = Records(17, 60, "", Same);
  const std::string twoFiles = "DATA=a.txt+b.txt\n&END\n";
  return {
      {"DataBehindTheControlLines", fixed, "", {}, {}, "&END\n" + plain},
      {"DataInTwoFilesWithBlankLines",
       fixed,
       "",
       {{"a.txt", first + "\n   \n"}, {"b.txt", rest}},
       {},
       twoFiles},
      {"DataEndedByControlZ",
       fixed,
       "",
       {{"a.txt", first + "\x1a\nP9999012012\n"}, {"b.txt", rest}},
       {},
       twoFiles},
      {"NoLineEndAtTheEnd", fixed, plain.substr(0, plain.size() - 1), {}, {}, "DATA=d.txt\n&END"},
      // Its own Control File takes the place.
      {"WindowsLineEndsAndByteOrderMarks",
       "",
       "\xEF\xBB\xBF" + Records(0, 60, "", Same, "\r\n"),
       {{"control.txt", "\xEF\xBB\xBF" + lines}}},
      {"CommasBetweenFields", delimited + "DELIM=\",\"\n", Records(0, 60, ",", Same)},
      {"QuotedFields", delimited + "DELIM=Y\n",
       Records(0, 60, ",", [](char c) { return '"' + Same(c) + '"'; })},
      {"TabsBetweenFields", delimited + "SEPARATOR=T\n", Records(0, 60, "\t", Same)},
      {"BlanksBetweenFields", delimited + "DELIM=B\n",
       Records(0, 60, "  ", [](char c) { return c == ' ' ? "x" : Same(c); })},
      {"TwoColumnsForAResponse", "XWIDE=2\nCODES=000102\nGROUPS=\"A A A B B B\"\n" + places,
       Records(0, 60, "", Wide)},
      {"FormatMovesTheItemsInFront",
       "CODES=012\nGROUPS=AAABBB\nFORMAT=(T6,6A,T1,5A)\nITEM1=1\nNAME1=7\n", plain},
      {"FormatWithTwoLinesForAPerson", fixed + "FORMAT=(5A,/,2X,2(3A))\n", twoLines},
      {"LettersRescored", letters + "NEWSCR=012\n", abc},
      {"LettersByAlphabet", letters + "ALPHANUM=abc\n", abc},
      {"LettersByKeys", letters + "KEY1=bbbbbb\nKEY2=cccccc\n", abc},
      {"LettersByKeysWithScores", letters + "KEY1=cccccc\nKEY2=bbbbbb\nKEYSCR=21\n", abc},
      {"LettersByValueTables", letters + "IREFER=XXXYYY\nIVALUEX=012\nIVALUEY=012\n", abc},
      {"RewrittenFromTwoForms",
       fixed,
       "",
       {{"a.txt", formA}, {"b.txt", formB}},
       {},
       "MFORMS=*\nD=a.txt\nP1-5=8-12\nI1-6=1\n#\nD=b.txt\nP1-5=1-5\nL=2\nI1-3=4-6\nI4-6=1-3\n*\n&"
       "END\n"},
      {"CorrectedByEdits", fixed + "EDFILE=e.txt\n", spoiled, {{"e.txt", corrections}}},
      {"SupplementalFile",
       "SPFILE=more.txt\nITEM1=6\n",
       plain,
       {{"more.txt", "CODES=012\nGROUPS=AAABBB\nNAME1=1\nITEM1=1\n"}}},
      {"GroupsAsAList", "CODES=012\nGROUPS=*\n1-3 A\n6-4 B ; in either order\n*\n" + places, plain},
      {"GroupsInFrontOfTheData",
       "CODES=012\nGRPFROM=Y\n" + places,
       "",
       {},
       {},
       "&END\n.....AAABBB\n" + plain},
      {"LinesContinuedAndCommented",
       "CODES=0+\n  +12 ; codes\nGROUPS=AAA+\n+BBB\n; a comment\n&INST\n" + places,
       plain,
       {},
       {},
       "DATA=d.txt\n&end\n"},
      {"WordsOfTheCommandLineComeLast",
       fixed + "CODES=9\nNI=4\n",
       plain,
       {{"x.txt", "\n"}},
       {"CODES=012", "DATA=d.txt", "NI=6"},
       "DATA=x.txt\n&END\n"},
  };
}

std::pair<std::string, std::string> MeasureFiles(const Layout& layout) {
  const TempDirectory directory;
  directory.Write("control.txt", kCommon + layout.control + layout.end);
  if (!layout.data.empty()) directory.Write("d.txt", layout.data);
  for (const auto& [name, text] : layout.files) directory.Write(name, text);
  std::vector<std::string> words{"control.txt", "report.txt", "BATCH=Y"};
  words.insert(words.end(), layout.words.begin(), layout.words.end());
  const ProgramResult result = Launch(directory, words);
  EXPECT_EQ(result.status, 0) << result.errors;
  return {directory.Read("p.csv"), directory.Read("i.csv")};
}

class SameData : public testing::TestWithParam<Layout> {};

TEST_P(SameData, GiveTheSameMeasureFiles) {
  static const auto plain = MeasureFiles(
      {"plain", "CODES=012\nGROUPS=AAABBB\nNAME1=1\nITEM1=6\n", Records(0, 60, "", Same)});
  ASSERT_NE(plain.first, "");
  const auto files = MeasureFiles(GetParam());
  EXPECT_EQ(files.first, plain.first);
  EXPECT_EQ(files.second, plain.second);
}

INSTANTIATE_TEST_SUITE_P(LaidOut, SameData, testing::ValuesIn(Layouts()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

}  // namespace
}  // namespace vardento::test
