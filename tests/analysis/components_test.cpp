// Components of residuals, and the correlations that they are taken of.
#include "analysis/components.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <eigen3/Eigen/Dense>
#include <string>
#include <vector>

#include "analysis/residual_correlations.h"
#include "analysis/residual_file.h"
#include "analysis/residual_pairs.h"
#include "support/csv.h"
#include "support/simulated_data.h"
#include "support/whole_run.h"

// LAPACK: eigenvalues and vectors of a symmetric matrix, which the vectors replace.
extern "C" void dsyev_(const char* job, const char* triangle, const int* n, double* matrix,
                       const int* leading, double* values, double* work, const int* space,
                       int* info);

namespace vardento::test {
namespace {

PairSums Sum(const std::vector<int>& a, const std::vector<int>& b, bool needsBoth) {
  PairSums sums;
  for (std::size_t k = 0; k < a.size(); ++k) {
    sums.Add(static_cast<std::int16_t>(a[k]), static_cast<std::int16_t>(b[k]), needsBoth);
  }
  return sums;
}

// By hand.
TEST(CorrelationOf, TakesAMissingPartnerAsNothing) {
  constexpr int kNone = kNoResidual;
  struct {
    const char* name;
    std::vector<int> a, b;
    bool needsBoth;
    double r;
  } const cases[] = {
      {"alike", {3, -7, 11}, {3, -7, 11}, false, 1},
      {"three times", {1, 2, 4}, {3, 6, 12}, false, 1},
      {"opposite", {32767, -32768 + 1, 5}, {-32767, 32767, -5}, false, -1},
      {"one constant", {1, 2, 4}, {5, 5, 5}, false, 0},
      {"one response", {1}, {2}, false, 0},
      {"the least that varies", {0, 1}, {1, 0}, false, -1},
      // Deviations -1.5, -.5, .5, 1.5 and -1.5, .5, -.5, 1.5: 4 / 5.
      {"complete", {1, 2, 3, 4}, {1, 3, 2, 4}, false, 0.8},
      // The last counts as 0: deviations of 1, -1, 0 with 1, 0 (none), -1: .5.
      {"a partner missing", {1, -1, 0}, {1, kNone, -1}, false, 0.5},
      {"both missing", {1, kNone, -1, 0}, {1, kNone, kNone, -1}, false, 0.5},
      {"both needed", {1, 2, 3, 4, 9, kNone}, {1, 3, 2, 4, kNone, 1}, true, 0.8},
  };
  for (const auto& c : cases) {
    EXPECT_NEAR(CorrelationOf(Sum(c.a, c.b, c.needsBoth)), c.r, 1e-14) << c.name;
  }
  EXPECT_EQ(CorrelationOf(Sum({3, -7, 11}, {3, -7, 11}, false)), 1.0);
}

// 400 persons on 12 items; the last 6 ask for another ability too. A fifth of the responses of some
// items is missing.
std::string TwoDimensions(const std::string& variables) {
  Simulation simulation(11);
  return SimulatedControl(400, 12, variables, [&](int) {
    const double ability = 1.2 * simulation.Normal(), other = 1.5 * simulation.Normal();
    std::string row;
    for (int i = 1; i <= 12; ++i) {
      const char c = simulation.Respond(ability + (i > 6 ? other : 0) - SpreadDifficulty(i, 12));
      row += i % 3 == 0 && simulation.Uniform() < 0.2 ? '.' : c;
    }
    return row;
  });
}

std::vector<double> ReadCorrelations(Run& run, Facet facet) {
  CorrelationStore& store = run.stores.CorrelationsOf(facet);
  const std::size_t n = store.entries.size();
  std::vector<double> all(n * (n - 1) / 2);
  for (std::size_t t = 0; t < all.size(); ++t) {
    EXPECT_EQ(store.file.Read(static_cast<int>(t + 1), &all[t]), kIoOk);
  }
  return all;
}

// What is taken of the run's memory already: less than any further byte needs.
std::size_t TakenMemory(Run& run) {
  std::size_t low = 0, high = std::size_t{1} << 40;
  while (low + 1 < high) {
    const std::size_t limit = (low + high) / 2;
    run.memory.SetLimit(limit);
    MemoryBlock block;
    (block.Allocate(run.memory, 1) ? high : low) = limit;
  }
  return low;
}

// Whatever the memory, to the last bit: the matrix, a row of it or nothing; correlations in memory
// or on disk.
TEST(Components, AreTheSameOnEveryRoad) {
  for (const char* kind : {"S", "O"}) {
    WholeRun whole;
    auto& run = whole.run;
    whole.directory.Write("control.txt", TwoDimensions(std::string("PRCOMP=") + kind));
    ASSERT_EQ(whole.Execute({"TABLES=0"}), 0);
    const std::size_t taken = TakenMemory(run);
    run.SetBatchMode(false);
    std::vector<double> persons, items;
    std::vector<Component> components;
    // What a request of the matrix (2 x 12 x 400), of a row and of the triangle is granted.
    struct {
      std::size_t room;
      int notices;
    } const roads[] = {{SIZE_MAX / 2, 0}, {9599, 1}, {799, 2}, {23, 2}};
    for (const auto& road : roads) {
      run.memory.SetLimit(taken + road.room);
      run.stores.ForgetResiduals();
      whole.console.lines.clear();
      ASSERT_TRUE(CorrelateResiduals(run, Facet::Persons));
      const std::vector<double> found = ReadCorrelations(run, Facet::Persons);
      if (persons.empty()) persons = found;
      EXPECT_EQ(found, persons) << kind << road.room;
      whole.console.lines.clear();
      const ResidualComponents extracted = FindComponents(run, Facet::Items);
      if (items.empty()) {
        items = ReadCorrelations(run, Facet::Items);
        components = extracted.components;
        ASSERT_GE(components.size(), 2U);
        // The two sets of items stand against each other once the measures are taken out.
        for (int i = 2; i <= 12; ++i) {
          const bool withFirst = components[0].loadings[i] * components[0].loadings[1] > 0;
          EXPECT_EQ(withFirst, kind[0] == 'O' || i <= 6) << kind << i;
        }
      }
      EXPECT_EQ(ReadCorrelations(run, Facet::Items), items) << kind << road.room;
      const auto notices = std::count_if(
          whole.console.lines.begin(), whole.console.lines.end(), [](const std::string& line) {
            return line.find("not available, using disk work file") != std::string::npos;
          });
      EXPECT_EQ(notices, road.notices) << road.room;
      if (road.room < 480) continue;  // no room for the vectors: told instead
      ASSERT_EQ(extracted.components.size(), components.size());
      for (std::size_t c = 0; c < components.size(); ++c) {
        EXPECT_EQ(extracted.components[c].eigenvalue, components[c].eigenvalue);
        EXPECT_TRUE(std::equal(components[c].loadings.begin(), components[c].loadings.end(),
                               extracted.components[c].loadings.begin()));
      }
    }
  }
}

// Standardised residuals as the observation file tells them: a column for each item, a place in it
// for each person, 0 where there is none.
using Columns = std::vector<std::vector<double>>;
struct Residuals {
  Columns z, present;
};

Residuals ReadResiduals(const std::string& path, std::size_t persons, std::size_t items) {
  const Columns none(items, std::vector<double>(persons, 0));
  Residuals residuals{none, none};
  for (const CsvRow& row : ReadCsv(path)) {
    const std::size_t n = std::stoul(row.at("PERSON")) - 1, i = std::stoul(row.at("ITEM")) - 1;
    residuals.z[i][n] = std::stod(row.at("ZSCORE"));
    residuals.present[i][n] = 1;
  }
  return residuals;
}

// Over the persons who have a residual on one of the two at least.
double Correlate(const Residuals& residuals, std::size_t i, std::size_t j) {
  double n = 0, x = 0, y = 0, xx = 0, yy = 0, xy = 0;
  for (int pass = 0; pass < 2; ++pass) {
    const double meanX = pass == 0 ? 0 : x / n, meanY = pass == 0 ? 0 : y / n;
    for (std::size_t k = 0; k < residuals.z[i].size(); ++k) {
      if (residuals.present[i][k] + residuals.present[j][k] == 0) continue;
      const double a = residuals.z[i][k] - meanX, b = residuals.z[j][k] - meanY;
      if (pass == 0) {
        ++n;
        x += a;
        y += b;
      } else {
        xx += a * a;
        yy += b * b;
        xy += a * b;
      }
    }
  }
  return xy / std::sqrt(xx * yy);
}

// The eigenvalues of the correlations, smallest first, and a vector of length 1 for each.
struct Decomposition {
  std::vector<double> eigenvalues;
  Columns vectors;
};

Decomposition Decompose(const Residuals& residuals) {
  const std::size_t size = residuals.z.size();
  std::vector<double> matrix, values(size), work(size * 8);
  for (std::size_t i = 0; i < size; ++i) {
    for (std::size_t j = 0; j < size; ++j) {
      matrix.push_back(i == j ? 1 : Correlate(residuals, i, j));
    }
  }
  const int n = static_cast<int>(size), space = n * 8;
  int info = -1;
  dsyev_("V", "U", &n, matrix.data(), &n, values.data(), work.data(), &space, &info);
  EXPECT_EQ(info, 0);
  Decomposition found{values, {}};
  for (auto at = matrix.begin(); at != matrix.end(); at += n)
    found.vectors.emplace_back(at, at + n);
  return found;
}

TEST(Components, AreThoseOfAnEigenDecomposition) {
  constexpr int kPersons = 500, kItems = 18;
  for (const double missing : {0.0, 0.15}) {
    Simulation simulation(3);
    WholeRun whole;
    whole.directory.Write(
        "control.txt", SimulatedControl(kPersons, kItems, "XFILE=x.csv\nCSV=Y", [&](int) {
          const double ability = simulation.Normal();
          const double others[] = {0, 2.2 * simulation.Normal(), 1.3 * simulation.Normal()};
          std::string row;
          for (int i = 1; i <= kItems; ++i) {
            const char c =
                simulation.Respond(ability + others[i % 3] - SpreadDifficulty(i, kItems));
            row += simulation.Uniform() < missing ? '.' : c;
          }
          return row;
        }));
    ASSERT_EQ(whole.Execute({"TABLES=0", "HLINES=Y"}), 0);
    // The title of the file stands above the names of its columns.
    std::string text = TempDirectory::ReadFile(whole.directory.NameOf("x.csv"));
    whole.directory.Write("named.csv", text.substr(text.find('\n') + 1));
    const Decomposition expected =
        Decompose(ReadResiduals(whole.directory.NameOf("named.csv"), kPersons, kItems));
    const ResidualComponents found = FindComponents(whole.run, Facet::Items);
    ASSERT_GE(found.components.size(), 2U);
    ASSERT_GT(expected.eigenvalues[kItems - 1] - expected.eigenvalues[kItems - 2], 0.5);
    for (std::size_t c = 0; c < 2; ++c) {
      const Component& component = found.components[c];
      const double eigenvalue = expected.eigenvalues[kItems - 1 - c];
      const std::vector<double>& vector = expected.vectors[kItems - 1 - c];
      EXPECT_NEAR(component.eigenvalue, eigenvalue, 0.01 * eigenvalue);
      const double sign = vector[1] * component.loadings[2] < 0 ? -1 : 1;
      for (int i = 1; i <= kItems; ++i) {
        EXPECT_NEAR(component.loadings[i],
                    sign * std::sqrt(eigenvalue) * vector[static_cast<std::size_t>(i - 1)], 0.02)
            << c << " " << i;
      }
    }
  }
}

// More persons than are in hand at a time, in memory and from the file.
TEST(CorrelateResiduals, GoesOnBehindTheFirstPiece) {
  Simulation simulation(8);
  WholeRun whole;
  auto& run = whole.run;
  whole.directory.Write("control.txt", SimulatedControl(4100, 5, "", [&](int) {
                          const double ability = simulation.Normal();
                          std::string row;
                          for (int i = 1; i <= 5; ++i) row += simulation.Respond(ability);
                          return row;
                        }));
  ASSERT_EQ(whole.Execute({"TABLES=0"}), 0);
  ASSERT_TRUE(CorrelateResiduals(run, Facet::Items));
  const std::vector<double> inMemory = ReadCorrelations(run, Facet::Items);
  run.memory.SetLimit(0);
  run.stores.ForgetResiduals();
  ASSERT_TRUE(CorrelateResiduals(run, Facet::Items));
  EXPECT_EQ(ReadCorrelations(run, Facet::Items), inMemory);
}

// Two items, of which everybody got one right: what one has too much the other has too little. From
// equal weights alone nothing would be found.
TEST(Components, AreFoundWhereResidualsAddUpToNothing) {
  Simulation simulation(5);
  WholeRun whole;
  whole.directory.Write("control.txt", SimulatedControl(40, 2, "", [&](int) {
                          return simulation.Uniform() < 0.6 ? "10" : "01";
                        }));
  ASSERT_EQ(whole.Execute({"TABLES=0"}), 0);
  const ResidualComponents found = FindComponents(whole.run, Facet::Items);
  ASSERT_EQ(found.components.size(), 1U) << "nothing is left for a second";
  EXPECT_NEAR(found.components[0].eigenvalue, 2, 1e-6);
  EXPECT_NEAR(found.components[0].loadings[1] * found.components[0].loadings[2], -1, 1e-6);
}

// Nothing unfinished is shown, and the next request begins anew.
TEST(Components, OfAStoppedRequestAreNone) {
  WholeRun whole;
  auto& run = whole.run;
  whole.directory.Write("control.txt", TwoDimensions(""));
  ASSERT_EQ(whole.Execute({"TABLES=0"}), 0);
  for (const bool correlated : {false, true}) {
    run.StopRequest = 1;
    EXPECT_EQ(FindComponents(run, Facet::Items).components.size(), 0U);
    EXPECT_EQ(run.stores.itemCorrelations.complete, correlated);
    run.StopRequest = 0;
    EXPECT_GE(FindComponents(run, Facet::Items).components.size(), 2U);
  }
}

// Whenever the user stops the sweeps: what is shown is what an unstopped request shows.
TEST(Components, AreWholeOrLeftOutWhenStopped) {
  WholeRun whole;
  auto& run = whole.run;
  whole.directory.Write("control.txt", TwoDimensions(""));
  ASSERT_EQ(whole.Execute({"TABLES=0"}), 0);
  const ResidualComponents full = FindComponents(run, Facet::Items);
  run.SetBatchMode(false);
  std::size_t found = 0;
  for (int stop = 1; found < full.components.size() && stop < 200; ++stop) {
    int pumps = 0;
    whole.console.onPump = [&](RecordingConsole& console) { console.interrupts = ++pumps >= stop; };
    const ResidualComponents stopped = FindComponents(run, Facet::Items);
    EXPECT_TRUE(stop > 1 || stopped.components.empty());
    EXPECT_GE(stopped.components.size(), found);
    found = stopped.components.size();
    for (std::size_t c = 0; c < found; ++c) {
      EXPECT_EQ(stopped.components[c].eigenvalue, full.components[c].eigenvalue) << stop;
    }
    run.StopRequest = 0;
    whole.console.interruptsSeen = 0;
    whole.console.interrupts = 0;
  }
  EXPECT_EQ(found, full.components.size());
}

// Of entries that are all alike each is named once; of pairs as large the one found last goes
// first. Items 1 to 3 are one, 4 turns them round.
TEST(LargestCorrelations, NameEntriesThatAreAlikeOnce) {
  const std::string patterns[] = {"0001", "1110"};
  std::string text = "NI=6\nITEM1=1\nNAME1=8\nNAMLEN=4\nCODES=01\nINUMB=Y\nPRCOMP=O\n&END\n";
  for (int n = 0; n < 16; ++n) {
    text += patterns[n % 2];
    text += n % 4 < 2 ? '0' : '1';
    text += n % 8 < 4 ? '1' : '0';
    text += " P\n";
  }
  WholeRun whole;
  whole.directory.Write("control.txt", text);
  ASSERT_EQ(whole.Execute({"TABLES=0"}), 0);
  ASSERT_TRUE(CorrelateResiduals(whole.run, Facet::Items));
  const auto& largest = LargestCorrelations(whole.run, Facet::Items);
  const int expected[][2] = {{3, 4}, {2, 4}, {1, 4}, {1, 3}, {1, 2}};  // 2 and 3: named already
  ASSERT_EQ(largest.size(), 10U);
  for (std::size_t k = 0; k < 5; ++k) {
    EXPECT_EQ(largest[k].first, expected[k][0]) << k;
    EXPECT_EQ(largest[k].second, expected[k][1]) << k;
    EXPECT_EQ(largest[k].r, k < 3 ? -1 : 1) << k;
  }
}

}  // namespace
}  // namespace vardento::test
