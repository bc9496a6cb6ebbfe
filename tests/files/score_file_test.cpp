#include "files/score_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "report/small_run.h"
#include "support/estimates.h"
#include "text/number_text.h"

namespace vardento::test {
namespace {

using testing::HasSubstr;

struct ScoreFileRun : WholeRun {
  std::vector<std::string> Rows(const Matrix& data, const std::string& lines) {
    RunData(*this, data, "CODES=01\nSCFILE=scores.txt\nHLINES=N\n" + lines);
    return SmallRun::LinesOf(directory.Read("scores.txt"));
  }
};

std::vector<std::string> FieldsOf(const std::string& row, char separator) {
  std::vector<std::string> fields;
  std::istringstream stream(row);
  for (std::string field; std::getline(stream, field, separator);) {
    if (!field.empty()) fields.push_back(field);
  }
  return fields;
}

TEST(ScoreFile, AllFormsHoldTheSameFields) {
  const Matrix data = Simulate(60, 6, 1, 4);
  const auto fixed = ScoreFileRun().Rows(data, "CSV=N");
  const auto commas = ScoreFileRun().Rows(data, "CSV=Y");
  const auto tabs = ScoreFileRun().Rows(data, "CSV=T");
  ASSERT_EQ(fixed.size(), 7U);
  ASSERT_EQ(commas.size(), 7U);
  ASSERT_EQ(tabs.size(), 7U);
  for (std::size_t s = 0; s < fixed.size(); ++s) {
    EXPECT_EQ(FieldsOf(fixed[s], ' '), FieldsOf(commas[s], ','));
    EXPECT_EQ(FieldsOf(fixed[s], ' '), FieldsOf(tabs[s], '\t'));
    EXPECT_EQ(FieldsOf(commas[s], ',').size(), 11U);
    EXPECT_EQ(FieldsOf(commas[s], ',').at(0), std::to_string(s));
  }
}

// Everybody has two of four: no norms, and the fields behind them move.
TEST(ScoreFile, WithoutSpreadNormsAreLeftOut) {
  const Matrix data{"1100", "1010", "1001", "0110", "0101", "0011"};
  const auto fixed = ScoreFileRun().Rows(data, "CSV=N");
  EXPECT_EQ(fixed.at(2).substr(30), "                  6 100.0       6 100.0       50");
  EXPECT_EQ(fixed.at(3).substr(30), "                  0    .0       6 100.0      100");
  const auto commas = ScoreFileRun().Rows(data, "CSV=Y");
  EXPECT_THAT(commas.at(2), HasSubstr(",6,100.0,6,100.0,50"));
  EXPECT_EQ(FieldsOf(commas[2], ',').size(), 9U);
}

// The information is as wide as its place allows: the standard error in front of it stays whole.
TEST(ScoreFile, WideInformationSparesTheError) {
  const Matrix data = Simulate(60, 60, 1, 4);
  const auto rows = ScoreFileRun().Rows(data, "CSV=N\nUDECIM=4");
  const auto commas = ScoreFileRun().Rows(data, "CSV=Y\nUDECIM=4");
  const std::string error = rows.at(30).substr(17, 7), information = rows.at(30).substr(24, 6);
  const auto fields = FieldsOf(commas.at(30), ',');
  EXPECT_EQ(Trim(error), fields.at(2));
  EXPECT_EQ(fields.at(3).substr(0, 6), information) << "no column binds it there";
  ASSERT_GT(std::stod(information), 10);
  EXPECT_NEAR(1 / std::sqrt(std::stod(fields[3])), std::stod(error), 1e-4);
  EXPECT_NEAR(std::stod(information), std::stod(fields[3]), 0.0006);
}

TEST(ScoreFile, SaysWhatItDoes) {
  WholeRun whole;
  RunData(whole, Simulate(30, 4, 1, 4), "CODES=01\nSCFILE=later.txt");
  vardento::Run& run = whole.run;
  // As a menu asks for it, behind the run.
  run.SetBatchMode(false);
  whole.console.lines.clear();
  WriteScoreFile(run);
  EXPECT_THAT(whole.console.lines, testing::IsSupersetOf({" Calculating measures for scores...",
                                                          " Computing frequencies"}));
  EXPECT_THAT(whole.console.menuEntries,
              testing::Contains("Edit Person Score SCFILE=" + run.settings.SCFILE));
  EXPECT_EQ(SmallRun::LinesOf(whole.directory.Read("later.txt")).size(), 5U + 5U);
  // No memory for the counts: the file that is there stays.
  run.memory.RefuseRequest(1);
  WriteScoreFile(run);
  EXPECT_THAT(whole.console.lines.back(),
              HasSubstr("80 bytes of memory not available. Score file not produced."));
  EXPECT_TRUE(run.outputFailed);
  run.arrays.PersonMeasure[1] = std::nanf("");
  run.memory.RefuseRequest(0);
  WriteScoreFile(run);
  EXPECT_EQ(whole.console.lines.back(),
            "SORT SEQUENCE ERROR: PLEASE SEND FILE TO the developers of Vardento");
  EXPECT_EQ(SmallRun::LinesOf(whole.directory.Read("later.txt")).size(), 5U + 5U);
}

}  // namespace
}  // namespace vardento::test
