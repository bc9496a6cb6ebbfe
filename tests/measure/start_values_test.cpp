// The structure of the scales as start values find it, with steps that the user deletes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "measure/category_model.h"
#include "support/estimates.h"

namespace vardento::test {
namespace {

TEST(NumberCategories, LeavesOutDeletedSteps) {
  struct Case {
    std::vector<std::int32_t> status;  // by code; the step into code k stands at k
    std::vector<std::int32_t> categoryOf;
    std::vector<std::int32_t> codeOf;
    std::vector<float> steps;
  };
  const Case cases[] = {
      {{0, 0, -3, 2}, {0, 1, -3, 2}, {0, 1, 3}, {0, 1, 3}},
      {{-3, 0, 0, 0}, {-3, 0, 1, 2}, {1, 2, 3}, {1, 2, 3}},
      {{-3, -3, 0, -3}, {-3, -3, -4, -3}, {}, {}},  // a single category is no scale
      {{-3, -3, -3, -3}, {-3, -3, -3, -3}, {}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.status));
    const int size = static_cast<int>(c.status.size());
    std::vector<std::int32_t> status = c.status, category(4), code(4), start{1}, top{size - 1};
    std::vector<float> steps{0, 1, 2, 3};
    RunArrays arrays;
    arrays.StepStatus = {status.data(), size};
    arrays.CodeToCategory = {category.data(), size};
    arrays.CategoryToCode = {code.data(), size};
    arrays.StepCalibration = {steps.data(), size};
    arrays.GroupStart = {start.data(), 1};
    arrays.GroupTop = {top.data(), 1};
    NumberCategories(arrays);
    EXPECT_EQ(top[0], static_cast<int>(c.codeOf.size()) - 1);
    EXPECT_EQ(category, c.categoryOf);
    for (std::size_t k = 0; k < c.codeOf.size(); ++k) {
      EXPECT_EQ(code[k], c.codeOf[k]);
      EXPECT_EQ(steps[k], c.steps[k]);
    }
  }
}

// Codes whose step is deleted are missing, and those above them move down by one.
TEST(StartValues, DeletedStepsAreAsIfTheirResponsesWereMissing) {
  Matrix data = Simulate(150, 10, 2, 12);
  std::string digits = "024";  // of categories 0, 1, 2; a few responses in between
  int count = 0;
  for (std::string& row : data) {
    for (char& code : row) {
      if (code == ' ') continue;
      code = ++count % 9 == 0 ? '3' : digits[static_cast<std::size_t>(code - '0')];
    }
  }
  Matrix without = data;
  for (std::string& row : without) std::replace(row.begin(), row.end(), '3', ' ');
  const AllEstimates deleted = Estimate(data, "CODES=01234\nSTKEEP=N\nSDFILE=*\n1 1 1\n1 3 1\n*");
  const AllEstimates missing = Estimate(without, "CODES=01234\nSTKEEP=N");
  ASSERT_EQ(deleted.steps[0].size(), 2U);
  ExpectSame(missing.items, deleted.items, Entries(0, 10));
  ExpectSameSteps(missing, deleted);
}

// A weighted mean and what the spread around it draws log-odds apart by.
struct Spread {
  double n = 0, sum = 0, squares = 0;
  void Add(double value) {
    n += 1;
    sum += value;
    squares += value * value;
  }
  double Mean() const { return sum / n; }
  double Expansion() const { return std::sqrt(1 + (squares / n - Mean() * Mean()) / 2.65); }
};

// Iterated until nothing changes, the start values solve the equations of the normal approximation:
// every measure is the mean of those it met, plus the expanded log-odds of its score; every step
// likewise over the observations below and in its category.
TEST(StartValues, SolveTheEquationsOfTheNormalApproximation) {
  constexpr double kNear = 0.002;
  const Matrix data = Simulate(80, 7, 2, 31);
  WholeRun whole;
  RunData(whole, data, "CODES=012\nMPROX=0\nMUCON=-1");
  EXPECT_LT(whole.run.results.startValues.back().size(), 1000U) << "it ends by itself";
  const RunArrays& a = whole.run.arrays;
  std::vector<Spread> ofPerson(data.size()), ofItem(7), ofCategory(3);
  std::vector<double> personScore(data.size()), itemScore(7);
  for (std::size_t n = 0; n < data.size(); ++n) {
    const int person = static_cast<int>(n) + 1;
    for (std::size_t i = 0; i < 7; ++i) {
      if (data[n][i] == ' ') continue;
      const int x = data[n][i] - '0';
      const double b = a.PersonMeasure[person], d = a.ItemMeasure[static_cast<int>(i) + 1];
      ofPerson[n].Add(d);
      personScore[n] += x;
      if (a.PersonStatus[person] < 1) continue;
      ofItem[i].Add(b);
      itemScore[i] += x;
      ofCategory[static_cast<std::size_t>(x)].Add(b - d);
    }
  }
  for (std::size_t n = 0; n < data.size(); ++n) {
    const double missed = 2 * ofPerson[n].n - personScore[n];
    const double odds = std::log(std::max(personScore[n], .5) / std::max(missed, .5));
    EXPECT_NEAR(a.PersonMeasure[static_cast<int>(n) + 1],
                ofPerson[n].Mean() + ofPerson[n].Expansion() * odds, kNear)
        << "person " << n + 1;
  }
  std::vector<double> items;
  double origin = 0;
  for (std::size_t i = 0; i < 7; ++i) {
    const double odds = std::log((2 * ofItem[i].n - itemScore[i]) / itemScore[i]);
    items.push_back(ofItem[i].Mean() + ofItem[i].Expansion() * odds);
    origin += items.back() / 7;
  }
  for (std::size_t i = 0; i < 7; ++i) {
    EXPECT_NEAR(a.ItemMeasure[static_cast<int>(i) + 1], items[i] - origin, kNear) << i + 1;
  }
  std::vector<double> steps;
  for (std::size_t k = 1; k <= 2; ++k) {
    Spread both = ofCategory[k - 1];
    both.n += ofCategory[k].n;
    both.sum += ofCategory[k].sum;
    both.squares += ofCategory[k].squares;
    const double odds = std::log(ofCategory[k - 1].n / ofCategory[k].n);
    steps.push_back(both.Mean() + both.Expansion() * odds);
  }
  const int start = a.GroupStart[1];
  EXPECT_NEAR(a.StepCalibration[start + 2], (steps[1] - steps[0]) / 2, kNear);
  EXPECT_NEAR(a.StepCalibration[start + 1], (steps[0] - steps[1]) / 2, kNear);
}

}  // namespace
}  // namespace vardento::test
