#include "data/data_edits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/data_run.h"

namespace vardento::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// A run whose MFORMS= holds `instructions`, in which "@1" and "@2" stand for two data files.
class FormsRun : public DataRun {
 public:
  explicit FormsRun(std::string instructions, std::string_view first = "",
                    std::string_view second = "")
      : DataRun("", 4) {
    settings.ITEM1 = 6;
    settings.NAME1 = 2;
    settings.NAMLEN = 3;
    const std::string names[] = {directory.Write("1.txt", first), directory.Write("2.txt", second)};
    for (std::size_t at; (at = instructions.find('@')) != instructions.npos;) {
      instructions.replace(at, 2, names[instructions[at + 1] - '1']);
    }
    settings.MFORMS = directory.Write("forms.txt", instructions);
  }

  // The records that DATA= holds once the forms were converted.
  std::string Converted() {
    ConvertForms(run);
    return TempDirectory::ReadFile(run.inForce.DATA);
  }
};

TEST(ConvertForms, LaysFieldsOutInOneRecord) {
  struct Case {
    const char* what;
    const char* instructions;
    const char* first;
    const char* second;
    const char* records;  // ITEM1=6, NAME1=2
    int width = 1;
  };
  const Case cases[] = {
      {"ranges, single columns, a start that runs on", "D=@1\nC1=7\nP1-3=1-3\nI1-2=5\nI4=4\n#\n",
       "Ann123x\nBob456y\n", "", "xAnn 23 1\nyBob 56 4\n"},
      {"two forms, the last without its #", "d=@1\ni1-2=1\n#\nD=@2\ni3-4=1-2\np1=3\n", "01\n10\n",
       "11B\n00B\n", "     01\n     10\n B     11\n B     00\n"},
      {"literals keep their blanks and signs", "D=@1\nC1-4=\" A=b\"\nI1=\"'\"\nI2=1\n", "1\n", "",
       " A=b '1\n"},
      {"quotes of another code page", "D=@1\nP1-2=\x93Xy\x93\nI1=1\n", "1\n", "", " Xy  1\n"},
      {"a later field covers an earlier one", "D=@1\nI1-4=1\nI2-3=\"--\"\n", "1111\n", "",
       "     1--1\n"},
      {"short lines are blank behind their end", "D=@1\nI1=\"9\"\nI1-2=3\nI4=1\n", "1\n10\n11011\n",
       "", "        1\n        1\n     01 1\n"},
      {"lines of one group are laid end to end", "D=@1\nL=2\nP1-3=1-3\nI1-4=4\n",
       "Ann01\n10\nBob1\n0110\n", "", " Ann 0110\n Bob 1011\n"},
      {"line groups count their columns afresh", "D=@1\nL=1\nP1-3=1\nL=2\nL=1\nI1-2=1\n",
       "Ann\nx\n\n01\nBob\n\ny\n10\n\n \n", "", " Ann 01\n Bob 10\n"},
      {"wide items move in units of their width", "D=@1\nI2=1\nI3-4=3-6\n", "010203\n", "",
       "       010203\n", 2},
      {"comments, blanks, words, a file that is used twice",
       "; forms\n  DATA = \"@1\" ; the file\n I 1 - 2 = 1 - 2\n\n#again\nLINES=1\nI1-2=2\n##\n#\n",
       "012\n", "", "     01\n     12\n"},
      {"blank lines are no persons", "D=@1\nP1=\"A\"\nI1=1\n", "\n1\n   \n0\n\n", "",
       " A   1\n A   0\n"},
      {"control-Z ends a file", "D=@1\nI1=1\n#\nD=@2\nI2=1\n", "1\n\x1A\n0\n", "0\n",
       "     1\n      0\n"},
      {"Windows line ends, none at the end", "D=@1\nI1-2=1\n", "01\r\n1\r\n11", "",
       "     01\n     1\n     11\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    FormsRun forms(c.instructions, c.first, c.second);
    forms.settings.XWIDE = c.width;
    EXPECT_EQ(forms.Converted(), c.records);
  }
}

TEST(ConvertForms, EndsTheRunAtAFaultyInstruction) {
  struct Case {
    const char* instructions;
    const char* message;
  };
  const Case cases[] = {
      {"", "MFORMS= \"DATA=\" MISSING"},
      {"I1=1\n#\nD=@1\n", "MFORMS= \"DATA=\" MISSING"},
      {"D=@1\nI1 1\n", "MFORMS= MISSING \"=\" SIGN: I1 1"},
      {"X1=1\n", "MFORMS= MISSING \"=\" SIGN: X1=1"},
      {"  I1= ; nothing", "MFORMS= VALUE AFTER \"=\" MISSING: I1="},
      {"D=\" \"\n", "MFORMS= VALUE AFTER \"=\" MISSING: D=\" \""},
      {"L=0\n", "MFORMS= MISSING LINE COUNT: L=0"},
      {"L=two\n", "MFORMS= MISSING LINE COUNT: L=two"},
      {"I=1\n", "MFORMS= MISSING VALUE: I=1"},
      {"I0=1\n", "MFORMS= MISSING VALUE: I0=1"},
      {"C1-=1\n", "MFORMS= MISSING VALUE: C1-=1"},
      {"C3-0=1\n", "MFORMS= MISSING VALUE: C3-0=1"},
      {"C32001=1\n", "MFORMS= MISSING VALUE: C32001=1"},
      {"I31996=1\n", "MFORMS= MISSING VALUE: I31996=1"},
      {"I1-99999999999999=1\n", "MFORMS= MISSING VALUE: I1-99999999999999=1"},
      {"D=@1\n#\n", "MFORMS= MISSING VALUE: #"},
      {"I2-1=1\n", "MFORMS= LESS-MORE VALUE PROBLEM: I2-1=1"},
      {"I1-2=2-1\n", "MFORMS= LESS-MORE VALUE PROBLEM: I1-2=2-1"},
      {"I1-2=1-3\n", "MFORMS= LESS-MORE VALUE PROBLEM: I1-2=1-3"},
      {"I1-2=\"123\"\n", "MFORMS= LESS-MORE VALUE PROBLEM: I1-2=\"123\""},
      {"I1=\"\"\n", "MFORMS= LESS-MORE VALUE PROBLEM: I1=\"\""},
      {"I1=x\n", "MFORMS= \"=\" VALUE: I1=x"},
      {"I1=0\n", "MFORMS= \"=\" VALUE: I1=0"},
      {"I1=\"1\n", "MFORMS= \"=\" VALUE: I1=\"1"},
      {"I1=\"1\"2\n", "MFORMS= \"=\" VALUE: I1=\"1\"2"},
      {"I1-2=32000\n", "MFORMS= \"=\" VALUE: I1-2=32000"},
      {"D=@1\nI1=1\nD=two.txt\n", "MFORMS= \"=\" VALUE: D=two.txt"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.instructions);
    FormsRun forms(c.instructions, "1\n");
    EXPECT_THROW(ConvertForms(forms.run), RunEnded);
    EXPECT_EQ(forms.console.lines.back(), c.message);
    EXPECT_EQ(forms.run.RunIoStatus, -1);
  }
}

TEST(ConvertForms, ReachesTheLastColumnOfALongRecord) {
  const std::string line = std::string(31999, '.') + "1";
  FormsRun forms("D=@1\nL=3\nC32000=32000\nI1=64000\n", line + "\n2\n3\n");
  EXPECT_THROW(ConvertForms(forms.run), RunEnded);
  FormsRun last("D=@1\nL=3\nC32000=32000\n", line + "\n2\n3\n");
  EXPECT_EQ(last.Converted(), std::string(31999, ' ') + "1\n");
}

TEST(ConvertForms, TellsOfFilesAsTheReaderOfTheDataDoes) {
  FormsRun missing("D=@1/none\nI1=1\n");
  EXPECT_THROW(ConvertForms(missing.run), RunEnded);
  EXPECT_THAT(missing.console.Text(), HasSubstr(" UNABLE TO OPEN DATA  FILE: "));

  FormsRun cut("D=@1\nL=2\nI1=1\n", "1\n1\n0\n");
  EXPECT_THROW(ConvertForms(cut.run), RunEnded);
  EXPECT_THAT(cut.console.lines,
              Contains(" ERROR IN DATA AT PERSON: 2.  CHECK DATA AND RUN AGAIN."));

  FormsRun report("D=@1\nI1=1\n", "1\n");
  EXPECT_EQ(OpenReport(report.run, report.directory.NameOf("1.txt"), FileMode::Keep), kIoOk);
  EXPECT_THROW(ConvertForms(report.run), RunEnded);
  EXPECT_EQ(report.directory.Read("1.txt"), "1\n");

  FormsRun good("D=@1\nI1=1\n#\nD=@2\nI2=1\n", "1\n", "0\n");
  const std::string first = good.directory.NameOf("1.txt"), second = good.directory.NameOf("2.txt");
  // A "+" in the name of the work directory doesn't part the name of the file in it.
  ASSERT_TRUE(good.run.workDirectory.Prepare(good.directory.NameOf("work+more")));
  good.Read();
  EXPECT_THAT(good.CodedRows(), ElementsAre("2000", "0100"));
  EXPECT_THAT(good.console.menuEntries,
              ElementsAre("Edit MFORMS=" + good.settings.MFORMS, "Edit Data File=" + first,
                          "Edit Data File=" + second));
  for (const std::string& name : {first, good.settings.MFORMS}) {
    EXPECT_TRUE(good.run.files.IsKept(name)) << name;
  }
}

TEST(ConvertForms, NeedsMemory) {
  FormsRun forms("D=@1\nI1=1\n", "1\n");
  forms.run.memory.SetLimit(0);
  EXPECT_THROW(ConvertForms(forms.run), RunEnded);
  EXPECT_EQ(forms.console.lines.back(),
            "64000 bytes of memory not available, MFORMS= not processed.");
}

// Four persons, four items, codes 0, 1 and 2; "." stands for none of them.
constexpr char kResponses[] = "0000\n1111\n2222\n0120\n";

TEST(EditData, ChangesTheResponsesThatALineNames) {
  struct Case {
    const char* lines;
    const char* rows;  // category numbers of all persons
    int width = 1;
  };
  const Case cases[] = {
      {"2 3 0\n", "1111|2212|3333|1231"},
      {"1-2 2-3 2\n3,4,+1\n", "1331|2332|3332|1231"},
      {"2-1 4-3 1 ; the wrong way round\n", "1122|2222|3333|1231"},
      {"4-999 4-999 2\n", "1111|2222|3333|1233"},
      {"5 1 2\n1 5 2\n6-9 1-4 0\n", "1111|2222|3333|1231"},
      {"1 1 9\n1 2 \n1 3 \" \"\n1 4 \"\"\n", "0000|2222|3333|1231"},
      {"1 1 '2'1\n1 2 \"1\n1 3 \x91"
       "2\x91\n1 4 12\n",
       "3232|2222|3333|1231"},
      {"0 1 2\n1 0 2\nx 1 2\n1 x 2\n1- 1 2\n-1 1 2\n1-0 1 2\n1\n\n;\n1.5 1 2\n1 -2 2\n",
       "1111|2222|3333|1231"},
      {"99999999999999999999 1 2\n1 1-99999999999999 1\n", "2222|2222|3333|1231"},
      {"1 1 10\n2 1 \" 1\"\n2 2 1\n", "3222|2211", 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.lines);
    const bool wide = c.width == 2;
    DataRun data(wide ? " 1 1 1 1\n00000000\n" : kResponses, 4);
    data.SetCodes(wide ? "001 10" : "012", c.width);
    data.settings.EDFILE = data.directory.Write("edit.txt", c.lines);
    data.Read();
    EXPECT_EQ(Joined(data.CodedRows()), c.rows);
  }
}

TEST(EditData, IsScoredAndToldOf) {
  DataRun data(kResponses, 4);
  data.SetCodes("012", 1);
  data.settings.MISSING = 0;
  data.settings.EDFILE = data.directory.Write("edit.txt", "3 1-2 x\n");
  data.Read();
  EXPECT_THAT(data.ScoredRows(), ElementsAre("0000", "1111", "0022", "0120"));
  EXPECT_THAT(data.console.lines,
              Contains(" Processing EDFILE= data edit from: " + data.settings.EDFILE));
  EXPECT_THAT(data.console.menuEntries, ElementsAre("Edit data EDFILE =" + data.settings.EDFILE));
}

class KeyRun : public DataRun {
 public:
  explicit KeyRun(const char* data) : DataRun(data, 4) {
    SetCodes("ABC", 1);
    settings.MAKEKEY = true;
    settings.NKEY = 1;
    settings.keyStrings = {""};
    settings.keyScores = {-1};
    settings.NAMLEN = 0;
  }
};

TEST(MakeKey, KeysTheMostFrequentCode) {
  // Item 1: B three times; item 2: A and C twice each; item 3: nothing valid; item 4 is deleted.
  // Person 5 is deleted, with answers that would turn items 1 and 2.
  KeyRun data("BA-C\nBC-C\nBC C\nCAxC\nCC-C\n");
  data.run.given.ItemStatus[4] = Status::Deleted;
  data.run.given.PersonStatus[5] = Status::Deleted;
  data.Read();
  EXPECT_EQ(data.run.inForce.scoring.NKEY, 1);
  EXPECT_THAT(data.run.inForce.scoring.keyStrings, ElementsAre("BAA "));
  EXPECT_THAT(data.run.inForce.scoring.keyScores, ElementsAre(1));
  const std::vector<std::string> rows = data.ScoredRows();
  const char* const scores[] = {"11.", "10.", "10.", "01."};
  for (std::size_t n = 0; n < 4; ++n) EXPECT_EQ(rows[n].substr(0, 3), scores[n]);
  EXPECT_EQ(data.run.MAXCAT, 1);
  EXPECT_EQ(data.console.lines.back(),
            "MAKEKEY=  constructed.  See Table 0.3 in Report Output File.");
  EXPECT_EQ(TempDirectory::ReadFile(data.run.workDirectory.NameOf("ZIN")),
            "; MAKEKEY=Y constructed key follows:\nBAA\n");
}

TEST(MakeKey, TakesThePlaceOfGivenKeysBehindEdits) {
  KeyRun data("AAAA\nAAAA\nBBBB\n");
  data.run.inForce.scoring.NKEY = 2;
  data.run.inForce.scoring.keyStrings = {"CCCC", "BBBB"};
  data.run.inForce.scoring.keyScores = {1, 2};
  data.settings.EDFILE = data.directory.Write("edit.txt", "1 2-3 B\n");
  data.Read();
  EXPECT_THAT(data.ScoredRows(), ElementsAre("1111", "1001", "0110"));
  EXPECT_EQ(data.run.MAXCAT, 1);
}

TEST(MakeKey, LetsTheRunGoOnWithoutAKey) {
  KeyRun data("0120\n");
  data.SetCodes("012", 1);
  data.OpenReport();
  data.run.memory.SetLimit(10000 + 47);  // the person status trial, then not 3 x 4 x 4 bytes
  data.Read();
  EXPECT_THAT(data.console.lines,
              Contains("48 bytes of memory not available, MAKEKEY= not performed."));
  EXPECT_THAT(data.ScoredRows(), ElementsAre("0120"));
  EXPECT_EQ(data.run.MAXCAT, 2);
  EXPECT_THAT(data.Report(), HasSubstr("NOT ENOUGH MEMORY FOR MAKEKEY=\n"));

  KeyRun single("1111\n");
  single.SetCodes("1", 1);
  single.Read();
  EXPECT_THAT(single.ScoredRows(), ElementsAre("1111"));
  EXPECT_THAT(single.console.Text(), Not(HasSubstr("MAKEKEY=")));
}

}  // namespace
}  // namespace vardento::test
