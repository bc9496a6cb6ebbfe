// Memory that is refused: what is said, and what the run goes on with.
#include "run/allocate_blocks.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "run/messages.h"
#include "support/test_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

template <class T>
std::vector<T> Elements(const Array1<T>& array) {
  return {array.begin(), array.end()};
}

void SizeRun(Run& run) {
  run.settings.NI = 10;
  run.settings.MODELS = PerItem::Text;
  run.settings.IWEIGHT = "weights.txt";
  run.NGROUPS = 3;
  run.NCATS = 7;
  run.MAXCAT = 4;
  run.NPERS = 20;
}

void AllocateAll(Run& run) {
  AllocateItemBlock(run);
  ReserveItemTexts(run);
  AllocateGroupBlock(run);
  AllocateCategoryBlock(run);
  AllocatePersonBlock(run);
  AllocateWeightBlock(run);
}

TEST(AllocateBlocks, TellsWhichMemoryIsMissing) {
  struct Case {
    int request;  // refused from this one on
    const char* message;
  };
  const Case cases[] = {
      {1,
       "       748 bytes of memory not available. NOT ENOUGH MEMORY FOR      10 ITEMS IOSTAT="
       "    -2"},
      // The groups string and the four requests behind it end in one message.
      {2, "NOT ENOUGH MEMORY FOR      10 KEY/RESCOR/GROUPS/MODELS/IVALUE IOSTAT=    -2"},
      {5, "        42 bytes of memory not available. NOT ENOUGH MEMORY FOR      10 KEY/"},
      {6, "        98 bytes of memory not available. NOT ENOUGH MEMORY FOR       3 SCALE GROUPS"},
      {7, "       556 bytes of memory not available. NOT ENOUGH MEMORY FOR       7 CATEGORIES"},
      {8, "       692 bytes of memory not available. NOT ENOUGH MEMORY FOR      20 PERSONS"},
  };
  for (const Case& c : cases) {
    TestRun test("", false);
    SizeRun(test.run);
    test.run.memory.RefuseRequest(c.request);
    EXPECT_THROW(AllocateAll(test.run), RunEnded);
    EXPECT_EQ(test.run.RunIoStatus, -1);
    EXPECT_THAT(test.console.lines.back(), HasSubstr(c.message));
  }
  TestRun test("", false);
  SizeRun(test.run);
  test.run.settings.IWEIGHT.clear();
  AllocateAll(test.run);  // no weights asked for: no block
  EXPECT_FALSE(test.run.weightBlock);
}

TEST(AllocateBlocks, KeepsAsManyPersonsAsMemoryTakes) {
  struct Case {
    std::size_t limit;
    int kept;
  };
  // 33 bytes for each person and 32 to spare; a smaller probe may not let the block overrun.
  for (const Case& c : {Case{32 + 33 * 19, 19}, {32 + 33 * 8 + 32, 8}, {32 + 33, 1}}) {
    TestRun test("", false);
    SizeRun(test.run);
    test.run.memory.SetLimit(c.limit);
    AllocatePersonBlock(test.run);
    EXPECT_EQ(test.run.NPERS, c.kept);
    EXPECT_EQ(test.run.arrays.PersonStatus.Size(), c.kept);
    EXPECT_THAT(test.console.lines,
                ElementsAre("692 bytes of memory not available. Complete analysis not done.",
                            testing::AllOf(testing::StartsWith(" ONLY FIRST"),
                                           HasSubstr(" OF      20 PERSONS"))));
  }
  TestRun test("", false);
  SizeRun(test.run);
  test.run.memory.SetLimit(64);
  EXPECT_THROW(AllocatePersonBlock(test.run), RunEnded);
}

TEST(AllocateBlocks, HalvesThePersonTrialAndGivesUpAtTen) {
  TestRun test("", false);
  test.run.memory.SetLimit(300'000);
  AllocatePersonStatusTrial(test.run);
  EXPECT_EQ(test.run.personCapacity, 250'000);
  TestRun poor("", false);
  poor.run.memory.SetLimit(45);  // 15 persons and the spare bytes need 47
  EXPECT_THROW(AllocatePersonStatusTrial(poor.run), RunEnded);
  EXPECT_THAT(poor.console.lines.back(), HasSubstr("PERSON STATUS ARRAY"));
}

TEST(PersonStatus, SurvivesTheTrialThroughItsHoldFile) {
  struct Case {
    bool defaultKept;
    std::vector<StatusByte> trial, kept;
  };
  const Case cases[] = {
      {true, {1, -3, 1, -3, 1}, {1, -3, 1, -3, 1}},
      {true, {1, 1, 1, 1, 1}, {1, 1, 1, 1, 1}},
      {false, {-3, 1, -3, -3, -3}, {-3, 1, -3, -3, -3}},
  };
  for (const Case& c : cases) {
    TestRun test("", false);
    AllocatePersonStatusTrial(test.run);
    std::copy(c.trial.begin(), c.trial.end(), test.run.arrays.PersonStatus.begin());
    test.run.DefaultKept = c.defaultKept;
    test.run.NPERS = 5;
    HoldPersonStatus(test.run);
    EXPECT_FALSE(test.run.personStatusTrial);
    AllocatePersonBlock(test.run);
    RestorePersonStatus(test.run);
    EXPECT_EQ(Elements(test.run.arrays.PersonStatus), c.kept);
    EXPECT_EQ(test.directory.Files().size(), 2U);  // the Control File and "ZIN": no hold file
  }
}

}  // namespace
}  // namespace vardento::test
