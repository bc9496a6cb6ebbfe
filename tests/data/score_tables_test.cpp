#include "data/score_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/data_run.h"

namespace vardento::test {
namespace {

// Five items that score the codes 0123 by the value tables A to D, in four groups.
class ScoredByTables : public DataRun {
 public:
  explicit ScoredByTables(std::string tags) : DataRun("", 5) {
    SetCodes("0123", 1);
    SetGroups({1, 1, 2, 3, 4});
    settings.ivalueTables = {{'A', "0123"}, {'B', "0111"}, {'C', "0000"}, {'D', "****"}};
    settings.NIVALUE = 4;
    settings.IREFER = PerItem::Text;
    settings.ireferText = std::move(tags);
    run.inForce.scoring = DecideRescoring(settings);
  }
};

TEST(ScoreTables, GroupsGetAPositionForEachCategoryAndAtLeastTwo) {
  struct Case {
    const char* tags;
    int missing;
    std::vector<std::int32_t> tops, starts;
    int ncats, maxcat;
  };
  const Case cases[] = {
      {"AABCD", 255, {3, 1, 0, -1}, {1, 5, 7, 9}, 10, 3},
      {"BABCD", 255, {3, 1, 0, -1}, {1, 5, 7, 9}, 10, 3},  // the item with the highest top counts
      {"AABCD", 2, {3, 2, 2, 2}, {1, 5, 8, 11}, 13, 3},
      {"CCCCB", 0, {0, 0, 0, 1}, {1, 3, 5, 7}, 8, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.tags);
    ScoredByTables data(c.tags);
    data.settings.MISSING = c.missing;
    SizeCategories(data.run);
    const Array1<std::int32_t> top = data.run.given.GroupTop, start = data.run.arrays.GroupStart;
    EXPECT_EQ(std::vector(top.begin(), top.end()), c.tops);
    EXPECT_EQ(std::vector(start.begin(), start.end()), c.starts);
    EXPECT_EQ(data.run.NCATS, c.ncats);
    EXPECT_EQ(data.run.MAXCAT, c.maxcat);
  }
}

TEST(ScoreTables, NothingScoredAboveZeroEndsTheRun) {
  ScoredByTables data("CCCCD");
  EXPECT_THROW(SizeCategories(data.run), RunEnded);
  EXPECT_THAT(data.console.lines,
              testing::ElementsAre(" NONE OF YOUR RESPONSES ARE SCORED 1 OR ABOVE.",
                                   " CHECK VARIABLES: CODES=, RESCOR=, NEWSCR=, KEY1=, IVALUE?="));
}

}  // namespace
}  // namespace vardento::test
