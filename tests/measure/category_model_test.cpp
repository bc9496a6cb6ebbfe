// Category probabilities against their defining products, written out without guards or shifts.
#include "measure/category_model.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "measure/estimation.h"

namespace vardento {
namespace {

// A group whose steps are anchored nowhere: step[k], k = 1..T, and which categories were observed.
struct Scale {
  Scale(char letter, std::vector<float> steps, std::vector<std::int32_t> status = {})
      : step(std::move(steps)), stepStatus(std::move(status)) {
    step.insert(step.begin(), 0.0F);
    if (stepStatus.empty()) stepStatus.assign(step.size(), 1);
    tables.top = static_cast<int>(step.size()) - 1;
    tables.model = Model{letter};
    tables.step = step.data();
    tables.status = stepStatus.data();
  }
  std::vector<float> step;
  std::vector<std::int32_t> stepStatus;
  GroupModelTables tables;
};

double Pass(double d, double step) { return 1.0 / (1.0 + std::exp(step - d)); }

// p(k) of a rating scale by its definition; 0 for a kept, unobserved category.
std::vector<double> RatingScaleByDefinition(const Scale& scale, double d) {
  std::vector<double> p(scale.step.size());
  double total = 0;
  for (std::size_t k = 0; k < p.size(); ++k) {
    double exponent = 0;
    for (std::size_t j = 1; j <= k; ++j) {
      exponent += scale.stepStatus[j] == 0 ? d : d - static_cast<double>(scale.step[j]);
    }
    p[k] = scale.stepStatus[k] == 0 ? 0 : std::exp(exponent);
    total += p[k];
  }
  for (double& value : p) value /= total;
  return p;
}

// Every step in play is passed or failed. "S": steps 1..k are passed, the next is failed. "F": the
// steps above k are failed, step k is passed; category 0 passes none.
std::vector<double> SuccessionByDefinition(const Scale& scale, double d) {
  const std::size_t top = scale.step.size() - 1;
  std::vector<double> p(top + 1, 1.0);
  for (std::size_t k = 0; k <= top; ++k) {
    for (std::size_t j = 1; j <= top; ++j) {
      const bool up = scale.tables.model == Model::Successes;
      if (up ? j > k + 1 : j < k) continue;
      const bool passed = up ? j <= k : j == k;
      p[k] *= passed ? Pass(d, scale.step[j]) : 1.0 - Pass(d, scale.step[j]);
    }
  }
  return p;
}

TEST(CategoryModel, ProbabilitiesFollowTheirDefinition) {
  const Scale cases[] = {
      Scale('R', {0.3F}),
      Scale('S', {-0.7F}),  // two categories: every letter is the same
      Scale('F', {-0.7F}),
      Scale('R', {-1.2F, 0.1F, 0.9F}),
      Scale('R', {-1.2F, 0.0F, 0.9F}, {1, 1, 0, 1}),  // category 2 kept though unobserved
      Scale('S', {-1.0F, 0.4F, 0.2F}),
      Scale('F', {-1.0F, 0.4F, 0.2F}),
  };
  for (const Scale& scale : cases) {
    for (const double d : {-3.1, -0.4, 0.0, 0.8, 4.5}) {
      SCOPED_TRACE(std::string(1, LetterOf(scale.tables.model)) + std::to_string(scale.tables.top) +
                   " at " + std::to_string(d));
      const bool plain = scale.tables.top == 1 || scale.tables.model == Model::Rating;
      const std::vector<double> wanted =
          plain ? RatingScaleByDefinition(scale, d) : SuccessionByDefinition(scale, d);
      std::vector<double> p(wanted.size());
      const double expected = CategoryProbabilities(d, scale.tables, p.data());
      double mean = 0;
      for (std::size_t k = 0; k < p.size(); ++k) {
        EXPECT_NEAR(p[k], wanted[k], 1e-12);
        mean += static_cast<double>(k) * wanted[k];
      }
      EXPECT_NEAR(expected, mean, 1e-12);
      if (!plain) continue;
      double variance = 0, fourth = 0;
      for (std::size_t k = 0; k < p.size(); ++k) {
        const double distance = static_cast<double>(k) - mean;
        variance += distance * distance * wanted[k];
        fourth += std::pow(distance, 4) * wanted[k];
      }
      const Evaluation here = Evaluate(d, scale.tables, 0, p.data());
      EXPECT_NEAR(here.variance, variance, 1e-12);
      EXPECT_NEAR(here.fourth, fourth, 1e-12);
    }
  }
}

TEST(CategoryModel, FarOffPersonsNeitherOverflowNorVanish) {
  for (const char letter : {'R', 'S', 'F'}) {
    const Scale scale(letter, {-2.0F, -1.0F, 1.0F, 2.0F});
    std::vector<double> p(5);
    for (const double d : {42.0, 1e6}) {
      EXPECT_NEAR(CategoryProbabilities(d, scale.tables, p.data()), 4, 1e-6) << letter;
      EXPECT_NEAR(p[4], 1, 1e-6) << letter;
      EXPECT_NEAR(CategoryProbabilities(-d, scale.tables, p.data()), 0, 1e-6) << letter;
    }
  }
}

TEST(CategoryModel, MissingStepsAreCertainUnderSAndImpossibleUnderF) {
  const std::vector<float> steps = {-0.5F, 0.3F, 1.1F};
  const double d = 0.4;
  const double first = Pass(d, steps[0]), last = Pass(d, steps[2]);
  std::vector<double> p(4);
  const Scale kept('S', steps, {1, 1, 0, 1});
  EXPECT_NEAR(StepProbabilities(d, kept.tables, 3, p.data()), first + 1 + last, 1e-12);
  const Scale mirrored('F', steps, {1, 1, 0, 1});
  EXPECT_NEAR(StepProbabilities(d, mirrored.tables, 0, p.data()), first + last, 1e-12);
}

// A step that is not there leaves the others as they are: the category before it ("S") or behind it
// ("F") is never met.
TEST(CategoryModel, SequencesPassOverAMissingStep) {
  for (const char letter : {'S', 'F'}) {
    const Scale gap(letter, {-1.0F, 9.0F, 0.2F}, {1, 1, 0, 1});
    const Scale closed(letter, {-1.0F, 0.2F});
    std::vector<double> p(4, -1.0), q(3, -1.0);
    CategoryProbabilities(0.7, gap.tables, p.data());
    CategoryProbabilities(0.7, closed.tables, q.data());
    const std::vector<double> wanted = letter == 'S' ? std::vector<double>{q[0], 0, q[1], q[2]}
                                                     : std::vector<double>{q[0], q[1], 0, q[2]};
    for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(p[k], wanted[k], 1e-12) << letter << k;
  }
}

TEST(CategoryModel, ScoreAndMaximumByLetter) {
  struct Case {
    int x, top;
    char letter;
    int score, maximum;
  };
  const Case cases[] = {{2, 4, 'R', 2, 4}, {0, 4, 'S', 0, 1}, {3, 4, 'S', 3, 4}, {4, 4, 'S', 4, 4},
                        {0, 4, 'F', 0, 4}, {1, 4, 'F', 1, 4}, {2, 4, 'F', 1, 3}, {4, 4, 'F', 1, 1},
                        {1, 1, 'S', 1, 1}, {0, 1, 'F', 0, 1}};
  for (const Case& c : cases) {
    const ScoreAndMaximum found = ModelScore(c.x, c.top, Model{c.letter});
    EXPECT_EQ(found.score, c.score) << c.letter << c.x;
    EXPECT_EQ(found.maximum, c.maximum) << c.letter << c.x;
  }
}

TEST(CategoryModel, LogOddsStayFinite) {
  EXPECT_NEAR(SafeLogOdds(3, 1), std::log(3.0), 1e-7);
  EXPECT_NEAR(SafeLogOdds(0, 5), -30, 1e-5);
  EXPECT_NEAR(SafeLogOdds(1, 0), 30, 1e-5);
  EXPECT_NEAR(SafeLogOdds(1, -2), 30, 1e-5);
}

}  // namespace
}  // namespace vardento
