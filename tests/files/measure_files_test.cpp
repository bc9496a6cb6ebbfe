#include "files/measure_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/file_form.h"
#include "report/small_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;

// Two persons and two items with known numbers; the second of each is extreme.
struct FileRun : SmallRun {
  FileRun() : SmallRun(2, 2) {
    RunArrays& a = run.arrays;
    const PersonWorkRecord person{.error = 0.5,
                                  .displacement = 0,
                                  .count = 20,
                                  .score = 12,
                                  .infit = 1.44F,
                                  .outfit = 0.98F,
                                  .correlation = -0.5F};
    SetPerson(1, "Ann, B", person);
    SetPerson(2, "", person);
    for (int i = 1; i <= 2; ++i) {
      a.PersonMeasure[i] = 1.25F;
      a.ItemMeasure[i] = -123456;
      a.PersonInfitZ[i] = 1.90144F;
      a.PersonOutfitZ[i] = -0.1F;
      a.ItemScore[i] = 7;
      a.ItemCount[i] = 20;
      a.ItemTotalScore[i] = 8;
      a.ItemTotalCount[i] = 21;
      a.ItemError[i] = 0.5F;
      a.ItemInfit[i] = 1.44F;
    }
    a.PersonStatus[2] = Status::ExtremeLow;
    SetItemLabel(2, "a\"b c");
    run.DraftSettings().PFILE = directory.NameOf("p.txt");
    run.DraftSettings().IFILE = directory.NameOf("i.txt");
  }
  std::vector<std::string> Persons() {
    WritePersonMeasureFile(run);
    return LinesOf(directory.Read("p.txt"));
  }
  std::vector<std::string> Items() {
    WriteItemMeasureFile(run);
    return LinesOf(directory.Read("i.txt"));
  }
};

TEST(MeasureFiles, FixedForm) {
  FileRun small;
  EXPECT_THAT(small.Persons()[5],
              testing::StartsWith(
                  ";    2    1.25 -1    20.0     12.0    .50   1.44   1.90    .98   -.10 "));
  small.run.inForce.pointBiserial = true;
  small.run.DraftSettings().fitName = " LOG";
  small.run.arrays.GroupModel[1] = Model::Successes;
  const std::vector<std::string> items = small.Items();
  EXPECT_EQ(items[3],
            ";ENTRY MEASURE STTS COUNT    SCORE  ERROR IN.MSQ IN. LOG OUT.MS OUT. LOG DISPL PTBS "
            "WEIGHT G M NAME");
  EXPECT_EQ(items[4].substr(0, 14), "     1-3456.00") << "high digits are lost, the sign stays";
  EXPECT_EQ(items[4].substr(83), "   1.00 1 S Item1");
  EXPECT_THAT(small.console.lines, ElementsAre("Writing PERSON Measure file ...", testing::_,
                                               "Writing ITEM Measure file ...", testing::_));
  EXPECT_THAT(small.console.menuEntries,
              ElementsAre("Edit PERSON PFILE=" + small.run.settings.PFILE,
                          "Edit ITEM IFILE=" + small.run.settings.IFILE));
}

TEST(MeasureFiles, OptionsOfTheRows) {
  FileRun small;
  ControlSettings& s = small.run.DraftSettings();
  s.HLINES = false;
  s.TOTAL = s.REALSE = true;
  s.UDECIM = 0;
  s.GROUPS = PerItem::Text;
  s.groupsText = "AB";
  small.GiveItemWeights();
  small.run.given.ItemWeight[2] = 0.25F;
  small.run.arrays.ItemMeasure[1] = -0.4F;
  small.run.arrays.ItemMeasure[2] = 2.5F;
  small.run.arrays.ItemError[2] = 5;
  std::vector<std::string> rows = small.Items();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].substr(0, 48), "     1       0  1    21.0      8.0      1   1.44");
  EXPECT_EQ(rows[1].substr(0, 48), "     2       3  1    21.0      8.0      6   1.44");
  EXPECT_EQ(rows[1].substr(83), "    .25 B R a\"b c");
  EXPECT_EQ(small.Persons()[1][0], ' ') << "without head lines nothing is a comment";
  s.UDECIM = 4;
  EXPECT_EQ(small.Items()[1].substr(6, 8) + "|", "  2.5000|");
}

TEST(FileForm, LongLinesAndQuotesAreHeldInTheirBounds) {
  FileRun small;
  small.run.DraftSettings().CSV = 'T';
  OutputFile file(small.run);
  ASSERT_TRUE(file.Open(small.directory.NameOf("long.txt")));
  file.WriteLine("\"" + std::string(300, ' ') + "x\"");
  file.WriteLine(" 1 , 2 ,\"a , b\" ,\" \"   ");
  file.WriteLine("\"a\" , b\" c , \"");
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(small.directory.Read("long.txt"), "\"\n1\t2\t\"a , b\"\t\" \"\n\"a\"\tb\" c , \"\n");
  small.run.DraftSettings().CSV = 'N';
  ASSERT_TRUE(file.Open(small.directory.NameOf("long.txt")));
  file.WriteLine(std::string(261, 'x'));
  file.WriteLine(" 1 , \"2\"  ");
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(small.directory.Read("long.txt"), std::string(260, 'x') + "\n 1 , \"2\"\n");
}

}  // namespace
}  // namespace vardento::test
