// Settings that change the estimates themselves, each against estimates worked out here by the
// textbook on a small matrix.

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "support/estimates.h"
#include "support/joint_estimate.h"

namespace vardento::test {
namespace {

Matrix Dichotomies() {
  Matrix data = Simulate(60, 8, 1, 31);
  data.push_back("11111111");
  return data;
}
Matrix RatingScale() {
  Matrix data = Simulate(60, 8, 2, 32);
  data.push_back("22222222");
  data.push_back("00000000");
  return data;
}

constexpr std::size_t kItems = 8;

// measure = origin + unit x logits; errors by `error` times the logits.
struct Units {
  double persons = 1, items = 1, error = 1, origin = 0;
};

void ExpectEstimates(const AllEstimates& found, const JointEstimate& expected, const Units& units) {
  ASSERT_EQ(found.persons.measure.size(), expected.persons.size());
  for (std::size_t n = 0; n < expected.persons.size(); ++n) {
    SCOPED_TRACE("person " + std::to_string(n + 1));
    EXPECT_EQ(IsExtreme(static_cast<StatusByte>(found.persons.status[n])), expected.isExtreme[n]);
    const double unit = std::fabs(units.persons);
    // An extreme person has little information: the last thousandth of a score is more of a logit.
    const double near = expected.isExtreme[n] ? 3 * kSame : kSame;
    EXPECT_NEAR(found.persons.measure[n], units.origin + units.persons * expected.persons[n],
                near * unit);
    EXPECT_NEAR(found.persons.error[n], units.error * unit * expected.personErrors[n], near * unit);
  }
  for (std::size_t i = 0; i < kItems; ++i) {
    SCOPED_TRACE("item " + std::to_string(i + 1));
    const double unit = std::fabs(units.items);
    EXPECT_NEAR(found.items.measure[i], units.origin + units.items * expected.items[i],
                kSame * unit);
    EXPECT_NEAR(found.items.error[i], units.error * unit * expected.itemErrors[i], kSame * unit);
  }
  for (std::size_t k = 0; k < expected.steps.size(); ++k) {
    EXPECT_NEAR(found.steps[0][k], expected.steps[k], kSame) << "step " << k + 1;
  }
}

const JointModel kDichotomy;
const JointModel kRatingScale{.codes = "012", .scores = {0, 1, 2}};

// Half of everything, and errors larger by the root of 2.
TEST(Settings, PairedComparisons) {
  const Matrix data = RatingScale();
  ExpectEstimates(Estimate(data, "CODES=012\nPAIRED=Y"), {data, kRatingScale},
                  {.persons = .5, .items = .5, .error = std::sqrt(2.0)});
}

// By (L - 1) n / ((L - 1) n + 1), L the persons or items measured and n the steps of an item.
TEST(Settings, BiasOfShortTests) {
  const auto factor = [](long count, int steps) {
    const double freedom = static_cast<double>((count - 1) * steps);
    return freedom / (freedom + 1);
  };
  for (const int top : {1, 2}) {
    const Matrix data = top == 1 ? Dichotomies() : RatingScale();
    const JointEstimate expected(data, top == 1 ? kDichotomy : kRatingScale);
    const long active = std::count(expected.isExtreme.begin(), expected.isExtreme.end(), 0);
    ExpectEstimates(Estimate(data, std::string("CODES=") + (top == 1 ? "01" : "012") +
                                       "\nSTBIAS=Y\nUSCALE=-3\nUMEAN=10"),
                    expected,
                    {.persons = -3 * factor(active, top),
                     .items = -3 * factor(static_cast<long>(kItems), top),
                     .origin = 10});
  }
}

// Every residual weighs by the variance of its response.
TEST(Settings, TargetedResponses) {
  for (const int top : {1, 2}) {
    SCOPED_TRACE(top);
    const Matrix data = top == 1 ? Dichotomies() : RatingScale();
    JointModel model = top == 1 ? kDichotomy : kRatingScale;
    model.byVariance = true;
    ExpectEstimates(
        Estimate(data, std::string("CODES=") + (top == 1 ? "01" : "012") + "\nTARGET=Y"),
        {data, model}, {});
  }
}

// Code 2 is valid and never used. Without its place the codes count 0, 1, 2; with it 0, 1, 3, and
// the step between 1 and 3 is one.
TEST(Settings, UnusedCategories) {
  Matrix data = RatingScale();
  for (std::string& row : data) std::replace(row.begin(), row.end(), '2', '3');
  const JointModel packed{.codes = "013", .scores = {0, 1, 2}};
  ExpectEstimates(Estimate(data, "CODES=0123\nSTKEEP=N"), {data, packed}, {});

  const JointModel kept{.codes = "013", .scores = {0, 1, 3}};
  AllEstimates found = Estimate(data, "CODES=0123\nSTKEEP=Y");
  ASSERT_EQ(found.steps[0].size(), 3U);
  found.steps[0].erase(found.steps[0].begin() + 1);
  ExpectEstimates(found, {data, kept}, {});
}

// PIVOT= puts the difficulty of the items where the expected score is the pivot; what the steps
// move by is taken out of the items and persons alike.
TEST(Settings, Pivot) {
  const Matrix data = RatingScale();
  const AllEstimates centred = Estimate(data, "CODES=012");
  const AllEstimates pivoted = Estimate(data, "CODES=012\nPIVOT=*\n3 1.4\n*");
  const double up = std::exp(-pivoted.steps[0][0]);
  const double top = std::exp(-pivoted.steps[0][0] - pivoted.steps[0][1]);
  EXPECT_NEAR((up + 2 * top) / (1 + up + top), 1.4, 0.002);
  EXPECT_LT(pivoted.steps[0][0] + pivoted.steps[0][1], -0.5);
  const double shift = pivoted.steps[0][0] - centred.steps[0][0];
  EXPECT_NEAR(pivoted.steps[0][1] - centred.steps[0][1], shift, 5 * kSame);
  EXPECT_NEAR(pivoted.persons.measure[3] - pivoted.items.measure[0],
              centred.persons.measure[3] - centred.items.measure[0] + shift, 5 * kSame);
}

TEST(Settings, MeanOfThePersons) {
  const Matrix data = RatingScale();
  const JointEstimate expected(data, kRatingScale);
  double mean = 0;
  int count = 0;
  for (std::size_t n = 0; n < data.size(); ++n) {
    if (expected.isExtreme[n]) continue;
    mean += expected.persons[n];
    ++count;
  }
  mean /= count;
  ExpectEstimates(Estimate(data, "CODES=012\nUPMEAN=50\nUSCALE=10"), expected,
                  {.persons = 10, .items = 10, .origin = 50 - 10 * mean});
}

}  // namespace
}  // namespace vardento::test
