// Runs the whole program on a matrix of one-character responses and hands back its estimates.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "measure/entry_values.h"
#include "support/whole_run.h"

namespace vardento::test {

// One row for each person, one character for each item; ' ' is missing.
using Matrix = std::vector<std::string>;

// What is reported of one side, in the user's units.
struct Estimates {
  std::vector<double> measure, error, infit, outfit, count, score, correlation;
  std::vector<int> status;
  void Take(const EntryValues& values) {
    measure.push_back(values.measure);
    error.push_back(values.error);
    infit.push_back(values.infit);
    outfit.push_back(values.outfit);
    count.push_back(values.count);
    score.push_back(values.score);
    correlation.push_back(values.correlation);
    status.push_back(values.status);
  }
};

struct AllEstimates {
  Estimates persons, items;
  std::vector<std::vector<double>> steps;  // by group, from step 1
};

// Iterated far enough for measures that are compared to a thousandth of a logit.
inline const std::vector<std::string> kTight{"LCONV=.00002", "RCONV=.0002"};
inline constexpr double kSame = 0.001;

inline std::string ControlText(const Matrix& data, const std::string& lines) {
  return "DATA=data.txt\nNAME1=1\nNAMLEN=6\nITEM1=8\nINUMB=Y\nNI=" +
         std::to_string(data.at(0).size()) + "\n" + lines + "\n&END\n";
}

inline std::string DataText(const Matrix& data) {
  std::string text;
  int number = 1000;
  for (const std::string& row : data) text += "P" + std::to_string(++number) + "  " + row + "\n";
  return text;
}

// `lines`: control lines, at least CODES=.
inline void RunData(WholeRun& whole, const Matrix& data, const std::string& lines) {
  whole.directory.Write("control.txt", ControlText(data, lines));
  whole.directory.Write("data.txt", DataText(data));
  ASSERT_EQ(whole.Execute(kTight), kExitGood) << whole.directory.Read("report.txt");
}

inline AllEstimates EstimatesOf(WholeRun& whole) {
  AllEstimates all;
  const RunArrays& a = whole.run.arrays;
  for (int n = 1; n <= whole.run.NPERS; ++n) {
    all.persons.Take(ReadEntryValues(whole.run, Facet::Persons, n));
  }
  for (int i = 1; i <= whole.run.settings.NI; ++i) {
    all.items.Take(ReadEntryValues(whole.run, Facet::Items, i));
  }
  for (int g = 1; g <= whole.run.NGROUPS; ++g) {
    all.steps.emplace_back();
    for (int k = 1; k <= a.GroupTop[g]; ++k) {
      all.steps.back().push_back(a.StepCalibration[a.GroupStart[g] + k]);
    }
  }
  return all;
}

inline AllEstimates Estimate(const Matrix& data, const std::string& lines) {
  WholeRun whole;
  RunData(whole, data, lines);
  return testing::Test::HasFatalFailure() ? AllEstimates() : EstimatesOf(whole);
}

// Entry j of `changed` is entry order[j] of `original`; measures times `sign`, errors times
// `error`.
inline void ExpectSame(const Estimates& original, const Estimates& changed,
                       const std::vector<std::size_t>& order, double sign = 1, double error = 1) {
  for (std::size_t j = 0; j < order.size(); ++j) {
    SCOPED_TRACE(j);
    ASSERT_LT(j, changed.measure.size());
    EXPECT_NEAR(changed.measure[j], sign * original.measure[order[j]], kSame);
    EXPECT_NEAR(changed.error[j], error * original.error[order[j]], kSame);
    EXPECT_NEAR(changed.infit[j], original.infit[order[j]], 2 * kSame);
    EXPECT_NEAR(changed.outfit[j], original.outfit[order[j]], 5 * kSame);
    EXPECT_NEAR(changed.count[j], original.count[order[j]] / (error * error), kSame);
    if (sign < 0) continue;
    EXPECT_NEAR(changed.score[j], original.score[order[j]] / (error * error), kSame);
    EXPECT_EQ(changed.status[j], original.status[order[j]]);
  }
}

inline void ExpectSameSteps(const AllEstimates& a, const AllEstimates& b) {
  ASSERT_EQ(a.steps[0].size(), b.steps[0].size());
  for (std::size_t k = 0; k < a.steps[0].size(); ++k) {
    EXPECT_NEAR(a.steps[0][k], b.steps[0][k], kSame) << "step " << k + 1;
  }
}

// The entries `first` to `last` as they stand, counted from 0, the last not among them.
inline std::vector<std::size_t> Entries(std::size_t first, std::size_t last) {
  std::vector<std::size_t> order(last - first);
  std::iota(order.begin(), order.end(), first);
  return order;
}

// Responses of the rating scale model with steps at -1, +1 (top 2) or of a dichotomy (top 1), a
// tenth of them missing. The generator's numbers are the same on every machine; the distributions
// of the library are not, so they are not used.
inline Matrix Simulate(int persons, int items, int top, unsigned seed) {
  std::mt19937 generator(seed);
  const auto uniform = [&] { return static_cast<double>(generator()) / 4294967296.0; };
  Matrix data;
  for (int n = 0; n < persons; ++n) {
    const double ability = 4 * uniform() - 2;
    std::string row;
    for (int i = 0; i < items; ++i) {
      const double d = ability - (3.0 * i / (items - 1) - 1.5);
      const double p1 = top == 1 ? std::exp(d) : std::exp(d + 1);
      const double p2 = top == 1 ? 0 : std::exp(2 * d);
      const double place = uniform() * (1 + p1 + p2);
      const char code = place < 1 ? '0' : place < 1 + p1 ? '1' : '2';
      row += uniform() < 0.1 ? ' ' : code;
    }
    data.push_back(row);
  }
  return data;
}

}  // namespace vardento::test
