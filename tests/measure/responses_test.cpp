#include "measure/responses.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "report/small_run.h"
#include "support/whole_run.h"

namespace vardento::test {
namespace {

// Worked out from p = 1 / (1 + exp(F - d)) of each step in play, or p(k) in proportion to
// exp(k d - F(1) - ... - F(k)).
TEST(StandardisedResidual, IsThatOfTheModel) {
  const double half = std::sqrt(0.5);
  struct {
    const char* name;
    Model model;
    int top;
    double d;
    int x;
    double z;
  } const cases[] = {
      {"even odds", Model::Rating, 1, 0, 1, 1},
      {"odds of 1 to 9", Model::Rating, 1, -std::log(9.0), 1, 3},
      {"the same, failed", Model::Rating, 1, -std::log(9.0), 0, -1 / 3.0},
      {"a variance below .001", Model::Rating, 1, -10, 1, 0.9999546 / std::sqrt(0.001)},
      {"three equal categories", Model::Rating, 2, 0, 2, 1 / std::sqrt(2 / 3.0)},
      {"success, then failure", Model::Successes, 2, 0, 1, 0},
      {"two successes", Model::Successes, 2, 0, 2, 1 / half},
      {"a failure at once", Model::Successes, 2, 0, 0, -1},
      {"the last step passed first", Model::Failures, 2, 0, 2, 1},
      {"failure, then success", Model::Failures, 2, 0, 1, 0},
      {"two failures", Model::Failures, 2, 0, 0, -1 / half},
  };
  const float steps[] = {0, 0, 0};
  const std::int32_t statuses[] = {1, 1, 1};
  double p[4];
  for (const auto& c : cases) {
    const GroupModelTables group{c.top, c.model, steps, statuses};
    EXPECT_NEAR(StandardisedResidual(c.d, group, c.x, p), c.z, 1e-4) << c.name;
  }
}

// The mean-squares of the fit pass are the means of the squares of these residuals.
TEST(ResponseJudge, AgreesWithTheFitPass) {
  const std::vector<std::string> rows = {"012131", "1.2023", "321.10", "230312", "33.333",
                                         "02110.", "......", "113202", "2031.1", "310021"};
  std::string text =
      "NI=6\nITEM1=1\nNAME1=7\nNAMLEN=1\nCODES=0123\nINUMB=Y\nGROUPS=AABBCC\n"
      "MODELS=RRSSFF\n&END\n";
  for (const std::string& row : rows) text += row + "\n";
  WholeRun whole;
  whole.directory.Write("control.txt", text);
  ASSERT_EQ(whole.Execute({"TABLES=0"}), 0);
  ResponseJudge judge(whole.run);
  int compared = 0;
  for (int n = 1; n <= 10; ++n) {
    double squares = 0, count = 0;
    for (int i = 1; i <= 6; ++i) {
      const char c = rows[static_cast<std::size_t>(n - 1)][static_cast<std::size_t>(i - 1)];
      const auto stored = static_cast<std::uint8_t>(c == '.' ? 255 : c - '0');
      const Response response = judge.Judge(n, i, stored);
      EXPECT_EQ(response.missing, c == '.');
      EXPECT_TRUE(response.used || response.z == 0);
      count += response.used;
      squares += response.z * response.z;
    }
    if (!IsActive(whole.run.arrays.PersonStatus[n])) continue;
    EXPECT_NEAR(whole.run.arrays.PersonOutfit[n], squares / count, 1e-5) << n;
    ++compared;
  }
  EXPECT_GE(compared, 7);
}

// Each person's row and each item's column hold the same responses, however little memory there is.
TEST(EntryResponses, ReadsRowsAndColumns) {
  for (const bool memory : {true, false}) {
    SmallRun small(3, 4);
    const std::string rows[] = {"01 1", "1120", "  01"};
    for (int n = 1; n <= 3; ++n) small.SetResponses(n, rows[n - 1]);
    if (!memory) small.run.memory.RefuseRequest(1);
    EntryResponses persons(small.run, Facet::Persons, {1, 2, 3});
    EntryResponses items(small.run, Facet::Items, {4, 2, 3, 1});
    const int order[] = {4, 2, 3, 1};
    for (std::size_t place = 0; place < 4; ++place) {
      items.Open(place);
      for (int n = 1; n <= 3; ++n) {
        const int item = order[place];
        const char c = rows[n - 1][static_cast<std::size_t>(item - 1)];
        persons.Open(static_cast<std::size_t>(n - 1));
        for (const Response& response : {items.With(n), persons.With(item)}) {
          EXPECT_EQ(response.missing, c == ' ');
          EXPECT_EQ(response.value, c == ' ' ? 0 : c - '0');
          EXPECT_EQ(response.used, c == '0' || c == '1');  // 2 is no category
          EXPECT_EQ(response.z, c == '1' ? 1 : c == '0' ? -1 : 0);
        }
      }
    }
  }
}

}  // namespace
}  // namespace vardento::test
