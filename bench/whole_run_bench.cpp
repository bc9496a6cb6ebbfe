// Whole batch runs on generated data: seconds by phase, and peak memory; and what of it the
// connectivity check takes.
//
//   cmake -S . -B build-bench -DVARDENTO_BENCH=ON && cmake --build build-bench
//   build-bench/bench/vardento_bench
//
// The data are drawn from the model with a fixed seed. Peak memory is that of the process, so each
// case runs in a process of its own.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "data/work_files.h"
#include "measure/connectivity.h"
#include "platform/silent_console.h"
#include "program/main_run.h"

namespace {

struct DataSet {
  const char* name;
  int persons, items, categories;
  double missing;  // share of responses left out at random
  // Each booklet has the last 5 items of the one before it. Reversed: the first person is of the
  // first booklet, then come those of the last, and so on down, so that every booklet waits for the
  // one behind it.
  int booklets = 1;
  bool reversed = false;
  // A list variable that is given a line for each person; its reading is part of the intake.
  const char* list = nullptr;
  const char* tables = "001000000100010";
  const char* files = "PFILE=p.txt\nIFILE=i.txt\n";
};
constexpr int kLink = 5;

constexpr DataSet kDataSets[] = {
    {"100000x50_complete", 100000, 50, 2, 0.0},
    {"20000x40_rating_scale", 20000, 40, 5, 0.0},
    // output_s against prox_s + ucon_s + fit_s: what all Tables cost beside the estimation, but for
    // 24, which has 200 million pairs of persons.
    {"20000x40_all_tables", 20000, 40, 5, 0.0, 1, false, nullptr,
     "1111111111111111111111101111111"},
    // output_s: a walk over 19,900 pairs of items by 20,000 persons, and 2 million pairs of persons
    // by 200 items.
    {"20000x200_item_components", 20000, 200, 2, 0.0, 1, false, nullptr, "00000000000000000000001",
     ""},
    {"2000x200_person_components", 2000, 200, 2, 0.0, 1, false, nullptr, "000000000000000000000001",
     ""},
    // Of 5 million observations: output_s against that of the first case, which has the same data.
    {"100000x50_observations", 100000, 50, 2, 0.0, 1, false, nullptr, "001000000100010",
     "PFILE=p.txt\nIFILE=i.txt\nXFILE=x.txt\nRFILE=r.txt\n"},
    {"50000x100_missing", 50000, 100, 2, 0.3},
    {"100000x50_deletions", 100000, 50, 2, 0.0, 1, false, "PDFILE"},
    {"100000x50_anchors", 100000, 50, 2, 0.0, 1, false, "PAFILE"},
    {"100000x50_weights", 100000, 50, 2, 0.0, 1, false, "PWEIGHT"},
    {"100000_in_20_booklets", 100000, 505, 2, 0.0, 20},
    {"100000_in_20_booklets_reversed", 100000, 505, 2, 0.0, 20, true},
};

// A small generator of its own: the same data on every machine.
class Random {
 public:
  double Uniform() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return static_cast<double>(state_ >> 11) * 0x1.0p-53;
  }
  double Normal() {  // sum of twelve uniforms
    double sum = -6;
    for (int i = 0; i < 12; ++i) sum += Uniform();
    return sum;
  }

 private:
  std::uint64_t state_ = 0x9E3779B97F4A7C15U;
};

int DrawCategory(Random& random, double d, int categories) {
  std::vector<double> p(static_cast<std::size_t>(categories));
  double sum = 0, exponent = 0;
  for (int k = 0; k < categories; ++k) {
    // Steps a logit apart, centred.
    if (k > 0) exponent += d - (k - categories / 2.0);
    sum += p[static_cast<std::size_t>(k)] = std::exp(exponent);
  }
  double u = random.Uniform() * sum;
  int k = 0;
  while (k < categories - 1 && u > p[static_cast<std::size_t>(k)]) {
    u -= p[static_cast<std::size_t>(k++)];
  }
  return k;
}

// Whether the person's booklet has the item; persons and items from 1.
bool Meets(const DataSet& set, int person, int item) {
  const int own = (set.items - kLink) / set.booklets;
  const int block = set.persons / set.booklets;
  int booklet = (person - 1) / block;
  if (set.reversed && person > 1) booklet = set.booklets - 1 - booklet;
  return set.booklets == 1 || (item > booklet * own && item <= (booklet + 1) * own + kLink);
}

// Every second person is deleted, all are anchored, or weights are 1 and 2 in turn.
void WriteList(const DataSet& set, const std::string& directory) {
  Random random;
  const bool deletes = std::string_view(set.list) == "PDFILE";
  const bool anchors = std::string_view(set.list) == "PAFILE";
  std::ofstream list(directory + "/list.txt");
  for (int n = 1; n <= set.persons; ++n) {
    list << (deletes ? n / 2 * 2 + 1 : n);
    if (!deletes) list << ' ' << (anchors ? 1.2 * random.Normal() : 1 + n % 2);
    list << '\n';
  }
}

void WriteDataSet(const DataSet& set, const std::string& directory) {
  Random random;
  std::vector<double> difficulty;
  for (int i = 0; i < set.items; ++i) difficulty.push_back(4.0 * (i + 0.5) / set.items - 2.0);
  std::ofstream data(directory + "/data.txt");
  std::string line;
  for (int n = 1; n <= set.persons; ++n) {
    const double measure = 1.2 * random.Normal();
    line = "P" + std::to_string(n);
    line.resize(10, ' ');
    for (int i = 1; i <= set.items; ++i) {
      if (!Meets(set, n, i)) {
        line += ' ';
        continue;
      }
      const double d = difficulty[static_cast<std::size_t>(i) - 1];
      const int x = DrawCategory(random, measure - d, set.categories);
      line += random.Uniform() < set.missing ? ' ' : static_cast<char>('0' + x);
    }
    data << line << '\n';
  }
  std::ofstream control(directory + "/control.txt");
  control << "TITLE=Benchmark\nDATA=data.txt\nNAME1=1\nNAMLEN=8\nITEM1=11\nNI=" << set.items
          << "\nCODES=" << std::string("01234").substr(0, static_cast<std::size_t>(set.categories))
          << "\nTABLES=" << set.tables << "\n"
          << set.files << "INUMB=Y\n";
  if (set.list != nullptr) {
    WriteList(set, directory);
    control << set.list << "=list.txt\n";
  }
  control << "&END\n";
}

struct Figures {
  double intake, startValues, joint, fit, output;
  double iterations, connectivity;
  double peakMegabytes, allowedMegabytes;
  int status;
};

// The connectivity check once more, on the data of a run that has ended.
double TimeConnectivity(vardento::Run& run) {
  vardento::AllocateStores(run);
  for (int n = 1; n <= run.NPERS; ++n) vardento::FillScoredRow(run, n);
  const auto start = std::chrono::steady_clock::now();
  vardento::ConnectivityScan scan(run);
  if (!scan.Allocate() || !scan.Scan() || scan.SubsetCount() != 1) return -1;
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// One whole run, in a child process.
Figures RunOnce(const DataSet& set, const std::string& directory) {
  int ends[2];
  if (pipe(ends) != 0) std::abort();
  const pid_t child = fork();
  if (child == 0) {
    vardento::SilentConsole console;
    vardento::Run run(console);
    Figures figures{};
    figures.status =
        vardento::MainRun(run, {directory + "/control.txt", directory + "/report.txt", "BATCH=Y"});
    using vardento::Phase;
    figures.intake = run.phases.Seconds(Phase::Intake);
    figures.startValues = run.phases.Seconds(Phase::StartValues);
    figures.joint = run.phases.Seconds(Phase::Joint);
    figures.fit = run.phases.Seconds(Phase::Fit);
    figures.output = run.phases.Seconds(Phase::Output);
    figures.iterations = static_cast<int>(run.results.iterations.size());
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    figures.peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024;
    figures.allowedMegabytes =
        (1.5 * set.persons * set.items + 200.0 * set.persons) / (1024 * 1024) + 50;
    if (figures.status == 0) figures.connectivity = TimeConnectivity(run);
    const auto written = write(ends[1], &figures, sizeof figures);
    _exit(written == sizeof figures ? 0 : 1);
  }
  Figures figures{};
  if (read(ends[0], &figures, sizeof figures) != sizeof figures) figures.status = -1;
  close(ends[0]);
  close(ends[1]);
  waitpid(child, nullptr, 0);
  return figures;
}

void RunDataSet(benchmark::State& state, const DataSet& set) {
  const auto directory =
      std::filesystem::temp_directory_path() / ("vardento-bench-" + std::to_string(getpid()));
  std::filesystem::create_directories(directory);
  WriteDataSet(set, directory.string());
  Figures last{};
  for (auto _ : state) {
    last = RunOnce(set, directory.string());
    if (last.status != 0) state.SkipWithError("the run failed");
  }
  std::filesystem::remove_all(directory);
  state.counters["intake_s"] = last.intake;
  state.counters["prox_s"] = last.startValues;
  state.counters["ucon_s"] = last.joint;
  state.counters["ucon_iterations"] = last.iterations;
  state.counters["ucon_s_per_iteration"] = last.joint / last.iterations;
  state.counters["fit_s"] = last.fit;
  state.counters["output_s"] = last.output;
  state.counters["connectivity_s"] = last.connectivity;  // within prox_s
  state.counters["peak_MB"] = last.peakMegabytes;
  state.counters["allowed_MB"] = last.allowedMegabytes;
}

}  // namespace

int main(int argc, char** argv) {
  for (const DataSet& set : kDataSets) {
    benchmark::RegisterBenchmark(set.name,
                                 [&set](benchmark::State& state) { RunDataSet(state, set); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->Iterations(1)
        ->Repetitions(5);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
