// Measures of the possible scores of the examples, against bisection of the expected score.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "measure/score_measure.h"
#include "support/estimates.h"
#include "support/score_curve.h"

namespace vardento::test {
namespace {

constexpr double kSameScore = 0.01;  // logits
// Of so many scores of an item each one is tried; of more, a sample and those at both ends.
constexpr int kPlainScores = 1000;
constexpr int kSampleStep = 211;
constexpr int kEndScores = 5;

using Words = std::vector<std::string>;

struct Case {
  std::string example;
  const char* name;
  Words words;
};

const char kPersonWeights[] = "1-20 0\n21-90 .5\n91-150 2\n";
const char kItemWeights[] = "1 0\n2-4 .5\n6 2\n9 2\n";

std::vector<Case> AllCases() {
  const std::vector<std::pair<const char*, Words>> settings = {
      {"AsGiven", {}},
      {"Succession", {"MODELS=S", "USCALE=-10", "UMEAN=50"}},
      {"Failures", {"MODELS=F", "USCALE=10", "STBIAS=Y"}},
      {"Weights", {"PWEIGHT=pw.txt", "IWEIGHT=iw.txt"}},
      {"SuccessionWeights", {"MODELS=S", "PWEIGHT=pw.txt", "IWEIGHT=iw.txt"}},
      {"FailuresWeights", {"MODELS=F", "PWEIGHT=pw.txt", "IWEIGHT=iw.txt"}}};
  const std::string examples = std::string(VARDENTO_SOURCE_DIR) + "/examples";
  std::vector<Case> cases{{examples + "/verbal-aggression",
                           "Mixed",
                           {"GROUPS=AAAAAABBBBBBCCCCCCCC0000", "MODELS=RRRRRRSSSSSSFFFFFFFFRSFR"}}};
  for (const auto& entry : std::filesystem::directory_iterator(examples)) {
    if (!entry.is_directory()) continue;
    for (const auto& [name, words] : settings) {
      cases.push_back({entry.path().string(), name, words});
    }
  }
  return cases;
}

class ExampleScores : public testing::TestWithParam<Case> {
 protected:
  void SetUp() override {
    std::filesystem::copy(GetParam().example, whole.directory.Path());
    whole.directory.Write("pw.txt", kPersonWeights);
    whole.directory.Write("iw.txt", kItemWeights);
    Words words{"TFILE="};
    words.insert(words.end(), GetParam().words.begin(), GetParam().words.end());
    ASSERT_EQ(whole.Execute(words), kExitGood) << whole.directory.Read("report.txt");
    const bool weighted = GetParam().words.size() > 1 && GetParam().words.back()[0] == 'I';
    ASSERT_TRUE(whole.run.given.HasPersonWeights() == weighted &&
                whole.run.given.HasItemWeights() == weighted);
  }
  // A curve that rises has the score within the limit of `found`, logits up the curve: what
  // bisection would find.
  static bool IsNear(const ScoreCurve& curve, double found, double score) {
    return !curve.HasReached(found - kSameScore, score) &&
           curve.HasReached(found + kSameScore, score);
  }
  static bool IsTried(int score, double maximum) {
    return maximum <= kPlainScores || score % kSampleStep == 0 || score < kEndScores ||
           score > maximum - kEndScores;
  }

  WholeRun whole;
};

TEST_P(ExampleScores, OfPersonsEqualBisection) {
  const vardento::Run& run = whole.run;
  const ScoreCurve curve(run);
  ASSERT_GT(curve.Maximum(), 0);
  for (int half = 0; half / 2.0 <= curve.Maximum(); ++half) {
    const double score = half / 2.0;
    const float start = 40 * static_cast<float>(half % 3 - 1);
    const ScoreMeasure found = MeasureForPersonScore(
        run, run.settings.UMEAN + start * run.settings.USCALE, score, curve.Maximum());
    const double b = LogitsOf(run, found.measure, run.results.PersonBias);
    EXPECT_TRUE(IsNear(curve, b, score))
        << found.measure << " for score " << score << " of " << curve.Maximum();
    // The information is the slope of the curve.
    const double slope = (curve.At(b + 0.01, score) - curve.At(b - 0.01, score)) / 0.02;
    EXPECT_NEAR(found.information / slope, 1, 0.03);
    EXPECT_NEAR(
        found.error,
        std::fabs(run.results.PersonBias * run.settings.USCALE) / std::sqrt(found.information),
        1e-5 * found.error);
  }
}

// Items of a group differ in where the search begins.
TEST_P(ExampleScores, OfItemsEqualBisection) {
  const vardento::Run& run = whole.run;
  std::map<int, std::vector<int>> groups;
  for (int i = 1; i <= run.settings.NI; ++i) {
    if (run.arrays.ItemStatus[i] > 0) groups[run.arrays.ItemGroup[i]].push_back(i);
  }
  ASSERT_FALSE(groups.empty());
  for (const auto& [group, items] : groups) {
    const ScoreCurve curve(run, group);
    const double maximum = curve.Maximum();
    std::size_t turn = 0;
    for (int score = 0; score <= std::ceil(maximum); ++score) {
      if (!IsTried(score, maximum)) continue;
      const int item = items[turn++ % items.size()];
      const float away = 20 * static_cast<float>(turn % 3) - 20;
      const float start = run.arrays.ItemMeasure[item] + away * run.settings.USCALE;
      const ScoreMeasure found = MeasureForItemScore(run, group, start, score, maximum);
      EXPECT_TRUE(IsNear(curve, -LogitsOf(run, found.measure, run.results.ItemBias), score))
          << found.measure << " for score " << score << " of " << maximum << ", item " << item;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, ExampleScores, testing::ValuesIn(AllCases()), [](const auto& c) {
  std::string name = std::filesystem::path(c.param.example).filename().string() + c.param.name;
  std::erase(name, '-');
  return name;
});

// Scores that no measure reaches, and nobody to reach them with: the search ends all the same.
TEST(ScoreMeasure, EndsWhereTheCurveEnds) {
  WholeRun whole;
  const Matrix data = Simulate(40, 5, 1, 8);
  RunData(whole, data, "CODES=01\nEXTRSC=1\nPAIRED=Y");
  vardento::Run& run = whole.run;
  const ScoreMeasure low = MeasureForPersonScore(run, 0, 1, 1);  // one point less one: nothing
  EXPECT_LT(low.measure, -2);
  EXPECT_GT(low.measure, -60);
  EXPECT_NEAR(low.error, 0.5 * 1.4142 / std::sqrt(0.001), 0.01);  // of no information, twice over
  const ScoreMeasure middle = MeasureForPersonScore(run, 0, 2, 5);
  EXPECT_NEAR(middle.error, 0.5 * 1.4142 / std::sqrt(2 * middle.information), 1e-4);
  for (StatusByte& status : run.arrays.PersonStatus) status = Status::ExtremeHigh;
  EXPECT_TRUE(std::isfinite(MeasureForItemScore(run, 1, 0, 3, 5).measure));
}

}  // namespace
}  // namespace vardento::test
