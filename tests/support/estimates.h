// Runs the whole program on a matrix of one-character responses and hands back its estimates.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "support/whole_run.h"

namespace vardento::test {

// One row for each person, one character for each item; ' ' is missing.
using Matrix = std::vector<std::string>;

struct Estimates {
  std::vector<double> measure, error, infit, outfit;
  std::vector<int> status;
};

struct AllEstimates {
  Estimates persons, items;
  std::vector<std::vector<double>> steps;  // by group, from step 1
  int exit = -1;
};

// Iterated far enough for measures that are compared to a thousandth of a logit.
inline const std::vector<std::string> kTight{"LCONV=.00002", "RCONV=.0002"};
inline constexpr double kSame = 0.001;

inline std::string ControlText(const Matrix& data, const std::string& lines) {
  const std::size_t items = data.at(0).size();
  std::string text =
      "DATA=data.txt\nNAME1=1\nNAMLEN=6\nITEM1=8\nINUMB=Y\nNI=" + std::to_string(items) + "\n" +
      lines + "\n&END\n";
  return text;
}

inline std::string DataText(const Matrix& data) {
  std::string text;
  int number = 1000;
  for (const std::string& row : data) text += "P" + std::to_string(++number) + "  " + row + "\n";
  return text;
}

// `lines`: control lines, at least CODES=.
inline AllEstimates Estimate(const Matrix& data, const std::string& lines) {
  WholeRun whole;
  whole.directory.Write("control.txt", ControlText(data, lines));
  whole.directory.Write("data.txt", DataText(data));
  AllEstimates all;
  all.exit = whole.Execute(kTight);
  EXPECT_EQ(all.exit, kExitGood) << whole.directory.Read("report.txt");
  if (all.exit != kExitGood) return all;
  const RunArrays& a = whole.run.arrays;
  for (int n = 1; n <= whole.run.NPERS; ++n) {
    all.persons.measure.push_back(a.PersonMeasure[n]);
    all.persons.error.push_back(a.PersonError[n]);
    all.persons.infit.push_back(a.PersonInfit[n]);
    all.persons.outfit.push_back(a.PersonOutfit[n]);
    all.persons.status.push_back(a.PersonStatus[n]);
  }
  for (int i = 1; i <= whole.run.settings.NI; ++i) {
    all.items.measure.push_back(a.ItemMeasure[i]);
    all.items.error.push_back(a.ItemError[i]);
    all.items.infit.push_back(a.ItemInfit[i]);
    all.items.outfit.push_back(a.ItemOutfit[i]);
    all.items.status.push_back(a.ItemStatus[i]);
  }
  for (int g = 1; g <= whole.run.NGROUPS; ++g) {
    all.steps.emplace_back();
    for (int k = 1; k <= a.GroupTop[g]; ++k) {
      all.steps.back().push_back(a.StepCalibration[a.GroupStart[g] + k]);
    }
  }
  return all;
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
