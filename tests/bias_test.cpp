// Bias by class on whole runs: simulated bias is found, and data turned round turn it.

#include <gtest/gtest.h>

#include "analysis/bias_sizes.h"
#include "support/estimates.h"

namespace vardento::test {
namespace {

constexpr int kItems = 20;
constexpr int kBiased = 8;

// Classes A and B of 500 persons, alike but for item 8, which is a logit harder for B.
std::string SimulateBias(unsigned seed) {
  std::mt19937 generator(seed);
  const auto uniform = [&] { return static_cast<double>(generator()) / 4294967296.0; };
  std::string data;
  for (int n = 0; n < 1000; ++n) {
    const double ability = 4 * uniform() - 2;
    data += n % 2 == 0 ? "A " : "B ";
    for (int i = 1; i <= kItems; ++i) {
      const double difficulty = 3.0 * (i - 1) / (kItems - 1) - 1.5;
      const double d = ability - difficulty - (n % 2 == 1 && i == kBiased ? 1 : 0);
      data += uniform() < 1 / (1 + std::exp(-d)) ? '1' : '0';
    }
    data += '\n';
  }
  return data;
}

void RunBias(WholeRun& whole, unsigned seed, const std::string& lines) {
  whole.directory.Write("data.txt", SimulateBias(seed));
  whole.directory.Write(
      "control.txt",
      "DATA=data.txt\nNAME1=1\nNAMLEN=1\nITEM1=3\nNI=20\nINUMB=Y\nCODES=01\n" + lines + "&END\n");
  ASSERT_EQ(whole.Execute(kTight), kExitGood);
}

BiasSizes EstimateBias(vardento::Run& run, Facet source, const std::string& field) {
  const BiasClasses classes =
      FindBiasClasses(run, source, ParseFieldSpecification(run, "DIF", field));
  BiasSizes sizes;
  EXPECT_TRUE(sizes.Estimate(run, classes));
  return sizes;
}

double DifficultyWithin(unsigned seed, const std::string& select) {
  WholeRun whole;
  RunBias(whole, seed, select);
  return EstimatesOf(whole).items.measure.at(kBiased - 1);
}

TEST(Bias, SimulatedBiasIsFound) {
  constexpr unsigned kSeed = 20;
  WholeRun whole;
  RunBias(whole, kSeed, "");
  const BiasSizes sizes = EstimateBias(whole.run, Facet::Persons, "$S1W1");
  for (int i = 1; i <= kItems; ++i) {
    const BiasContrast contrast =
        ContrastOfBias(whole.run.settings, sizes.At(2, i), sizes.At(1, i));
    if (i != kBiased) {
      EXPECT_LT(std::fabs(contrast.t), 4) << "item " << i;
      continue;
    }
    EXPECT_NEAR(contrast.contrast, 1, 2 * contrast.error);
    const double apart =
        DifficultyWithin(kSeed, "PSELECT=B\n") - DifficultyWithin(kSeed, "PSELECT=A\n");
    EXPECT_NEAR(contrast.contrast, apart, 0.1);
  }
}

BiasState Turned(BiasState state) {
  if (state == BiasState::Minimum) return BiasState::Maximum;
  return state == BiasState::Maximum ? BiasState::Minimum : state;
}

void ExpectTurned(const BiasSizes& a, const BiasSizes& b) {
  ASSERT_EQ(a.Classes(), b.Classes());
  for (int cls = 1; cls <= a.Classes(); ++cls) {
    for (int target = 1; target <= 12; ++target) {
      SCOPED_TRACE(target);
      EXPECT_EQ(a.At(cls, target).state, Turned(b.At(cls, target).state));
      EXPECT_NEAR(a.At(cls, target).size, -b.At(cls, target).size, 0.02);
    }
  }
}

// Scored the other way round a scale is the same with its signs turned, and steps that were taken
// from below are taken from above.
TEST(Bias, ReversedScoringTurnsTheSizes) {
  const Matrix data = Simulate(150, 12, 2, 4711);
  for (const auto& [model, mirrored] : {std::pair("R", "R"), std::pair("S", "F")}) {
    WholeRun there, back;
    RunData(there, data, std::string("CODES=012\nMODELS=") + model);
    RunData(back, data, std::string("CODES=012\nNEWSCR=210\nMODELS=") + mirrored);
    for (const auto& [source, field] :
         {std::pair(Facet::Persons, "$S4W1"), std::pair(Facet::Items, "$S5W1")}) {
      SCOPED_TRACE(std::string(model) + field);
      ExpectTurned(EstimateBias(there.run, source, field), EstimateBias(back.run, source, field));
    }
  }
}

}  // namespace
}  // namespace vardento::test
