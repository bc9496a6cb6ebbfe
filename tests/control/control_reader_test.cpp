#include "control/control_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "control/control_text.h"

namespace vardento {
namespace {

using test::ControlText;
using testing::HasSubstr;
using testing::Not;

using Show = std::function<std::string(const ControlSettings&)>;
std::string Text(char c) { return std::string(1, c); }
std::string Text(bool flag) { return flag ? "Y" : "N"; }

TEST(ControlReader, GivesEachLineToTheFirstKeywordThatFits) {
  const struct {
    std::string line, expected;
    Show show;
  } cases[] = {
      {"BLOCK=3", "N", [](auto& s) { return Text(s.BATCH); }},
      {"YES=2", "2", [](auto& s) { return std::to_string(int(s.FRANGE)); }},
      {"ITEM=task", "task tasks", [](auto& s) { return s.ITEM_LABEL + " " + s.ITEMS_LABEL; }},
      {"ITEM1=7", "7 ITEM", [](auto& s) { return std::to_string(s.ITEM1) + " " + s.ITEM_LABEL; }},
      {"PERSON=", "PERSON PERSONS", [](auto& s) { return s.PERSON_LABEL + " " + s.PERSONS_LABEL; }},
      {"KEYSCR=12", "12 0", [](auto& s) { return s.KEYSCR + " " + std::to_string(s.NKEY); }},
      {"KEYFROM=3", "3", [](auto& s) { return std::to_string(s.NKEY); }},
      {"KEY99999=1", "99999", [](auto& s) { return std::to_string(s.NKEY); }},
      {"KEY0=1", "0", [](auto& s) { return std::to_string(s.NKEY); }},
      {"KEY2=1\nKEYX=ABCD\nKEY-3=1", "2", [](auto& s) { return std::to_string(s.NKEY); }},
      {"IVALUEA=01\nIVALUE=", "1", [](auto& s) { return std::to_string(s.NIVALUE); }},
      {"STEPKEEP=N", "N Y", [](auto& s) { return Text(s.STKEEP) + " " + Text(s.STEPT3); }},
      {"STEPT=N", "Y N", [](auto& s) { return Text(s.STKEEP) + " " + Text(s.STEPT3); }},
      {"ISEQ=Y\nISELECT=A*B", "Y A*", [](auto& s) { return Text(s.INUMB) + " " + s.ISELECT; }},
      {"PSELECT=\"A \"", "A *", [](auto& s) { return s.PSELECT; }},
      {"PSELECT=", "*", [](auto& s) { return s.PSELECT; }},
      {"CHARTF=Y", "Y", [](auto& s) { return Text(s.CHART); }},
      {"NEWSCR=10\nRESCORE=", "0", [](auto& s) { return std::to_string(s.RESCORE); }},
      {"NEWSCR=1023", "10", [](auto& s) { return s.NEWSCR; }},
      {"CSV=t", "T", [](auto& s) { return Text(s.CSV); }},
      {"CSV=x", "N", [](auto& s) { return Text(s.CSV); }},
      {"CURVES=000", "100", [](auto& s) { return s.CURVES; }},
      {"CURVES=0Y", "010", [](auto& s) { return s.CURVES; }},
      {"TABLES=10Y", "101" + std::string(37, '0'), [](auto& s) { return s.TABLES; }},
      {"LOCAL=2", "L LOG", [](auto& s) { return Text(s.LOCAL) + s.fitName; }},
      {"LOCAL=y", "YZEMP", [](auto& s) { return Text(s.LOCAL) + s.fitName; }},
      {"OSORT=X", " ", [](auto& s) { return Text(s.OSORT); }},
      {"SEP=t", "T", [](auto& s) { return Text(s.DELIM); }},
      {"NI=3.6", "4", [](auto& s) { return std::to_string(s.NI); }},
      {"NI=12abc", "12", [](auto& s) { return std::to_string(s.NI); }},
      {"UDECIM=9", "4(F8.4)", [](auto& s) { return std::to_string(s.UDECIM) + s.numberFormat; }},
      {"USCALE=0", "1", [](auto& s) { return std::to_string(int(s.USCALE)); }},
      {"UASCALE=2", "N", [](auto& s) { return Text(s.UANCHOR); }},
      {"UPMEAN=50", "50 N",
       [](auto& s) { return std::to_string(int(s.UMEAN)) + " " + Text(s.UMEAN_IS_ITEM); }},
      {"PTBIS=Y\nPAIRED=Y", "N", [](auto& s) { return Text(s.PTBIS); }},
      {"LINELEN=0\nMAXPAGE=7", "500 20",
       [](auto& s) { return std::to_string(s.LINELEN) + " " + std::to_string(s.MAXPAGE); }},
      {"ITEM1=20\nNAME1=5", "15", [](auto& s) { return std::to_string(s.NAMLEN); }},
      {"ITEM1=20\nNAME1=5\nDELIM=Y", "30", [](auto& s) { return std::to_string(s.NAMLEN); }},
      {"NAMLEN=999\nITLEN=999", "300 300",
       [](auto& s) { return std::to_string(s.NAMLEN) + " " + std::to_string(s.ITLEN); }},
      {"NAMLEN=1\nITLEN=1", "1 1",
       [](auto& s) { return std::to_string(s.NAMLEN) + " " + std::to_string(s.ITLEN); }},
      {"DIF=$S1W1", "$S1W1", [](auto& s) { return s.DIF; }},
  };
  for (const auto& c : cases) {
    ControlText control(c.line + "\n&END\n");
    ASSERT_TRUE(control.ReadFirst()) << c.line << control.Said();
    EXPECT_EQ(c.show(control.Settings()), c.expected) << c.line;
  }
}

TEST(ControlReader, HoldsRealsInTheirLimits) {
  ControlText control("EXTRSC=5\nHIADJ=-.5\nCUTLO=.\n&END\n");
  ASSERT_TRUE(control.ReadFirst());
  EXPECT_FLOAT_EQ(control.Settings().EXTRSC, 1.0F);
  EXPECT_FLOAT_EQ(control.Settings().HIADJ, 0.5F);
  EXPECT_EQ(control.Settings().CUTLO, 0.0F);
  ControlText low("EXTRSC=0\n&END\n");
  ASSERT_TRUE(low.ReadFirst());
  EXPECT_FLOAT_EQ(low.Settings().EXTRSC, 0.01F);
}

TEST(ControlReader, EndsTheRunOnAFaultyLine) {
  const struct {
    std::string lines, said;
  } cases[] = {
      {"=abc", "Is a ; missing? Variable=Value expected here: =abc\n"},
      {"  some text ; x", "Is a ; missing? Variable=Value expected here: some text\n"},
      {"WHAT=ever", " NUMERIC VALUE EXPECTED: WHAT=ever\n"},
      {"LCONV=1.2.3", " NUMERIC VALUE EXPECTED: LCONV=1.2.3\n"},
      {"WHAT=1", " UNRECOGNIZED VARIABLE (CHECK SPELLING): WHAT=1\n"},
      {"NI=40000", " NUMERIC VALUE IN RANGE -32000 TO 32000 EXPECTED: NI=40000\n"},
      {"KEYSX=1\nKEYFX=abc", " NUMERIC VALUE EXPECTED: KEYFX=abc\n"},
      {"NI=1+\n 2", " CONTINUATION PROBLEM: TRAILING + THEN LEADING + NOT FOUND: NI=1"},
      {"NI=1+\n x+2", " CONTINUATION PROBLEM: TRAILING + THEN LEADING + NOT FOUND: NI=1"},
      {"NI=1+", " CONTINUATION PROBLEM: TRAILING + THEN LEADING + NOT FOUND: NI=1"},
      {"IDFILE=*\n3\n&END\n*", " NO LINE WITH * FOUND MATCHING IDFILE\n"},
      {"SPFILE=/no-such-file",
       "SPFILE= FAILED: SPFILE=/no-such-file\n/no-such-file\n"
       "Input File Not Found. Please specify full path.\n"},
      {"CFILE=/no-such-file", "/no-such-file\nInput File Not Found."},
  };
  for (const auto& c : cases) {
    ControlText control(c.lines);
    EXPECT_FALSE(control.ReadFirst()) << c.lines;
    EXPECT_THAT(control.Said(), HasSubstr(c.said)) << c.lines;
    EXPECT_EQ(control.test.run.RunIoStatus, -1) << c.lines;
  }
}

TEST(ControlReader, JoinsContinuationLines) {
  const struct {
    std::string lines, title;
  } cases[] = {
      {"TITLE=ab+\n+cd", "abcd"}, {"TITLE=ab+   \n \t + cd+\n+ef", "ab cdef"},
      {"+\n+TITLE=ab", "ab"},     {"TITLE=ab ; why +\n ; and", "ab"},
      {"TITLE=a+b", "a+b"},       {"TITLE=" + std::string(40000, 'x') + "+\nTITLE=ab", "ab"},
  };
  for (const auto& c : cases) {
    ControlText control(c.lines + "\n&END\n");
    ASSERT_TRUE(control.ReadFirst()) << c.lines << control.Said();
    EXPECT_EQ(control.Settings().TITLE, c.title) << c.lines;
  }
}

TEST(ControlReader, TakesExtraWordsLast) {
  ControlText words("TITLE=file\nUDECIM=1\n&END\nlabel\n",
                    {"control.txt", "report.txt", "title=my words", "IDFILE=*", "3", "5-7", "*",
                     "UDECIM=3", "&END"});
  ASSERT_TRUE(words.ReadFirst());
  EXPECT_EQ(words.Settings().TITLE, "my words");
  EXPECT_EQ(words.Settings().UDECIM, 3);
  EXPECT_EQ(test::TempDirectory::ReadFile(words.Settings().IDFILE), "3\n5-7\n");
  std::string label;
  EXPECT_EQ(words.test.run.input.control.ReadLine(label), 0);
  EXPECT_EQ(label, "label");

  ControlText field("UDECIM=1\n&END\n", {"UDECIM=3"}, "  UDECIM=4   IDFILE=* 8");
  ASSERT_TRUE(field.ReadFirst());
  EXPECT_EQ(field.Settings().UDECIM, 4);
  EXPECT_EQ(test::TempDirectory::ReadFile(field.Settings().IDFILE), "8\n");
}

TEST(ControlReader, CopiesAllLinesForTheReport) {
  ControlText control("TITLE=ab+  \n  +cd ; x\nIDFILE=*\n\t3 ;c\n\n*\n&END\nlabel\n",
                      {"control.txt", "UDECIM=3"});
  ASSERT_TRUE(control.ReadFirst());
  EXPECT_EQ(test::TempDirectory::ReadFile(control.test.run.workDirectory.NameOf("ZIN")),
            "NI=4\nITEM1=1\nTITLE=ab+\n  +cd ; x\nIDFILE=*\n\t3 ;c\n\n*\n&END\nUDECIM=3\n");
  EXPECT_EQ(test::TempDirectory::ReadFile(control.Settings().IDFILE), " 3\n");
}

TEST(ControlReader, ReadsSubListsAndFileNames) {
  test::TempDirectory files;
  const std::string list = files.Write("list.txt", "1 A\n");
  ControlText control("SAFILE=*\n*\nGROUPS=*\n1-2 A\n*\nIREFER=* " + list + "\nIAFILE=*" + list +
                      "\nDPF=$s1w2\nPSUB=*\n&END\n*\n&END\n");
  EXPECT_FALSE(control.ReadFirst());  // the last list holds &END
  EXPECT_EQ(control.Settings().SAFILE, "");
  EXPECT_EQ(control.Settings().GROUPS, PerItem::List);
  EXPECT_EQ(test::TempDirectory::ReadFile(control.Settings().GROUPS_FILE), "1-2 A\n");
  EXPECT_EQ(control.Settings().IREFER, PerItem::List);
  EXPECT_EQ(control.Settings().IREFER_FILE, list);
  EXPECT_EQ(control.Settings().IAFILE, list);
  EXPECT_EQ(control.Settings().DPF, "$s1w2");
}

TEST(ControlReader, NestsSupplementalFiles) {
  test::TempDirectory files;
  const std::string inner = files.Write("inner.txt", "UDECIM=4\n");
  const std::string outer =
      files.Write("outer.txt", "SPFILE=" + inner + "\nTITLE=outer\n&END\nTITLE=never\n");
  ControlText control("SPFILE=" + outer + "\nITLEN=7\nSPFILE=*\n&END\nTITLE=never\n",
                      {"SPFILE=*" + inner, "NAMLEN=9"});
  ASSERT_TRUE(control.ReadFirst()) << control.Said();
  EXPECT_EQ(control.Settings().UDECIM, 4);
  EXPECT_EQ(control.Settings().TITLE, "outer");
  EXPECT_EQ(control.Settings().ITLEN, 7);
  EXPECT_EQ(control.Settings().NAMLEN, 9);
  EXPECT_THAT(control.test.console.menuEntries,
              testing::Contains("Edit Supplemental Control SPFILE=" + outer));
}

TEST(ControlReader, SurvivesHostileFiles) {
  using namespace std::string_literals;
  for (const std::string& text :
       {""s, "\0\0\0"s, std::string(70000, '+'), std::string(70000, '='), "&"s, "KEY99999="s,
        std::string(1000, '\n') + "+\n+", "\x1a\xff\xfe=\x93"s, "CODES=" + std::string(40000, '1'),
        "SPFILE=/\n"s, "SPFILE=.\n"s, "GROUPS=*\n" + std::string(40000, '9')}) {
    ControlText control(text);
    control.ReadAll();
    EXPECT_THAT(control.Said(), HasSubstr("Reading Control Variables"));
  }
}

TEST(ControlReader, StoresKeysAndTextsInTheSecondPass) {
  ControlText control(
      "CODES=abcd\nKEY=abcd\nKEY3=dcbaXX\nKEYSCR=2x1\nGROUPS=aab\nIVALUEA=01\nIVALUEB=0123\n"
      "IVALUEA=1\nIREFER=ab\nSAFILE=*\n1 1 1\n*\n&END\n",
      {"KEY3=dd", "TITLE=x"});
  ASSERT_TRUE(control.ReadAll()) << control.Said();
  const ControlSettings& settings = control.Settings();
  EXPECT_THAT(settings.keyStrings, testing::ElementsAre("abcd", "", "dd"));
  EXPECT_THAT(settings.keyScores, testing::ElementsAre(2, -1, 1));
  ASSERT_EQ(settings.NIVALUE, 2);
  EXPECT_EQ(settings.ivalueTables[0].codes, "1***");
  EXPECT_EQ(settings.ivalueTables[1].codes, "0123");
  EXPECT_EQ(settings.groupsText, "AAB ");
  EXPECT_EQ(settings.ireferText, "AB  ");
  EXPECT_THAT(control.Said(), HasSubstr(" Reading KEYnn=, GROUPS= etc.."));

  ControlText wide("XWIDE=2\nCODES=0102\nKEY1=01010101\nKEY2=02020202\nKEYSCR=\" 312\"\n&END\n");
  ASSERT_TRUE(wide.ReadAll()) << wide.Said();
  EXPECT_THAT(wide.Settings().keyScores, testing::ElementsAre(3, 12));

  ControlText tooLong("IVALUEA=012\n&END\n");
  EXPECT_FALSE(tooLong.ReadAll());
  EXPECT_THAT(tooLong.Said(), HasSubstr(" IVALUE= LENGTH DOES NOT MATCH CODES= IVALUEA=012\n"));
}

TEST(ControlReader, ReadsTextsInDataFormat) {
  ControlText plain(
      "ITEM1=3\nGRPFROM=Y\nMODFROM=Y\nRESFROM=Y\nKEYFROM=2\n&END\n"
      "  AABB\n  SSRR\n  1  1\n  0101\n\nlabel\n");
  ASSERT_TRUE(plain.ReadAll()) << plain.Said();
  EXPECT_EQ(plain.Settings().groupsText, "AABB");
  EXPECT_EQ(plain.Settings().modelsText, "SSRR");
  EXPECT_EQ(plain.Settings().rescoreText, "1001");
  EXPECT_THAT(plain.Settings().keyStrings, testing::ElementsAre("0101", "    "));
  EXPECT_THAT(plain.Said(), HasSubstr(" KEY2 processed in data format\n"));
  std::string label;
  EXPECT_EQ(plain.test.run.input.control.ReadLine(label), kIoOk);
  EXPECT_EQ(label, "label");

  ControlText formatted(
      "FORMAT=(2(A1,1X)/3A1)\nITEM1=2\nGRPFROM=Y\nMODFROM=Y\n&END\n"
      "x-A-\nBCD\nx-S-\n   \n");
  ASSERT_TRUE(formatted.ReadAll()) << formatted.Said();
  EXPECT_EQ(formatted.Settings().groupsText, "ABCD");
  EXPECT_EQ(formatted.Settings().MODELS, PerItem::Single);
  EXPECT_EQ(formatted.Settings().MODEL_LETTER, 'S');

  ControlText ended("KEYFROM=1\n&END\n");
  EXPECT_FALSE(ended.ReadAll());
  EXPECT_THAT(ended.Said(), HasSubstr(" FAILURE TO READ CORRECTLY A \"KEY1\" RECORD.\n"
                                      " CHECK FOR CORRECT SEQUENCE IN CONTROL FILE:\n"
                                      "   SEE APPENDIX 2 IN USER'S GUIDE\n"));
}

}  // namespace
}  // namespace vardento
