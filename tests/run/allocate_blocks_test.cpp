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

std::size_t NothingLater(int) { return 0; }

void SizeRun(Run& run) {
  run.DraftSettings().NI = 10;
  run.DraftSettings().MODELS = PerItem::Text;
  run.inForce.IWEIGHT = "weights.txt";
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
  AllocatePersonBlock(run, NothingLater);
  AllocateWeightBlock(run);
}

TEST(AllocateBlocks, TellsWhichMemoryIsMissing) {
  struct Case {
    int request;  // refused from this one on
    const char* message;
  };
  const Case cases[] = {
      {1,
       "       710 bytes of memory not available. NOT ENOUGH MEMORY FOR      10 ITEMS IOSTAT="
       "    -2"},
      // The groups string and the four requests behind it end in one message.
      {2,
       "        42 bytes of memory not available. NOT ENOUGH MEMORY FOR      10 "
       "KEY/RESCOR/GROUPS/MODELS/IVALUE IOSTAT=    -2"},
      {5, "        42 bytes of memory not available. NOT ENOUGH MEMORY FOR      10 KEY/"},
      {6, "        81 bytes of memory not available. NOT ENOUGH MEMORY FOR       3 SCALE GROUPS"},
      {7, "       644 bytes of memory not available. NOT ENOUGH MEMORY FOR       7 CATEGORIES"},
      {8, "       600 bytes of memory not available. NOT ENOUGH MEMORY FOR      20 PERSONS"},
  };
  for (const Case& c : cases) {
    TestRun test("", false);
    SizeRun(test.run);
    test.run.memory.RefuseRequest(c.request);
    EXPECT_THROW(AllocateAll(test.run), RunEnded);
    EXPECT_EQ(test.run.RunIoStatus, -1);
    EXPECT_THAT(test.console.lines.back(), testing::StartsWith(c.message));
  }
  TestRun test("", false);
  SizeRun(test.run);
  test.run.inForce.IWEIGHT.clear();
  AllocateAll(test.run);  // no weights asked for: no block
  EXPECT_FALSE(test.run.weightBlock);
}

TEST(AllocateBlocks, KeepsAsManyPersonsAsMemoryTakes) {
  struct Case {
    std::size_t limit;
    int kept;
    std::size_t later = 0;  // bytes for each person that a phase will want
  };
  // 30 bytes for each person, and 52 for the weights of 10 items and 3 groups.
  for (const Case& c :
       {Case{52 + 30 * 19, 19}, {52 + 30 * 9 - 1, 8}, {52 + 30, 1}, {52 + 38 * 19, 19, 8}}) {
    TestRun test("", false);
    SizeRun(test.run);
    test.run.memory.SetLimit(c.limit);
    AllocatePersonBlock(test.run,
                        [&c](int persons) { return c.later * static_cast<std::size_t>(persons); });
    EXPECT_EQ(test.run.NPERS, c.kept);
    EXPECT_EQ(test.run.given.PersonStatus.Size(), c.kept);
    EXPECT_THAT(test.console.lines,
                ElementsAre("600 bytes of memory not available. Complete analysis not done.",
                            testing::AllOf(testing::StartsWith(" ONLY FIRST"),
                                           HasSubstr(" OF      20 PERSONS"))));
  }
  TestRun test("", false);
  SizeRun(test.run);
  test.run.memory.SetLimit(52 + 29);
  EXPECT_THROW(AllocatePersonBlock(test.run, NothingLater), RunEnded);
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
    std::copy(c.trial.begin(), c.trial.end(), test.run.given.PersonStatus.begin());
    test.run.DefaultKept = c.defaultKept;
    test.run.NPERS = 5;
    HoldPersonStatus(test.run);
    EXPECT_FALSE(test.run.personStatusTrial);
    AllocatePersonBlock(test.run, NothingLater);
    RestorePersonStatus(test.run);
    EXPECT_EQ(Elements(test.run.given.PersonStatus), c.kept);
    EXPECT_EQ(test.directory.Files().size(), 2U);  // the Control File and "ZIN": no hold file
  }
}

}  // namespace
}  // namespace vardento::test
