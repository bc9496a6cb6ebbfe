// Pairs of runs whose results must stand in a known relation.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/estimates.h"

namespace vardento::test {
namespace {

constexpr char kScale[] = "CODES=012";

class Metamorphic : public testing::Test {
 protected:
  void SetUp() override {
    data = Simulate(150, 12, 2, 4711);
    data.push_back(std::string(12, '2'));  // extreme at the top, extreme at the bottom, empty
    data.push_back(std::string(12, '0'));
    data.push_back(std::string(12, '9'));
    original = Estimate(data, kScale);
  }
  Matrix data;
  AllEstimates original;
};

TEST_F(Metamorphic, ReversedScoringTurnsTheScale) {
  const AllEstimates changed = Estimate(data, std::string(kScale) + "\nNEWSCR=210");
  ExpectSame(original.persons, changed.persons, Entries(0, data.size()), -1);
  ExpectSame(original.items, changed.items, Entries(0, 12), -1);
  // Step k of T becomes step T + 1 - k, and turns its sign.
  EXPECT_NEAR(changed.steps[0][0], -original.steps[0][1], kSame);
  EXPECT_NEAR(changed.steps[0][1], -original.steps[0][0], kSame);
  EXPECT_EQ(original.persons.status[150], Status::ExtremeHigh);
  EXPECT_EQ(changed.persons.status[150], Status::ExtremeLow);
  EXPECT_EQ(changed.persons.status[151], Status::ExtremeHigh);
  EXPECT_EQ(changed.persons.status[152], Status::NoResponses);
}

// UP= moves all persons at every iteration, the last one too: who answers alike stays alike, even
// where the iteration is ended early.
TEST(CentredPersons, OfTheSameAnswersHaveTheSameMeasure) {
  for (const std::string end : {"MUCON=-1", "MUCON=2", ""}) {
    Matrix data = Simulate(40, 6, 2, 5);
    data.back() = data.front();
    WholeRun whole;
    RunData(whole, data, "CODES=012\nUP=5\nUDECIM=4\n" + end);
    const std::vector<double> measures = EstimatesOf(whole).persons.measure;
    EXPECT_NEAR(measures.front(), measures.back(), 1e-5) << end;
  }
}

TEST_F(Metamorphic, AnItemThatAllPassIsExtremeAndMovesNobody) {
  Matrix more = data;
  for (std::string& row : more) row += '2';
  more[150] = std::string(13, '2');
  more[152] = std::string(13, '9');
  more[151] = std::string(13, '0');  // extreme low once the new item is out: does not count
  const AllEstimates changed = Estimate(more, kScale);
  EXPECT_EQ(changed.items.status[12], Status::ExtremeLow);
  ExpectSame(original.persons, changed.persons, Entries(0, data.size()));
  EXPECT_LT(changed.items.measure[12],
            *std::min_element(original.items.measure.begin(), original.items.measure.end()));
}

// Each step of a succession is a dichotomous item of its own, met by those who came to it: the
// model of steps on items with scales of their own is the dichotomous model on these.
Matrix ExpandSteps(const Matrix& data, int top, bool fromTheTop) {
  Matrix expanded;
  for (const std::string& row : data) {
    std::string steps;
    for (char code : row) {
      const int x = code - '0';
      for (int k = 1; k <= top; ++k) {
        const bool inPlay = fromTheTop ? k >= x : k <= x + 1;
        const bool passed = fromTheTop ? k == x : k <= x;
        steps += code == ' ' || code == '9' || !inPlay ? ' ' : passed ? '1' : '0';
      }
    }
    expanded.push_back(steps);
  }
  return expanded;
}

class Succession : public testing::TestWithParam<char> {};

TEST_P(Succession, EqualsADichotomousRunOverItsSteps) {
  const char letter = GetParam();
  const Matrix data = Simulate(200, 6, 2, 99);
  const AllEstimates steps = Estimate(data, std::string("CODES=012\nGROUPS=0\nMODELS=") + letter);
  const AllEstimates expanded = Estimate(ExpandSteps(data, 2, letter == 'F'), "CODES=01");
  ASSERT_EQ(steps.persons.measure.size(), expanded.persons.measure.size());
  for (std::size_t n = 0; n < data.size(); ++n) {
    SCOPED_TRACE(n);
    ASSERT_EQ(steps.persons.status[n], expanded.persons.status[n]);
    if (steps.persons.status[n] != Status::Active) continue;
    EXPECT_NEAR(steps.persons.measure[n], expanded.persons.measure[n], kSame);
    EXPECT_NEAR(steps.persons.error[n], expanded.persons.error[n], kSame);
  }
  for (std::size_t i = 0; i < 6; ++i) {
    for (std::size_t k = 0; k < 2; ++k) {
      EXPECT_NEAR(steps.items.measure[i] + steps.steps[i][k], expanded.items.measure[2 * i + k],
                  kSame)
          << "item " << i + 1 << ", step " << k + 1;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(BothDirections, Succession, testing::Values('S', 'F'),
                         [](const auto& parameter) { return std::string(1, parameter.param); });

}  // namespace
}  // namespace vardento::test
