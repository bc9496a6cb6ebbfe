// Real data against the estimates of other programs: what the program says of a person, an item or
// a step must not depend on who computed it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "data/work_files.h"
#include "support/csv.h"
#include "support/whole_run.h"

namespace vardento::test {
namespace {

// The reference is converged to 1e-6 score points; LCONV= below leaves us within a few thousandths.
constexpr double kMeasureTolerance = 0.005;
constexpr double kMeanSquareTolerance = 0.01;
constexpr double kLargestMeanSquare = 9.9;  // the program reports no larger one
constexpr double kErrorTolerance = 0.005;

struct Case {
  const char* name;       // of the reference
  const char* directory;  // of Control File and data, below the project
  std::vector<std::string> words;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class Reference : public testing::TestWithParam<Case> {};

std::string ReferenceFile(const std::string& name, const char* part) {
  return VARDENTO_SOURCE_DIR "/tests/data_reference/" + name + "." + part + ".csv";
}

double Number(const CsvRow& row, const char* column) { return std::stod(row.at(column)); }

// One person or item of both programs side by side.
struct Entry {
  float measure, error, infit, outfit;
  StatusByte status;
};

void Compare(const std::vector<CsvRow>& reference, const char* nameColumn,
             const char* measureColumn, const std::function<Entry(int)>& entryOf) {
  for (std::size_t i = 0; i < reference.size(); ++i) {
    const CsvRow& row = reference[i];
    const Entry entry = entryOf(static_cast<int>(i) + 1);
    SCOPED_TRACE(row.at(nameColumn));
    const std::string& status = row.at("status");
    if (status != "ok") {
      EXPECT_EQ(entry.status, status == "extreme_max"   ? Status::ExtremeHigh
                              : status == "extreme_min" ? Status::ExtremeLow
                                                        : Status::NoResponses);
      continue;
    }
    EXPECT_EQ(entry.status, Status::Active);
    EXPECT_NEAR(entry.measure, Number(row, measureColumn), kMeasureTolerance);
    EXPECT_NEAR(entry.error, Number(row, "se"), kErrorTolerance);
    EXPECT_NEAR(entry.infit, std::min(Number(row, "infit_ms"), kLargestMeanSquare),
                kMeanSquareTolerance);
    EXPECT_NEAR(entry.outfit, std::min(Number(row, "outfit_ms"), kLargestMeanSquare),
                kMeanSquareTolerance);
  }
}

void CompareSteps(const Run& run, const std::vector<CsvRow>& reference) {
  int group = 0;
  for (const CsvRow& row : reference) {
    const int category = static_cast<int>(Number(row, "category"));
    if (category == 0) {
      ++group;  // the reference lists the groups in order, each from category 0
      continue;
    }
    const int position = run.arrays.GroupStart[group] + category;
    EXPECT_NEAR(run.arrays.StepCalibration[position], Number(row, "threshold"), kMeasureTolerance)
        << row.at("item") << ", step into category " << category;
    EXPECT_EQ(run.arrays.CategoryCount[position], Number(row, "count"));
  }
  EXPECT_EQ(group, run.NGROUPS);
}

TEST_P(Reference, MeasuresStepsAndFitAgree) {
  const Case& c = GetParam();
  WholeRun whole;
  const std::string source = VARDENTO_SOURCE_DIR "/" + std::string(c.directory);
  std::filesystem::copy(source, whole.directory.Path(), std::filesystem::copy_options::recursive);
  std::vector<std::string> words{"LCONV=.00005", "RCONV=.0005", "UMEAN=0", "USCALE=1"};
  words.insert(words.end(), c.words.begin(), c.words.end());
  ASSERT_EQ(whole.Execute(words), kExitGood) << whole.directory.Read("report.txt");

  const RunArrays& a = whole.run.arrays;
  const std::vector<CsvRow> items = ReadCsv(ReferenceFile(c.name, "items"));
  const std::vector<CsvRow> persons = ReadCsv(ReferenceFile(c.name, "persons"));
  ASSERT_EQ(items.size(), static_cast<std::size_t>(whole.run.settings.NI));
  ASSERT_EQ(persons.size(), static_cast<std::size_t>(whole.run.NPERS));
  Compare(items, "item", "difficulty", [&](int i) {
    return Entry{a.ItemMeasure[i], static_cast<float>(a.ItemError[i]), a.ItemInfit[i],
                 a.ItemOutfit[i], a.ItemStatus[i]};
  });
  Compare(persons, "person", "measure", [&](int n) {
    const double error = ReadPersonWork(whole.run, n).error;
    return Entry{a.PersonMeasure[n], static_cast<float>(error), a.PersonInfit[n], a.PersonOutfit[n],
                 a.PersonStatus[n]};
  });
  const std::string steps = ReferenceFile(c.name, "steps");
  if (std::filesystem::exists(steps)) CompareSteps(whole.run, ReadCsv(steps));
}

INSTANTIATE_TEST_SUITE_P(
    RealData, Reference,
    testing::Values(Case{"mathexam.DICH", "examples/math-exam", {}},
                    Case{"verbagg3.RSM", "examples/verbal-aggression", {}},
                    Case{"verbagg2.DICH", "examples/verbal-aggression", {"NEWSCR=011"}},
                    Case{"gcb15.RSM", "examples/conspiracy-beliefs", {}},
                    Case{"gcb15.PCM", "examples/conspiracy-beliefs", {"GROUPS=0"}},
                    Case{"student13.PCM", "examples/student-attitudes", {}},
                    Case{"ability16.DICH", "tests/data_reference", {}}),
    [](const testing::TestParamInfo<Case>& parameter) {
      std::string name = parameter.param.name;
      return name.replace(name.find('.'), 1, "_");
    });

}  // namespace
}  // namespace vardento::test
