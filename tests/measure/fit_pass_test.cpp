// What the fit pass leaves for every category, against sums taken straight from the definitions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "support/whole_run.h"

namespace vardento::test {
namespace {

constexpr int kTop = 3;
constexpr int kItems = 6;
// The fifth person is extreme, the seventh has no responses; a dot is a missing response, which
// counts for the others only.
const std::vector<std::string> kRows = {"012131", "1.2023", "321.10", "230312", "33.333",
                                        "02110.", "......", "113202", "2031.1", "310021"};

// A run with further control lines.
void Execute(WholeRun& whole, const std::string& lines) {
  std::string text =
      "TITLE=T\nNI=6\nITEM1=1\nNAME1=7\nNAMLEN=1\nCODES=0123\nINUMB=Y\n"
      "LCONV=.0001\nRCONV=.001\n" +
      lines + "\n&END\n";
  for (const std::string& row : kRows) text += row + "\n";
  whole.directory.Write("control.txt", text);
  ASSERT_EQ(whole.Execute({"TABLES=0"}), 0);
}

class FitOfCategories : public testing::Test {
 protected:
  void SetUp() override { Execute(data, ""); }
  // Probabilities of the categories at d: exp(k d - F(1) - ... - F(k)), scaled to a sum of 1.
  std::vector<double> At(double d) const {
    std::vector<double> p{1};
    double sum = 1;
    for (int k = 1; k <= kTop; ++k) {
      p.push_back(p.back() * std::exp(d - data.run.arrays.StepCalibration[Place(k)]));
      sum += p.back();
    }
    for (double& value : p) value /= sum;
    return p;
  }
  static double Mean(const std::vector<double>& p) {
    double mean = 0;
    for (int k = 1; k <= kTop; ++k) mean += k * p[static_cast<std::size_t>(k)];
    return mean;
  }
  int Place(int k) const { return data.run.arrays.GroupStart[1] + k; }

  WholeRun data;
};

TEST_F(FitOfCategories, IsTheSumOverItsObservations) {
  const RunArrays& a = data.run.arrays;
  struct Category {
    double n = 0, expected = 0, y = 0, variance = 0, z = 0, zVariance = 0, d = 0, expectedD = 0,
           information = 0;
    int hits = 0, matches = 0;
  };
  std::vector<Category> all(kTop + 1);
  double missing = 0, missingD = 0;
  for (std::size_t n = 0; n < kRows.size(); ++n) {
    const int person = static_cast<int>(n) + 1;
    if (a.PersonStatus[person] < 1) continue;
    for (int i = 1; i <= kItems; ++i) {
      const double d = static_cast<double>(a.PersonMeasure[person]) - a.ItemMeasure[i];
      const char response = kRows[n][static_cast<std::size_t>(i) - 1];
      if (response == '.') {
        missing += 1;
        missingD += d;
        continue;
      }
      const std::vector<double> p = At(d);
      const double mean = Mean(p);
      double v = 0, below = 0;
      for (int k = 0; k <= kTop; ++k) v += (k - mean) * (k - mean) * p[static_cast<std::size_t>(k)];
      for (int k = 0; k <= kTop; ++k) {
        const double share = (k - mean) * (k - mean) * p[static_cast<std::size_t>(k)];
        Category& c = all[static_cast<std::size_t>(k)];
        c.expected += p[static_cast<std::size_t>(k)];
        c.expectedD += d * p[static_cast<std::size_t>(k)];
        c.variance += share;
        c.zVariance += share / v;
        if (k > 0) c.information += below * (1 - below);
        below += p[static_cast<std::size_t>(k)];
      }
      const int x = response - '0';
      Category& c = all[static_cast<std::size_t>(x)];
      c.n += 1;
      c.d += d;
      c.y += (x - mean) * (x - mean);
      c.z += (x - mean) * (x - mean) / v;
      const int nearest = std::clamp(static_cast<int>(std::lround(mean)), 0, kTop);
      ++all[static_cast<std::size_t>(nearest)].hits;
      if (nearest == x) ++c.matches;
    }
  }
  for (int k = 0; k <= kTop; ++k) {
    SCOPED_TRACE(k);
    const Category& c = all[static_cast<std::size_t>(k)];
    const int p = Place(k);
    EXPECT_NEAR(a.CategoryExpectedCount[p], c.n - c.expected, 1e-4);
    EXPECT_NEAR(a.CategoryObservedY[p], c.y / c.n / (c.variance / c.expected), 1e-4);
    EXPECT_NEAR(a.CategoryObservedZ[p], c.z / c.n / (c.zVariance / c.expected), 1e-4);
    EXPECT_NEAR(a.CategoryObservedMeasure[p], c.d / c.n, 1e-4);
    EXPECT_NEAR(a.CategoryExpectedMeasure[p], c.expectedD / c.n, 1e-4);
    EXPECT_NEAR(a.CategoryInformation[p], c.information, 1e-4);
    EXPECT_EQ(a.CategoryExpectedHits[p], c.hits);
    EXPECT_EQ(a.CategoryMatches[p], c.matches);
  }
  EXPECT_EQ(a.GroupMissingCount[1], missing);
  EXPECT_NEAR(a.GroupMissingMeasure[1], missingD / missing, 1e-4);
  EXPECT_EQ(data.run.results.PersonsReported, 9);
  EXPECT_EQ(data.run.results.ItemsReported, kItems);
}

// Totals over all observations of t, the residual from what is expected at the mean measures, in
// standard deviations of the response; and who has the most unexpected responses.
TEST_F(FitOfCategories, TotalsAndWorstEntriesAreThoseOfTheObservations) {
  const RunArrays& a = data.run.arrays;
  double meanB = 0, meanD = 0, persons = 0;
  for (int n = 1; n <= static_cast<int>(kRows.size()); ++n) {
    if (a.PersonStatus[n] < 1) continue;
    meanB += a.PersonMeasure[n];
    persons += 1;
  }
  for (int i = 1; i <= kItems; ++i) meanD += a.ItemMeasure[i];
  const double base = Mean(At(meanB / persons - meanD / kItems));
  double observations = 0, t = 0, tt = 0, zz = 0, sumZ = 0;
  std::map<int, float> worstPersons, worstItems;
  for (std::size_t n = 0; n < kRows.size(); ++n) {
    const int person = static_cast<int>(n) + 1;
    if (a.PersonStatus[person] < 1) continue;
    for (int i = 1; i <= kItems; ++i) {
      const char response = kRows[n][static_cast<std::size_t>(i) - 1];
      if (response == '.') continue;
      const auto p = At(static_cast<double>(a.PersonMeasure[person]) - a.ItemMeasure[i]);
      double v = -Mean(p) * Mean(p);
      for (int k = 1; k <= kTop; ++k) v += k * k * p[static_cast<std::size_t>(k)];
      const double z = (response - '0' - Mean(p)) / std::sqrt(v);
      const double scaled = (response - '0' - base) / std::sqrt(v);
      observations += 1;
      t += scaled;
      tt += scaled * scaled;
      zz += z * z;
      sumZ += z;
      if (std::fabs(z) < 2) continue;
      float& ofPerson = worstPersons[person];
      ofPerson = std::max(ofPerson, static_cast<float>(std::fabs(z)));
      worstItems[i] = std::max(worstItems[i], static_cast<float>(std::fabs(z)));
    }
  }
  const FitOutcome& fit = data.run.results.fit;
  EXPECT_NEAR(fit.residualVariance, zz, 1e-3);
  EXPECT_NEAR(fit.personVariance, tt - t * t / observations - zz, 1e-2);
  EXPECT_NEAR(fit.itemVariance, fit.personVariance, 1e-6);
  EXPECT_NEAR(fit.residualMean, sumZ / observations, 1e-4);
  const auto entries = [](const std::vector<WorstEntry>& list) {
    std::map<int, float> found;
    for (const WorstEntry& entry : list) found[entry.number] = entry.z;
    return found;
  };
  ASSERT_FALSE(worstPersons.empty());
  for (const auto& [number, z] : entries(fit.worstPersons)) {
    EXPECT_NEAR(z, worstPersons[number], 1e-3) << "person " << number;
  }
  EXPECT_EQ(entries(fit.worstPersons).size(), worstPersons.size());
  EXPECT_EQ(entries(fit.worstItems).size(), worstItems.size());
}

TEST_F(FitOfCategories, LandmarksLieWhereTheModelPutsThem) {
  const RunArrays& a = data.run.arrays;
  for (int k = 0; k <= kTop; ++k) {
    SCOPED_TRACE(k);
    const double score = k == 0 ? 0.25 : k == kTop ? kTop - 0.25 : k;
    EXPECT_NEAR(Mean(At(a.CategoryMeasurePoint[Place(k)])), score, 0.01);
    if (k == 0) continue;
    EXPECT_NEAR(Mean(At(a.CategoryHalfPoint[Place(k)])), k - 0.5, 0.01);
    double above = 0;
    const std::vector<double> p = At(a.CategoryThurstone[Place(k)]);
    for (int j = k; j <= kTop; ++j) above += p[static_cast<std::size_t>(j)];
    EXPECT_NEAR(above, 0.5, 0.0002);
  }
}

// LOCAL=Y puts everybody's standardised fit on one scale, whether it counts in finding it or not.
TEST(FitOfWeights, PersonOfNoWeightIsRescaledWithTheOthers) {
  const std::string weights = "PWEIGHT=*\n3 0\n10 0\n*";
  WholeRun plain, local;
  Execute(plain, weights);
  Execute(local, "LOCAL=Y\n" + weights);
  const Array1<float> z = plain.run.arrays.PersonOutfitZ;
  const double factor = local.run.arrays.PersonOutfitZ[2] / z[2];
  EXPECT_GT(std::fabs(factor - 1), 0.1);
  for (const int n : {1, 3, 4, 10}) {
    EXPECT_NEAR(local.run.arrays.PersonOutfitZ[n], factor * z[n], 0.04) << n;
  }
}

TEST(FitOfWeights, HugeWeightsStopAtTheLargestCount) {
  WholeRun whole;
  Execute(whole, "PWEIGHT=*\n1-10 1000000000\n*");
  std::int64_t hits = 0;
  for (int k = 0; k <= kTop; ++k) {
    const int p = whole.run.arrays.GroupStart[1] + k;
    EXPECT_GE(whole.run.arrays.CategoryMatches[p], 0);
    EXPECT_LE(whole.run.arrays.CategoryMatches[p], whole.run.arrays.CategoryExpectedHits[p]);
    hits = std::max<std::int64_t>(hits, whole.run.arrays.CategoryExpectedHits[p]);
  }
  EXPECT_EQ(hits, 2147483647);
}

}  // namespace
}  // namespace vardento::test
