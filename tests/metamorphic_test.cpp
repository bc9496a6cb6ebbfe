// Pairs of runs whose results must stand in a known relation: whatever the program computes, a
// change of the data that means nothing may change nothing, and one that means something must be
// followed.

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "support/estimates.h"

namespace vardento::test {
namespace {

using Permutation = std::vector<std::size_t>;

Permutation Shuffled(std::size_t count, unsigned seed) {
  Permutation order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::mt19937 generator(seed);
  for (std::size_t i = count - 1; i > 0; --i) std::swap(order[i], order[generator() % (i + 1)]);
  return order;
}

// Entry j of `changed` is entry order[j] of `original`; measures times `sign`, errors times
// `error`.
void ExpectSame(const Estimates& original, const Estimates& changed, const Permutation& order,
                double sign = 1, double error = 1) {
  ASSERT_EQ(changed.measure.size(), order.size());
  for (std::size_t j = 0; j < order.size(); ++j) {
    SCOPED_TRACE(j);
    EXPECT_NEAR(changed.measure[j], sign * original.measure[order[j]], kSame);
    EXPECT_NEAR(changed.error[j], error * original.error[order[j]], kSame);
    EXPECT_NEAR(changed.infit[j], original.infit[order[j]], 2 * kSame);
    EXPECT_NEAR(changed.outfit[j], original.outfit[order[j]], 5 * kSame);
    if (sign > 0) {
      EXPECT_EQ(changed.status[j], original.status[order[j]]);
    }
  }
}

void ExpectSameSteps(const std::vector<double>& a, const std::vector<double>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t k = 0; k < a.size(); ++k) EXPECT_NEAR(a[k], b[k], kSame) << "step " << k + 1;
}

Permutation InOrder(std::size_t count) {
  Permutation order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  return order;
}

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

TEST_F(Metamorphic, ShuffledPersonsKeepTheirMeasures) {
  const Permutation order = Shuffled(data.size(), 1);
  Matrix shuffled;
  for (std::size_t n : order) shuffled.push_back(data[n]);
  const AllEstimates changed = Estimate(shuffled, kScale);
  ExpectSame(original.persons, changed.persons, order);
  ExpectSame(original.items, changed.items, InOrder(12));
  ExpectSameSteps(original.steps[0], changed.steps[0]);
}

TEST_F(Metamorphic, ShuffledItemsKeepTheirMeasures) {
  const Permutation order = Shuffled(12, 2);
  Matrix shuffled(data.size());
  for (std::size_t n = 0; n < data.size(); ++n) {
    for (std::size_t i : order) shuffled[n] += data[n][i];
  }
  const AllEstimates changed = Estimate(shuffled, kScale);
  ExpectSame(original.items, changed.items, order);
  ExpectSame(original.persons, changed.persons, InOrder(data.size()));
}

TEST_F(Metamorphic, ReversedScoringTurnsTheScale) {
  const AllEstimates changed = Estimate(data, std::string(kScale) + "\nNEWSCR=210");
  ExpectSame(original.persons, changed.persons, InOrder(data.size()), -1);
  ExpectSame(original.items, changed.items, InOrder(12), -1);
  // Step k of T becomes step T + 1 - k, and turns its sign.
  EXPECT_NEAR(changed.steps[0][0], -original.steps[0][1], kSame);
  EXPECT_NEAR(changed.steps[0][1], -original.steps[0][0], kSame);
  EXPECT_EQ(original.persons.status[150], Status::ExtremeHigh);
  EXPECT_EQ(changed.persons.status[150], Status::ExtremeLow);
  EXPECT_EQ(changed.persons.status[151], Status::ExtremeHigh);
  EXPECT_EQ(changed.persons.status[152], Status::NoResponses);
}

TEST_F(Metamorphic, EveryPersonTwiceHalvesTheItemsErrorVariance) {
  Matrix twice = data;
  twice.insert(twice.end(), data.begin(), data.end());
  const AllEstimates changed = Estimate(twice, kScale);
  ExpectSame(original.items, changed.items, InOrder(12), 1, std::sqrt(0.5));
  Permutation order = InOrder(data.size());
  order.insert(order.end(), order.begin(), order.end());
  ExpectSame(original.persons, changed.persons, order);
}

TEST_F(Metamorphic, ExtremeAndEmptyRowsTakeNoPartInOthersEstimates) {
  Matrix without(data.begin(), data.begin() + 150);
  const AllEstimates changed = Estimate(without, kScale);
  ExpectSame(original.items, changed.items, InOrder(12));
  ExpectSame(original.persons, changed.persons, InOrder(150));
}

TEST_F(Metamorphic, AnItemThatAllPassIsExtremeAndMovesNobody) {
  Matrix more = data;
  for (std::string& row : more) row += '2';
  more[150] = std::string(13, '2');
  more[152] = std::string(13, '9');
  more[151] = std::string(13, '0');  // extreme low once the new item is out: does not count
  const AllEstimates changed = Estimate(more, kScale);
  EXPECT_EQ(changed.items.status[12], Status::ExtremeLow);
  ExpectSame(original.persons, changed.persons, InOrder(data.size()));
  EXPECT_LT(changed.items.measure[12],
            *std::min_element(original.items.measure.begin(), original.items.measure.end()));
}

TEST_F(Metamorphic, UserUnitsAreALinearTransformation) {
  const AllEstimates changed = Estimate(data, std::string(kScale) + "\nUMEAN=50\nUSCALE=10");
  for (std::size_t n = 0; n < data.size(); ++n) {
    if (original.persons.status[n] == Status::NoResponses) continue;
    EXPECT_NEAR(changed.persons.measure[n], 50 + 10 * original.persons.measure[n], 10 * kSame);
    EXPECT_NEAR(changed.persons.error[n], 10 * original.persons.error[n], 10 * kSame);
  }
  // Centred on persons instead: both sides move by the persons' mean.
  const AllEstimates onPersons = Estimate(data, std::string(kScale) + "\nUPMEAN=0");
  double mean = 0;
  int active = 0;
  for (std::size_t n = 0; n < data.size(); ++n) {
    if (original.persons.status[n] != Status::Active) continue;
    mean += original.persons.measure[n];
    ++active;
  }
  mean /= active;
  for (std::size_t i = 0; i < 12; ++i) {
    EXPECT_NEAR(onPersons.items.measure[i], original.items.measure[i] - mean, 2 * kSame);
  }
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

// At joint maximum likelihood estimates each person's and item's expected score is the observed
// one; the expectations are worked out here by the textbook formula.
TEST(Balance, ExpectedScoresEqualObservedOnesOverSeveralScales) {
  const Matrix data = Simulate(200, 6, 2, 7);
  const std::string groups = "AABB0A";
  const std::vector<std::size_t> groupOf{0, 0, 1, 1, 2, 0};  // single items behind the letters
  const AllEstimates e = Estimate(data, "CODES=012\nGROUPS=" + groups);
  ASSERT_EQ(e.steps.size(), 3U);
  std::vector<double> itemResidual(6, 0.0);
  for (std::size_t n = 0; n < data.size(); ++n) {
    if (e.persons.status[n] != Status::Active) continue;
    double residual = 0;
    for (std::size_t i = 0; i < 6; ++i) {
      if (data[n][i] == ' ') continue;
      const double d = e.persons.measure[n] - e.items.measure[i];
      const std::vector<double>& f = e.steps[groupOf[i]];
      const double p1 = std::exp(d - f[0]), p2 = std::exp(2 * d - f[0] - f[1]);
      const double r = data[n][i] - '0' - (p1 + 2 * p2) / (1 + p1 + p2);
      residual += r;
      itemResidual[i] += r;
    }
    EXPECT_NEAR(residual, 0, 0.002) << "person " << n + 1;
  }
  for (double r : itemResidual) EXPECT_NEAR(r, 0, 0.02);
}

// Under TARGET=Y every observation weighs by its own variance: the weighted residuals of scores and
// of categories balance, by the textbook formula.
TEST(Balance, TargetedResidualsBalanceWeightedByVariance) {
  const Matrix data = Simulate(300, 8, 2, 11);
  const AllEstimates e = Estimate(data, "CODES=012\nTARGET=Y");
  ASSERT_EQ(e.steps.size(), 1U);
  const std::vector<double>& f = e.steps[0];
  std::vector<double> itemResidual(8, 0.0);
  double categoryResidual = 0;
  for (std::size_t n = 0; n < data.size(); ++n) {
    if (e.persons.status[n] != Status::Active) continue;
    double residual = 0, score = 0, maximum = 0;
    for (std::size_t i = 0; i < 8; ++i) {
      if (data[n][i] == ' ') continue;
      const double d = e.persons.measure[n] - e.items.measure[i];
      const double n1 = std::exp(d - f[0]), n2 = std::exp(2 * d - f[0] - f[1]);
      const double total = 1 + n1 + n2;
      const double expected = (n1 + 2 * n2) / total;
      const double variance = (n1 + 4 * n2) / total - expected * expected;
      const double r = (data[n][i] - '0' - expected) * variance;
      residual += r;
      score += (data[n][i] - '0') * variance;
      maximum += 2 * variance;
      itemResidual[i] += r;
      categoryResidual += ((data[n][i] == '2' ? 1 : 0) - n2 / total) * variance;
    }
    // A weighted score nearer to its end than a quarter of EXTRSC= is held there.
    const bool isHeld = std::min(score, maximum - score) < 0.25 * 0.3;
    EXPECT_NEAR(residual, 0, isHeld ? 0.25 * 0.3 : 0.002) << "person " << n + 1;
  }
  for (double r : itemResidual) EXPECT_NEAR(r, 0, 0.02);
  EXPECT_NEAR(categoryResidual, 0, 0.1);
}

}  // namespace
}  // namespace vardento::test
