#include "lists/category_labels.h"

#include <gtest/gtest.h>

#include "support/test_run.h"

namespace vardento::test {
namespace {

// Items 1 and 2 share group 1, item 3 is group 2.
class LabelledRun : public TestRun {
 public:
  LabelledRun(const std::string& categories, const std::string& codes)
      : TestRun("NI=3\nCODES=\"a b c \"\nXWIDE=2\n&END\n", false) {
    ControlSettings& settings = run.DraftSettings();
    settings.NI = 3;
    settings.XWIDE = 2;
    settings.CODES = "a b - ";
    if (!categories.empty()) settings.CFILE = directory.Write("categories", categories);
    if (!codes.empty()) settings.CLFILE = directory.Write("codes", codes);
    run.arrays.ItemGroup = {groups_, 3};
  }

 private:
  std::int32_t groups_[3] = {1, 1, 2};
};

TEST(CategoryLabels, FindTheWordsOfACategory) {
  LabelledRun labelled(
      "0 Never ; a comment\n\n1\tSometimes, or so\n"
      "  2  First\n2 Second\n2+3 Of item three\n2+9 No such item\n"
      "+1 wrong\n1+ wrong\nx wrong\n1+x wrong\n3+1 Of group one\n3 Of all\n",
      "");
  const CategoryLabels labels(labelled.run);
  EXPECT_TRUE(labels.HasCategories());
  EXPECT_FALSE(labels.HasCodes());
  EXPECT_EQ(labels.OfCategory(0, 1), "Never");
  EXPECT_EQ(labels.OfCategory(1, 1), "Sometimes  or so");
  EXPECT_EQ(labels.OfCategory(2, 1), "Second");
  EXPECT_EQ(labels.OfCategory(2, 2), "Of item three");
  EXPECT_EQ(labels.OfCategory(3, 1), "Of group one");
  EXPECT_EQ(labels.OfCategory(3, 2), "Of all");
  EXPECT_EQ(labels.OfCategory(4, 1), "");
  EXPECT_EQ(labels.OfCategory(-1, 1), "");
}

TEST(CategoryLabels, FindTheWordsOfACode) {
  LabelledRun labelled("",
                       "a First for all\na Second for all\na+2 Of item two\n\"a\"+3 Of item three\n"
                       "'b ' Quoted\n\"- Not closed\n\x93-\x94 A dash\nc No such code\n");
  const CategoryLabels labels(labelled.run);
  EXPECT_FALSE(labels.HasCategories());
  EXPECT_EQ(labels.OfCode(1, 2, 1), "Of item two");
  EXPECT_EQ(labels.OfCode(1, 1, 1), "Of item two");  // the other item of its group
  EXPECT_EQ(labels.OfCode(1, 3, 2), "Of item three");
  EXPECT_EQ(labels.OfCode(1, 0, 3), "First for all");
  EXPECT_EQ(labels.OfCode(2, 1, 1), "Quoted");
  EXPECT_EQ(labels.OfCode(3, 1, 1), "A dash");
  EXPECT_EQ(labels.OfCode(4, 1, 1), "");
  EXPECT_EQ(labels.OfCode(0, 1, 1), "");
}

TEST(CategoryLabels, AreAsIfNotGivenWithoutAFile) {
  LabelledRun labelled("", "");
  labelled.run.DraftSettings().CFILE = "/nowhere/labels";
  const CategoryLabels labels(labelled.run);
  EXPECT_FALSE(labels.HasCategories());
  EXPECT_EQ(labels.OfCategory(1, 1), "");
}

}  // namespace
}  // namespace vardento::test
