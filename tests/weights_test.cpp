// PWEIGHT= and IWEIGHT=: a weight stands for entries, so the same data written out as entries must
// give the same estimates.

#include <gtest/gtest.h>

#include "support/estimates.h"

namespace vardento::test {
namespace {

constexpr char kScale[] = "CODES=012\n";

class Weights : public testing::TestWithParam<const char*> {
 protected:
  std::string Lines(const std::string& list = "") const {
    return kScale + std::string(GetParam()) + "\n" + list;
  }
  const Matrix data = Simulate(150, 12, 2, 31);
};

TEST_P(Weights, PersonOfWeightTwoIsThatPersonTwice) {
  Matrix twice = data;
  twice.insert(twice.end(), {data[4], data[5], data[99]});
  const AllEstimates weighted = Estimate(data, Lines("PWEIGHT=*\n5-6 2\n100 2.0\n*"));
  const AllEstimates entered = Estimate(twice, Lines());
  ExpectSame(entered.items, weighted.items, Entries(0, 12));
  ExpectSame(entered.persons, weighted.persons, Entries(0, data.size()));
  ExpectSameSteps(weighted, entered);
}

TEST_P(Weights, ItemOfWeightTwoIsThatItemTwice) {
  Matrix twice = data;
  for (std::string& row : twice) row += row[3];
  const std::string centred = "UPMEAN=0\n";  // the mean of the items counts item 4 once or twice
  const AllEstimates weighted = Estimate(data, Lines(centred + "IWEIGHT=*\n4 2\n*"));
  const AllEstimates entered = Estimate(twice, Lines(centred));
  ExpectSame(entered.items, weighted.items, Entries(0, 12));
  ExpectSame(entered.persons, weighted.persons, Entries(0, data.size()));
}

// Entry `j` is measured by the estimates of the others, nearly as it was among them.
void ExpectReported(const Estimates& among, const Estimates& apart, std::size_t j) {
  EXPECT_EQ(apart.status[j], Status::Active);
  EXPECT_NEAR(apart.measure[j], among.measure[j], 0.2);
  EXPECT_EQ(apart.count[j], among.count[j]);
  EXPECT_GT(apart.infit[j], 0.1);
}

TEST_P(Weights, WeightZeroMovesNobodyAndIsReported) {
  const std::string centred = "UPMEAN=0\n";
  const AllEstimates all = Estimate(data, Lines(centred));
  const Matrix fewer(data.begin(), data.end() - 2);
  const AllEstimates without = Estimate(fewer, Lines(centred));
  const AllEstimates weighted = Estimate(data, Lines(centred + "PWEIGHT=*\n150-149 0\n*"));
  ExpectSame(without.items, weighted.items, Entries(0, 12));
  ExpectSame(without.persons, weighted.persons, Entries(0, fewer.size()));
  for (const std::size_t n : {148U, 149U}) ExpectReported(all.persons, weighted.persons, n);

  Matrix narrow = data;
  for (std::string& row : narrow) row.pop_back();
  const AllEstimates items = Estimate(data, Lines(centred + "IWEIGHT=*\n12 0\n*"));
  const AllEstimates eleven = Estimate(narrow, Lines(centred));
  ExpectSame(eleven.items, items.items, Entries(0, 11));
  ExpectSame(eleven.persons, items.persons, Entries(0, data.size()));
  ExpectReported(all.items, items.items, 11);
}

TEST_P(Weights, HalfWeightsHalveCountsAndInformation) {
  const AllEstimates whole = Estimate(data, Lines());
  const AllEstimates half = Estimate(data, Lines("PWEIGHT=*\n1-999 .5\n*"));
  ExpectSame(whole.items, half.items, Entries(0, 12), 1, std::sqrt(2.0));
  ExpectSameSteps(whole, half);
}

INSTANTIATE_TEST_SUITE_P(Options, Weights,
                         testing::Values("MODELS=R", "MODELS=S", "MODELS=F", "TARGET=Y", "PTBIS=Y",
                                         "LOCAL=Y", "NORMAL=Y\nSTBIAS=N"),
                         [](const auto& parameter) {
                           std::string name(parameter.param);
                           std::erase_if(name, [](char c) { return std::isalpha(c) == 0; });
                           return name;
                         });

}  // namespace
}  // namespace vardento::test
