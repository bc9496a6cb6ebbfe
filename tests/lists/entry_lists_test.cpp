#include "lists/entry_lists.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "support/test_run.h"

namespace vardento {
namespace {

using testing::HasSubstr;

constexpr int kItems = 9;

// Nine items in the groups 1 1 1 2 2 2 3 3 3, or in one; tops 2 3 1; nine persons.
class ListRun : public test::TestRun {
 public:
  explicit ListRun(bool batch = true, bool oneScale = false) : TestRun("", batch) {
    run.DraftSettings().NI = run.NPERS = kItems;
    run.NGROUPS = oneScale ? 1 : 3;
    for (int i = 0; i < kItems; ++i) group_[static_cast<std::size_t>(i)] = oneScale ? 1 : i / 3 + 1;
    GivenEntries& g = run.given;
    g.ItemStatus = {itemStatus_.data(), kItems};
    g.PersonStatus = {personStatus_.data(), kItems};
    g.ItemWeight = {itemWeight_.data(), kItems};
    g.PersonWeight = {personWeight_.data(), kItems};
    g.GroupTop = {top_.data(), 3};
    g.GroupPivot = {pivot_.data(), 3};
    g.GroupPivotFlag = {pivotFlag_.data(), 3};
    g.StepStatus = {stepStatus_.data(), 9};
    g.StepCalibration = {step_.data(), 9};
    run.arrays.ItemGroup = {group_.data(), kItems};
    run.arrays.GroupStart = {start_.data(), 3};
    itemStatus_.fill(Status::Active);
    personStatus_.fill(Status::Active);
  }

  std::string List(const std::string& text) { return directory.Write("list.txt", text); }
  template <class T>
  static std::string Shown(const Array1<T>& values) {
    std::string text;
    for (const T value : values) {
      char part[32];
      snprintf(part, sizeof part, "%s%g", text.empty() ? "" : " ", static_cast<double>(value));
      text += part;
    }
    return text;
  }
  // The measures of all entries that the anchors set.
  static std::string Shown(const std::vector<Anchor>& anchors) {
    std::array<float, kItems> measures{};
    for (const Anchor& anchor : anchors) {
      measures[static_cast<std::size_t>(anchor.entry - 1)] = anchor.measure;
    }
    return Shown(Array1<float>(measures.data(), kItems));
  }
  // "D" for a deleted entry, "A" for an anchored one.
  static std::string Letters(const Array1<StatusByte>& status) {
    std::string text;
    for (const StatusByte s : status) text += s == -3 ? 'D' : s == 2 ? 'A' : s == 1 ? '.' : '?';
    return text;
  }

 private:
  std::array<StatusByte, kItems> itemStatus_{}, personStatus_{};
  std::array<float, kItems> itemWeight_{}, personWeight_{};
  std::array<std::int32_t, kItems> group_{}, stepStatus_{};
  std::array<float, kItems> step_{};
  std::array<std::int32_t, 3> start_{1, 4, 8}, top_{2, 3, 1};
  std::array<float, 3> pivot_{};
  std::array<bool, 3> pivotFlag_{true, true, true};
};

TEST(EntryLists, DeletionsAndInclusions) {
  const struct {
    const char* list;
    const char* letters;
  } cases[] = {
      {"5\n", "....D...."},
      {"-5 ; the fifth\n\n \"2\"\n", ".D..D...."},
      {"3-7\n", "..DDDDD.."},
      {"7-3\n", "..DDDDD.."},
      {"3 - 7\n", "..DDDDD.."},
      {"3,7\n", "..DDDDD.."},
      {"7,3\n", "..DDDDD.."},
      {"3 7 .15\n", "..D......"},
      {"3-7 Pat 9\n", "..DDDDD.."},
      {"3 -7 1\n", "..D......"},
      {"3-\n", "..D......"},
      {"\"3 forms\"\n", "........."},
      {"\"3 \"long\" forms\";\n\"3 4; B\"\n\"-2\"; \"x\"\n", ".D......."},
      {"\t8-99\n", ".......DD"},
      {"0\n10\n99-100\n-\nabc\n4x\n;1\n", "........."},
      {"3 Pat\n", "..D......"},
      {"0-2\n", "DD......."},
      {"+5\n", "DDDD.DDDD"},
      {"2\n+5\n+8-9\n9\n", "DDDD.DD.D"},
      {"+x\n1\n", "D........"},  // no entry: the list is not turned round
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.list);
    ListRun t;
    t.run.DraftSettings().PDFILE = t.List(c.list);
    ReadPersonDeletions(t.run);
    EXPECT_EQ(ListRun::Letters(t.run.given.PersonStatus), c.letters);
    EXPECT_EQ(t.run.DefaultKept, std::string(c.letters).substr(0, 4) != "DDDD");
  }
}

// Where the entries are named by their labels, or a value is no number, nothing is done, and told.
TEST(EntryLists, LinesThatMakeNoSenseAreToldOnceForEachList) {
  using Settings = ControlSettings;
  const struct {
    std::string Settings::*variable;
    void (*read)(vardento::Run&);
    std::string list, warning;
  } cases[] = {
      {&Settings::IDFILE, ReadItemDeletions, "5\n\n;x\n I29 ; why\n3 x\n-\n99\n0-2\n",
       " WARNING: list.txt:4: IDFILE= 2 LINES NOT USED, THE FIRST: I29"},
      {&Settings::PDFILE, ReadPersonDeletions, "+x\n1\n",
       " WARNING: list.txt:1: PDFILE= 1 LINE NOT USED: +x"},
      {&Settings::IAFILE, ReadItemAnchors, "I01 -2.5\n99 1\n1 1\n1 2\n2 1e5\n3\n4 0\n0 1\n",
       " WARNING: list.txt:1: IAFILE= 4 LINES NOT USED, THE FIRST: I01 -2.5"},
      {&Settings::PAFILE, ReadPersonAnchors, "1 1\nP2,\"2\"\n",
       " WARNING: list.txt:2: PAFILE= 1 LINE NOT USED: P2,\"2\""},
      {&Settings::PAFILE, ReadPersonAnchors,
       "\"3 \"or\" 4\" ; x\n\";\",\"ENTRY\"\n\"ENTRY\"\t\"ST\"\n\"A\",\"B\",\n\"\"\n1 1\n", ""},
      {&Settings::PAFILE, ReadPersonAnchors, "\"P1\",\"2\"\n\"P1\" 3\n",
       " WARNING: list.txt:1: PAFILE= 2 LINES NOT USED, THE FIRST: \"P1\",\"2\""},
      {&Settings::SDFILE, ReadStepList, "\"2 steps\"\n1 1 x\nx 1\n1\n1 9\n",
       " WARNING: list.txt:3: SDFILE= 2 LINES NOT USED, THE FIRST: x 1"},
      {&Settings::SAFILE, ReadStepList, "1 1 x\n1 2\n1 9 1\n99 1 1\nI1 1 1\n1 x 1\n",
       " WARNING: list.txt:1: SAFILE= 3 LINES NOT USED, THE FIRST: 1 1 x"},
      {&Settings::IWEIGHT, ReadWeights, "2 2\n1 -1\n3 x\n20 4\n",
       " WARNING: list.txt:2: IWEIGHT= 2 LINES NOT USED, THE FIRST: 1 -1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.list);
    ListRun t;
    t.run.given.PersonWeight = {};
    t.run.DraftSettings().*c.variable = t.List(c.list);
    t.run.FixSettings();
    c.read(t.run);
    std::string warnings;
    for (const std::string& line : t.console.lines) {
      if (line.starts_with(" WARNING: ")) warnings += line;
    }
    EXPECT_EQ(warnings, c.warning);
  }
}

TEST(EntryLists, ReportNamesTheDeletedItemsInRuns) {
  ListRun t;
  t.OpenReport();
  t.run.DraftSettings().IDFILE = t.List("2\n4-6\n9\n");
  ReadItemDeletions(t.run);
  EXPECT_THAT(t.Report(), HasSubstr("ITEM DELETIONS: 2 4-6 9\n"));
}

TEST(EntryLists, FileThatFails) {
  ListRun batch;
  batch.run.DraftSettings().PDFILE = batch.directory.Path();
  EXPECT_THROW(ReadPersonDeletions(batch.run), RunEnded);
  // At a console the user is asked for another one.
  ListRun t(false);
  const std::string good = t.List("1\n");
  t.run.DraftSettings().PDFILE = t.directory.NameOf("missing.txt");
  t.console.answers = {"y", good, "Y", "nowhere.txt", "n", "Yes", "7-8", "+9", "", "unused"};
  ReadPersonDeletions(t.run);
  EXPECT_EQ(ListRun::Letters(t.run.given.PersonStatus), "DDDDDDDD.");
  EXPECT_EQ(t.console.answers.size(), 1U);
  EXPECT_THAT(t.console.Text(),
              HasSubstr(" DO YOU WANT TO READ SOME PERSONS TO DELETE FROM A FILE?\n"
                        " WHAT IS THE NAME OF THE DELETE FILE?\n"));
  EXPECT_THAT(t.console.Text(), HasSubstr(" DO YOU WANT TO READ MORE PERSONS TO DELETE FROM A"));
  EXPECT_THAT(t.console.Text(),
              HasSubstr(" DO YOU WANT TO TYPE IN PERSONS TO DELETE?\nKeyboard\n"));
  EXPECT_THAT(t.console.menuEntries, testing::Contains("Edit PERSON Delete PDFILE=" + good));
  EXPECT_EQ(t.run.RunIoStatus, 0);
}

TEST(EntryLists, AnchorsTakeTheFirstValueOfAnEntry) {
  ListRun t;
  t.run.given.ItemStatus[4] = Status::Deleted;
  t.run.DraftSettings().UMEAN = 50;
  t.run.DraftSettings().USCALE = -10;
  t.run.inForce.IAFILE = t.List(
      "\";\",\"ENTRY\",\"MEASURE\"\n 1  60.00  1 283.0 label 7\n1 20\n3-2 +45\n4 50\n5 -.5\n"
      "6 1.2.3\n7\n8 text\n\"8,2\"\n\"7 2 forms\";\n9-12,40,1\n0 3\n");
  ReadItemAnchors(t.run);
  EXPECT_EQ(ListRun::Letters(t.run.given.ItemStatus), "...D.....");  // anchored if it comes back
  EXPECT_EQ(ListRun::Shown(t.run.given.itemAnchors), "-1 0.5 0.5 -0 5.05 0 0 4.8 1");

  ListRun other;
  other.run.DraftSettings().UMEAN = 50;
  other.run.DraftSettings().UANCHOR = false;
  other.run.DraftSettings().UASCALE = 2;
  other.run.inForce.PAFILE = other.List("2 3\n");
  ReadPersonAnchors(other.run);
  EXPECT_EQ(ListRun::Shown(other.run.given.personAnchors), "0 1.5 0 0 0 0 0 0 0");
  other.run.DraftSettings().UASCALE = 1e-30F;  // out of the range of a real
  other.run.inForce.PAFILE = other.List("3 1000000000\n");
  ReadPersonAnchors(other.run);
  EXPECT_EQ(other.run.given.PersonStatus[3], Status::Active);

  ListRun missing;
  missing.run.inForce.IAFILE = missing.directory.NameOf("missing.txt");
  EXPECT_THROW(ReadItemAnchors(missing.run), RunEnded);
  EXPECT_EQ(missing.run.RunIoStatus, -1);
}

TEST(EntryLists, AnchorsTypedAtTheConsole) {
  ListRun t(false);
  const std::string file = t.List("1 1.5\n");
  t.run.DraftSettings().ANCHOR_Q = true;
  t.console.answers = {"Y", "Y", file, "Y", "N", "3-4", "2", "5", "x", "1", "9", "10", "unused"};
  ReadItemAnchors(t.run);
  EXPECT_EQ(ListRun::Shown(t.run.given.itemAnchors), "1.5 0 2 2 0 0 0 0 0");
  EXPECT_EQ(t.console.answers.size(), 1U);
  EXPECT_THAT(t.console.Text(), HasSubstr(" Processing ITEM Anchors from: " + file));
  EXPECT_THAT(t.console.Text(), HasSubstr("INPUT VALUE AT WHICH TO ANCHOR ITEM"));
}

TEST(EntryLists, StepsBelongToTheGroupOfTheirItem) {
  ListRun t;
  t.run.DraftSettings().USCALE = -2;
  t.run.DraftSettings().SDFILE = t.List("4 2\n7 5\n");
  const std::string anchors = t.directory.Write(
      "steps.txt", "; ITEM CATEGORY\n1 1 -3\n2,2,\"4\"\n5 2 9\n6 3 1\n4 3 x\n9 1\n9 2 1\n99 1 1\n");
  t.run.DraftSettings().SAFILE = anchors;
  ReadStepList(t.run);
  EXPECT_EQ(ListRun::Shown(t.run.given.StepStatus), "0 2 2 0 0 -3 2 0 0");
  EXPECT_EQ(ListRun::Shown(t.run.given.StepCalibration), "0 -1.5 2 0 0 0 0.5 0 0");
}

TEST(EntryLists, OneScaleNeedsNoItemForItsSteps) {
  ListRun t(true, true);
  t.run.DraftSettings().SDFILE = t.List("0\n");
  t.run.DraftSettings().SAFILE =
      t.directory.Write("steps.txt", "  0   1.00\n  1   -.50\n3 2 .25\n9 x y\n");
  ReadStepList(t.run);
  EXPECT_EQ(ListRun::Shown(t.run.given.StepStatus), "-3 2 2 0 0 0 0 0 0");
  EXPECT_EQ(ListRun::Shown(t.run.given.StepCalibration), "0 -0.5 0.25 0 0 0 0 0 0");
}

TEST(EntryLists, PivotsAreSetOnceForAGroup) {
  ListRun t;
  t.run.DraftSettings().PIVOT = t.List("1 +1.5\n2 .5\n5-9 1 ; two groups\n");
  ReadPivots(t.run);
  EXPECT_EQ(ListRun::Shown(t.run.given.GroupPivot), "1.5 1 1");
  ListRun faulty;
  faulty.run.DraftSettings().PIVOT = faulty.List("1 2\n5 -1\n");
  EXPECT_THROW(ReadPivots(faulty.run), RunEnded);
  EXPECT_THAT(faulty.console.Text(), HasSubstr("\"PIVOT=\": 5 -1"));
  ListRun none;
  ReadPivots(none.run);
  for (const bool flag : none.run.given.GroupPivotFlag) EXPECT_FALSE(flag);
}

TEST(EntryLists, WeightsThatChangeNothingAreDropped) {
  ListRun t;
  t.run.inForce.PWEIGHT = t.List("2 2.5\n4-3 0\n5 -1\n6 x\n9-12 3\n");
  t.run.inForce.IWEIGHT = t.directory.Write("items.txt", "1-9 1\n20 4\n");
  ReadWeights(t.run);
  EXPECT_EQ(ListRun::Shown(t.run.given.PersonWeight), "1 2.5 0 0 1 1 1 1 3");
  EXPECT_TRUE(t.run.given.HasPersonWeights());
  EXPECT_FALSE(t.run.given.HasItemWeights());
  EXPECT_EQ(t.run.given.ItemWeight.Size(), 0);
}

}  // namespace
}  // namespace vardento
