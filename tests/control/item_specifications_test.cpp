#include "control/item_specifications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "control/control_text.h"
#include "control/item_lists.h"

namespace vardento {
namespace {

using test::ControlText;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;

struct GroupedItems {
  explicit GroupedItems(const std::string& lines) : control(lines + "\n&END\n") {
    Run& run = control.test.run;
    run.arrays.ItemGroup = {itemGroup.data(), 4};
    good = control.ReadAll() && control.Attempt([&] {
      AssignGroups(run, run.arrays.ItemGroup);
      run.arrays.GroupModel = {models.data(), run.NGROUPS};
      AssignModels(run);
    });
    for (int g = 1; g <= run.NGROUPS; ++g) {
      groupModels += LetterOf(models[static_cast<std::size_t>(g - 1)]);
    }
  }
  ControlText control;
  std::vector<std::int32_t> itemGroup = std::vector<std::int32_t>(4, -1);
  std::vector<Model> models = std::vector<Model>(4, Model{'?'});
  std::string groupModels;
  bool good = false;
};

TEST(ItemGroups, FollowTheLetters) {
  const struct {
    std::string lines;
    std::vector<int> groups;
    std::string models;
  } cases[] = {
      {"", {1, 1, 1, 1}, "R"},
      {"GROUPS=", {1, 1, 1, 1}, "R"},
      {"GROUPS=0\nMODELS=f", {1, 2, 3, 4}, "FFFF"},
      {"GROUPS=ABBA", {1, 2, 2, 1}, "RR"},
      {"GROUPS=BAAb", {2, 1, 1, 2}, "RR"},
      {"GROUPS=AB A", {1, 2, 3, 1}, "RRR"},
      {"GROUPS=0Z0A", {3, 2, 4, 1}, "RRRR"},
      {"GROUPS=AB", {1, 2, 3, 4}, "RRRR"},
      {"MODELS=RS F", {1, 2, 3, 4}, "RSRF"},
      {"MODELS=RS F\nGROUPS=ABAC", {1, 2, 1, 3}, "RSF"},
      {"GROUPS=*\n4-3 B\n1 A ;x\n*", {1, 3, 2, 2}, "RRR"},
      {"GROUPS=*\n*", {1, 1, 1, 1}, "R"},
      {"GROUPS=*\n1-99 0\n*", {1, 2, 3, 4}, "RRRR"},
      {"GROUPS=*\n1 0\n2 - 4 A\n*", {2, 1, 1, 1}, "RR"},
      {"MODELS=*\n2 s\n*", {1, 2, 3, 4}, "RSRR"},
      {"XWIDE=2\nCODES=0 1 2 \nCODES=\"0 1 \"\nGROUPS=\"A B A B \"", {1, 2, 1, 2}, "RR"},
      {"XWIDE=2\nCODES=\"0 1 \"\nGROUPS=ABBA", {1, 2, 2, 1}, "RR"},
      {"XWIDE=2\nCODES=\"0 1 \"\nGROUPS=\" A B B\"", {1, 2, 2, 3}, "RRR"},
      {"XWIDE=3\nCODES=\"0  1  \"\nGROUPS=\" A  B  A  C \"", {1, 2, 1, 3}, "RRR"},
      {"XWIDE=3\nCODES=\"0  1  \"\nGROUPS=*\n1-2 A\n4 B\n*", {1, 1, 3, 2}, "RRR"},
  };
  for (const auto& c : cases) {
    GroupedItems items(c.lines);
    ASSERT_TRUE(items.good) << c.lines << items.control.Said();
    EXPECT_THAT(items.itemGroup, ElementsAreArray(c.groups)) << c.lines;
    EXPECT_EQ(items.groupModels, c.models) << c.lines;
  }
}

TEST(ItemTexts, EndTheRunInTheirOwnWords) {
  const std::string wide = "XWIDE=2\nCODES=\"0 1 \"\n";
  const struct {
    std::string lines, said;
  } cases[] = {
      {"MODELS=x", " INVALID MODEL OF X IN MODELS\n"},
      {"MODELS=RX", " INVALID MODEL OF X IN MODELS\n"},
      {"GROUPS=ABAB\nMODELS=RS F",
       " TWO MODEL TYPES DEFINED IN SAME GROUP: \"S\" AT ITEM 2 AND \"F\" AT ITEM 4\n"},
      {wide + "GROUPS=ABBAA",
       " GROUPS= has one \"one character per item\" format, but is 1 characters too long\n"
       " Valid are \"one character per XWIDE=\" or \"one character per item\"\n"},
      {wide + "GROUPS=A BCD",
       " XWIDE=2' WITH MORE THAN ONE NON-BLANK PER FIELD IN \"GROUPS=\" AT ITEM 2 WITH VALUE: BC\n"
       " Valid are \"one character per XWIDE=\" or \"one character per item\"\n"
       " NOTE: FOR GROUPS NUMBERED 10, 11 AND ABOVE, SPECIFY GROUPS= A  B ETC.\n"},
      {"GROUPS=*\n1\n*", "Value problem in Group=*: 1\n"},
      {"MODELS=*\nx S\n*", "Value problem in MODEL=*: x S\n"},
      {"IREFER=*\n1-A\n*", "Value problem in IREFER=*: 1-A\n"},
      {"RESCORE=*\n-1 1\n*", "Value problem in RESCORE=*: -1 1\n"},
  };
  for (const auto& c : cases) {
    GroupedItems items(c.lines);
    EXPECT_FALSE(items.good) << c.lines;
    EXPECT_THAT(items.control.Said(), HasSubstr(c.said)) << c.lines;
  }
}

TEST(ItemLists, ReadLinesOfManyForms) {
  const struct {
    const char* line;
    ItemListLine kind;
    int first, last;
    char value;
  } cases[] = {
      {"", ItemListLine::Blank, 0, 0, ' '},
      {" ; comment", ItemListLine::Blank, 0, 0, ' '},
      {"\"+,\"", ItemListLine::Blank, 0, 0, ' '},
      {"3 A", ItemListLine::Entry, 3, 3, 'A'},
      {" 3,\"ABC\"", ItemListLine::Entry, 3, 3, 'A'},
      {"2-5 B", ItemListLine::Entry, 2, 5, 'B'},
      {"5 - 2 B", ItemListLine::Entry, 2, 5, 'B'},
      {"2 -5 B", ItemListLine::Entry, 2, 5, 'B'},
      {"2- 5\tB", ItemListLine::Entry, 2, 5, 'B'},
      {"0-99999999999 C", ItemListLine::Entry, 1, 9, 'C'},
      {"3B", ItemListLine::Faulty, 0, 0, ' '},
      {"3", ItemListLine::Faulty, 0, 0, ' '},
      {"3-", ItemListLine::Faulty, 0, 0, ' '},
      {"- 3 A", ItemListLine::Faulty, 0, 0, ' '},
  };
  for (const auto& c : cases) {
    ItemListEntry entry;
    EXPECT_EQ(ParseItemListLine(c.line, 9, entry), c.kind) << c.line;
    if (c.kind != ItemListLine::Entry) continue;
    EXPECT_EQ(entry.first, c.first) << c.line;
    EXPECT_EQ(entry.last, c.last) << c.line;
    EXPECT_EQ(entry.value, c.value) << c.line;
  }
  ItemListEntry outside;
  ASSERT_EQ(ParseItemListLine("12-15 A", 9, outside), ItemListLine::Entry);
  EXPECT_GT(outside.first, outside.last);
}

// Scores of codes 0 (not in CODES=), 1, 2 ... on items 1 to 4, from the lines of a Control File.
TEST(ScoreResponse, FollowsTheScoringRules) {
  const struct {
    std::string lines;
    std::vector<std::vector<int>> scores;  // by item
  } cases[] = {
      {"CODES=012", {{255, 0, 1, 2}}},
      {"CODES=012\nMISSING=0", {{0, 0, 1, 2}}},
      {"CODES=01A", {{255, 0, 1, 255}}},
      {"CODES=\"01 \"", {{255, 0, 1, 255}}},
      {"CODES=01A\nMISSING=7", {{7, 0, 1, 255}}},
      {"CODES=ABC\nALPHANUM=CBA", {{255, 2, 1, 0}}},
      {"CODES=ABX\nALPHANUM=AB", {{255, 0, 1, 255}}},
      {"XWIDE=2\nCODES=\" 1102 \"", {{255, 1, 10, 2}}},
      {"XWIDE=3\nCODES=254255999", {{255, 254, 255, 255}}},
      {"CODES=ABC\nNEWSCR=201", {{255, 2, 0, 1}, {255, 2, 0, 1}}},
      {"CODES=012\nNEWSCR=210\nRESCORE=0Y", {{255, 0, 1, 2}, {255, 2, 1, 0}}},
      {"CODES=012\nNEWSCR=21\nRESCORE=2", {{255, 2, 1, 255}}},
      {"CODES=ABC\nKEY1=BCA", {{255, 0, 1, 0}, {255, 0, 0, 1}, {255, 1, 0, 0}, {255, 0, 0, 0}}},
      {"CODES=ABC\nKEY1=B\nKEY2=C\nKEYSCR=31", {{255, 0, 3, 1}}},
      {"CODES=ABC\nKEY1=B\nKEY3=B", {{255, 0, 1, 0}}},
      {"CODES=ABC\nKEY1=B\nKEYSCR=x", {{255, 0, 255, 0}}},
      {"CODES=ABC\nMISSING=0\nKEY1=BB", {{0, 0, 1, 0}, {0, 0, 1, 0}}},
      {"CODES=012\nKEY1=1111\nRESCORE=01", {{255, 0, 1, 2}, {255, 0, 1, 0}}},
      {"XWIDE=2\nCODES=\" 1 2\"\nKEY1=\" 2\"", {{255, 0, 1}}},
      {"CODES=012\nIVALUEA=01\nIREFER=AB", {{255, 0, 1, 255}, {255, 0, 1, 2}}},
      {"CODES=012\nIVALUEA=210\nGROUPS=ABAB", {{255, 2, 1, 0}, {255, 0, 1, 2}}},
      {"CODES=012\nIREFER=AAAA", {{255, 0, 1, 2}}},
      {"CODES=012\nIVALUEA=210\nIREFER=AA\nRESCORE=10\nNEWSCR=555",
       {{255, 5, 5, 5}, {255, 2, 1, 0}}},
      {"CODES=012\nIVALUEA=BCA\nIREFER=A\nALPHANUM=ABC0", {{255, 1, 2, 0}, {255, 3, 255, 255}}},
      {"CODES=01\nRESCORE=*\n2 y\n*\nNEWSCR=10", {{255, 0, 1}, {255, 1, 0}}},
  };
  for (const auto& c : cases) {
    GroupedItems items(c.lines);
    ASSERT_TRUE(items.good) << c.lines << items.control.Said();
    const ScoringInForce scoring = DecideRescoring(items.control.Settings());
    for (std::size_t item = 0; item < c.scores.size(); ++item) {
      std::vector<int> scores;
      for (int code = 0; code < static_cast<int>(c.scores[item].size()); ++code) {
        scores.push_back(
            ScoreResponse(items.control.Settings(), scoring, code, static_cast<int>(item) + 1));
      }
      EXPECT_EQ(scores, c.scores[item]) << c.lines << " item " << item + 1;
    }
  }
}

TEST(EchoSettings, ShowsWhatShapedTheScoring) {
  GroupedItems items("CODES=\"01 \"\nRESCORE=1Y\nIVALUEA=01\nIREFER=A\nGROUPS=AABB\nNEWSCR=101");
  ASSERT_TRUE(items.good) << items.control.Said();
  vardento::Run& run = items.control.test.run;
  std::vector<StatusByte> status{-3, 1, -3, -3};
  run.arrays.ItemStatus = {status.data(), 4};
  run.DraftSettings().ivalueTables[0].codes += std::string(600, '*');
  items.control.test.console.lines.clear();
  run.inForce.scoring = DecideRescoring(run.settings);
  EchoSettings(run);
  EXPECT_THAT(
      items.control.test.console.lines,
      ElementsAre(" CODES =\"01 \"", "RESCOR = 1100", "IVALUEA= 01*" + std::string(489, '*'),
                  "IREFER = A", "GROUPS = AABB", " IDFILE=* 1 3-4"));
}

}  // namespace
}  // namespace vardento
