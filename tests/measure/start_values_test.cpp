// The structure of the scales as start values find it, with steps that the user deletes.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "measure/category_model.h"
#include "support/estimates.h"

namespace vardento::test {
namespace {

TEST(NumberCategories, LeavesOutDeletedSteps) {
  struct Case {
    std::vector<std::int32_t> status;  // by code; the step into code k stands at k
    std::vector<std::int32_t> categoryOf;
    std::vector<std::int32_t> codeOf;
    std::vector<float> steps;
  };
  const Case cases[] = {
      {{0, 0, -3, 2}, {0, 1, -3, 2}, {0, 1, 3}, {0, 1, 3}},
      {{-3, 0, 0, 0}, {-3, 0, 1, 2}, {1, 2, 3}, {1, 2, 3}},
      {{-3, -3, 0, -3}, {-3, -3, -4, -3}, {}, {}},  // a single category is no scale
      {{-3, -3, -3, -3}, {-3, -3, -3, -3}, {}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.status));
    const int size = static_cast<int>(c.status.size());
    std::vector<std::int32_t> status = c.status, category(4), code(4), start{1}, top{size - 1};
    std::vector<float> steps{0, 1, 2, 3};
    RunArrays arrays;
    arrays.StepStatus = {status.data(), size};
    arrays.CodeToCategory = {category.data(), size};
    arrays.CategoryToCode = {code.data(), size};
    arrays.StepCalibration = {steps.data(), size};
    arrays.GroupStart = {start.data(), 1};
    arrays.GroupTop = {top.data(), 1};
    NumberCategories(arrays);
    EXPECT_EQ(top[0], static_cast<int>(c.codeOf.size()) - 1);
    EXPECT_EQ(category, c.categoryOf);
    for (std::size_t k = 0; k < c.codeOf.size(); ++k) {
      EXPECT_EQ(code[k], c.codeOf[k]);
      EXPECT_EQ(steps[k], c.steps[k]);
    }
  }
}

// Codes whose step is deleted are missing, and those above them move down by one.
TEST(StartValues, DeletedStepsAreAsIfTheirResponsesWereMissing) {
  Matrix data = Simulate(150, 10, 2, 12);
  std::string digits = "024";  // of categories 0, 1, 2; a few responses in between
  int count = 0;
  for (std::string& row : data) {
    for (char& code : row) {
      if (code == ' ') continue;
      code = ++count % 9 == 0 ? '3' : digits[static_cast<std::size_t>(code - '0')];
    }
  }
  Matrix without = data;
  for (std::string& row : without) std::replace(row.begin(), row.end(), '3', ' ');
  const AllEstimates deleted = Estimate(data, "CODES=01234\nSTKEEP=N\nSDFILE=*\n1 1 1\n1 3 1\n*");
  const AllEstimates missing = Estimate(without, "CODES=01234\nSTKEEP=N");
  ASSERT_EQ(deleted.steps[0].size(), 2U);
  ExpectSame(missing.items, deleted.items, Entries(0, 10));
  ExpectSameSteps(missing, deleted);
}

}  // namespace
}  // namespace vardento::test
