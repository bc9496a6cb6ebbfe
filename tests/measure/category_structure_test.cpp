#include "measure/category_structure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "measure/category_curves.h"
#include "measure/entry_values.h"
#include "support/whole_run.h"

namespace vardento::test {
namespace {

using testing::ElementsAre;

// Seven persons on four items, a dot is a missing response; nobody is extreme.
const std::vector<std::string> kRows = {"0121", "102.", "2011", "1210", "0012", "2202", "1122"};

void Execute(WholeRun& whole, const std::string& lines) {
  std::string text =
      "TITLE=T\nNI=4\nITEM1=1\nNAME1=5\nNAMLEN=1\nCODES=012\nINUMB=Y\nLCONV=.0001\nRCONV=.0001\n" +
      lines + "\n&END\n";
  for (const std::string& row : kRows) text += row + "\n";
  whole.directory.Write("control.txt", text);
  ASSERT_EQ(whole.Execute({"TABLES=0"}), 0);
}

TEST(CategoryRow, TellsCoherenceWithoutRoundingItAway) {
  struct {
    int matches, predicted;
    double count;
    int measureToCategory, categoryToMeasure;
  } const cases[] = {
      {0, 0, 5, 0, 0},            // nothing was implied
      {5, 5, 5, 100, 100},        // all of it
      {2, 3, 3, 66, 67},          // one is cut, the other rounded
      {1, 500, 300, 1, 1},        // few, but some
      {999, 1000, 1000, 99, 99},  // nearly all, but not all
      {1, 1, 0.4, 100, 100},      // weights below 1
  };
  for (const auto& c : cases) {
    CategoryRow row;
    row.matches = c.matches;
    row.predicted = c.predicted;
    row.count = c.count;
    EXPECT_EQ(row.MeasureToCategory(), c.measureToCategory) << c.matches << " " << c.predicted;
    EXPECT_EQ(row.CategoryToMeasure(), c.categoryToMeasure) << c.matches << " " << c.predicted;
  }
}

TEST(CategoryStructure, ResidualsShowFromOnePercentOn) {
  CategoryStructure structure;
  structure.rows.resize(2);
  structure.rows[0].count = 1009;  // 1000 expected
  structure.rows[0].residual = 9;
  EXPECT_FALSE(structure.HasResiduals());
  structure.rows[1].residual = -0.02;  // of nobody: the share is of 1
  EXPECT_TRUE(structure.HasResiduals());
  EXPECT_DOUBLE_EQ(structure.rows[0].ResidualPercent(), 0.9);
}

// Of one item, the average is that of the reported person measures in the category, whichever way
// the scale runs; a category that lies out of order does so on both scales.
TEST(CategoryStructure, AveragesAreOfReportedMeasures) {
  for (const char* scale : {"USCALE=10", "USCALE=-10"}) {
    WholeRun whole;
    Execute(whole, "GROUPS=0\nUMEAN=50\n" + std::string(scale));
    const CategoryStructures structures(whole.run);
    int disordered = 0;
    for (int item = 1; item <= 4; ++item) {
      const CategoryStructure structure = structures.Of(item);
      std::map<int, std::vector<double>> measures;
      for (int n = 1; n <= 7; ++n) {
        const char response =
            kRows[static_cast<std::size_t>(n - 1)][static_cast<std::size_t>(item - 1)];
        measures[response - '0'].push_back(MeasureOf(whole.run, Facet::Persons, n));
      }
      EXPECT_EQ(structure.difficulty, MeasureOf(whole.run, Facet::Items, item));
      EXPECT_EQ(structure.missingCount, item == 4 ? 1 : 0);
      double last = 0, percent = structure.missingPercent;
      for (const CategoryRow& row : structure.rows) {
        const std::vector<double>& here = measures[row.value];
        double mean = 0;
        for (const double m : here) mean += m / static_cast<double>(here.size());
        EXPECT_EQ(row.count, static_cast<double>(here.size()));
        EXPECT_NEAR(row.average, mean, 1e-3) << scale << " item " << item;
        const bool rises = whole.run.settings.USCALE > 0 ? mean > last : mean < last;
        EXPECT_EQ(row.disordered, row.score > 0 && !rises) << scale << " item " << item;
        disordered += row.disordered;
        last = mean;
        percent += row.percent;
      }
      EXPECT_NEAR(percent, 100, 1e-9);
    }
    EXPECT_GT(disordered, 0) << "the data show nothing out of order";
  }
}

// In a succession the expected counts are of categories, not of steps passed: what is expected in
// one is missing in another, and the steps that are in play are those of the observation.
TEST(CategoryStructure, ExpectsCountsOfASuccession) {
  WholeRun whole;
  Execute(whole, "MODELS=S");
  const RunArrays& a = whole.run.arrays;
  double count[3] = {}, expectedSum[3] = {};
  for (int n = 1; n <= 7; ++n) {
    for (int i = 1; i <= 4; ++i) {
      const char response = kRows[static_cast<std::size_t>(n - 1)][static_cast<std::size_t>(i - 1)];
      if (response == '.') continue;
      const double d = a.PersonMeasure[n] - a.ItemMeasure[i];
      const auto pass = [&](int k) { return 1 / (1 + std::exp(a.StepCalibration[1 + k] - d)); };
      const int x = response - '0';
      const double first = pass(1);
      const double second = x > 0 ? pass(2) : 0;  // tried by those who passed the first
      const double expected[] = {1 - first, first - second, second};
      for (int k = 0; k <= 2; ++k) {
        count[k] += x == k;
        expectedSum[k] += expected[k];
      }
    }
  }
  const CategoryStructure structure = CategoryStructures(whole.run).Of(1);
  for (int k = 0; k <= 2; ++k) {
    const CategoryRow& row = structure.rows[static_cast<std::size_t>(k)];
    EXPECT_EQ(row.count, count[k]);
    EXPECT_NEAR(row.ExpectedCount(), expectedSum[k], 1e-3) << k;
  }
}

TEST(CategoryStructure, NamesTheCodeThatAllItemsScoreAlike) {
  const auto codes = [](const std::string& lines) {
    WholeRun whole;
    Execute(whole, lines);
    std::vector<std::string> found;
    for (const CategoryRow& row : CategoryStructures(whole.run).Of(1).rows) {
      found.push_back(row.code);
    }
    return found;
  };
  EXPECT_THAT(codes("NEWSCR=204"), ElementsAre("1", "", "0", "", "2"));
  EXPECT_THAT(codes("KEY1=1111"), ElementsAre("0", "1"));  // the first of the two that are wrong
  EXPECT_THAT(codes("KEY1=1120"), ElementsAre("", ""));
}

// The curves pass through the landmarks, in user units whatever the scale's sign.
TEST(CategoryCurves, MeetTheirLandmarks) {
  for (const char* lines : {"USCALE=10", "USCALE=-10\nMODELS=S", "USCALE=.1\nMODELS=F"}) {
    WholeRun whole;
    Execute(whole, lines);
    const CategoryCurves curves(whole.run, 1);
    std::vector<double> p(3);
    EXPECT_NEAR(curves.At(curves.MeasureOfScore(1), p.data()), 1, 0.01) << lines;
    for (int k = 1; k <= 2; ++k) {
      EXPECT_NEAR(curves.At(curves.MeasureOfHalfPoint(k), p.data()), k - 0.5, 0.01) << lines;
      curves.At(curves.ThurstoneThreshold(k), p.data());
      EXPECT_NEAR(k == 1 ? p[1] + p[2] : p[2], 0.5, 0.001) << lines;
      const double step = curves.ThurstoneThreshold(k);
      EXPECT_LT(curves.At(step - 1, p.data()), curves.At(step + 1, p.data())) << lines;
    }
    const std::optional<StepRange> range = FindStepRange(whole.run);
    ASSERT_TRUE(range.has_value());
    const float unit = std::fabs(whole.run.settings.USCALE);
    const auto [least, greatest] =
        std::minmax(whole.run.arrays.StepCalibration[2], whole.run.arrays.StepCalibration[3]);
    EXPECT_NEAR(range->low, unit * std::min(least, 0.0F), 1e-4);
    EXPECT_NEAR(range->high, unit * std::max(greatest, 0.0F), 1e-4);
  }
}

}  // namespace
}  // namespace vardento::test
