#include "analysis/bias_sizes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "report/small_run.h"

namespace vardento::test {
namespace {

// Sizes move by less than 0.01 logits in the last iteration; Newton's steps end far nearer.
constexpr double kNear = 0.002;

class BiasSizesTest : public testing::Test {
 protected:
  // Persons on items, a string for the responses of each; its first character is the class.
  void Give(const std::vector<std::string>& persons) {
    const int items = static_cast<int>(persons[0].size()) - 1;
    sizes = BiasSizes();  // its memory is counted in the run before
    small = std::make_unique<SmallRun>(static_cast<int>(persons.size()), items);
    for (int n = 1; n <= small->run.NPERS; ++n) {
      const std::string& person = persons[static_cast<std::size_t>(n - 1)];
      small->SetPerson(n, person.substr(0, 1), {});
      small->SetResponses(n, person.substr(1));
    }
  }
  // One item of three categories whose steps lie at the item's measure, and persons at it.
  void GiveSteps(const std::string& responses, Model model) {
    std::vector<std::string> persons;
    for (const char c : responses) persons.push_back(std::string("A") + c);
    Give(persons);
    RunArrays& a = small->run.arrays;
    a.GroupTop[1] = small->run.MAXCAT = 2;
    a.CodeToCategory[a.GroupStart[1] + 2] = 2;
    a.GroupModel[1] = model;
  }
  void Estimate(Facet source, const std::string& field = "$S1W1") {
    vardento::Run& run = small->run;
    classes = FindBiasClasses(run, source, ParseFieldSpecification(run, "DIF", field));
    ASSERT_TRUE(sizes.Estimate(run, classes));
  }
  int Iterations() const {
    return static_cast<int>(std::ranges::count_if(small->console.lines, [](const auto& line) {
      return line.starts_with(" Largest change = ");
    }));
  }

  std::unique_ptr<SmallRun> small;
  BiasClasses classes;
  BiasSizes sizes;
};

// Class A: 3 of 4 right on item 1 by persons a logit above it, so that its size is 1 - ln 3; class
// B: 1 of 2 right, 1 + 0. Item 2 is passed over by A and answered by the one person of weight 0.
TEST_F(BiasSizesTest, FindsTheShiftThatExplainsTheScores) {
  Give({"A1 ", "A1 ", "B1 ", "A1 ", "A0 ", "B0 ", "C11", "B 9"});
  for (float& measure : small->run.arrays.PersonMeasure) measure = 0.5F;
  small->run.arrays.ItemMeasure[1] = -0.5F;
  small->GivePersonWeights();
  small->run.given.PersonWeight[7] = 0;
  Estimate(Facet::Persons);
  EXPECT_EQ(classes.codes, (std::vector<std::string>{"A", "B", "C"}));
  const BiasCell& a = sizes.At(1, 1);
  EXPECT_EQ(a.state, BiasState::Estimated);
  EXPECT_NEAR(a.size, 1 - std::log(3.0), 0.02);  // so little information makes for small steps
  EXPECT_EQ(a.count, 4);
  EXPECT_EQ(a.observed, 3);
  EXPECT_NEAR(a.expected, 3, 0.02);
  EXPECT_NEAR(a.variance, 4 * 0.75 * 0.25, 0.01);
  EXPECT_NEAR(sizes.At(2, 1).size, 1, 0.05);
  for (int cls = 1; cls <= 3; ++cls) {
    EXPECT_EQ(sizes.At(cls, 2).state, BiasState::NoInformation) << cls;
  }
  EXPECT_EQ(sizes.At(3, 1).state, BiasState::NoInformation) << "all of it weighs nothing";
}

// As many responses as make the estimate exact: 30 of 40 right at 100 units to a logit. B has the
// like of A turned round. The scale may run backwards: errors stay positive, t stays in logits.
TEST_F(BiasSizesTest, TellsItInTheUnitsOfTheUser) {
  std::vector<std::string> persons;
  for (int n = 0; n < 40; ++n) {
    persons.push_back(n < 30 ? "A1" : "A0");
    persons.push_back(n < 30 ? "B0" : "B1");
  }
  Give(persons);
  Estimate(Facet::Persons);
  const double size = 100 * std::log(3.0), error = 100 / std::sqrt(7.5);
  for (const float uscale : {100.0F, -100.0F}) {
    const double sign = uscale > 0 ? 1 : -1;
    ControlSettings settings;
    settings.USCALE = uscale;
    settings.UMEAN = 500;
    const BiasMeasure measure = MeasureOfBias(settings, sizes.At(1, 1));
    EXPECT_NEAR(measure.size, -sign * size, 100 * kNear);
    EXPECT_NEAR(measure.error, error, 0.1);
    const BiasContrast contrast = ContrastOfBias(settings, sizes.At(2, 1), sizes.At(1, 1));
    EXPECT_NEAR(contrast.contrast, sign * 2 * size, 200 * kNear);
    EXPECT_NEAR(contrast.error, std::sqrt(2.0) * error, 0.1);
    EXPECT_NEAR(contrast.t, 2 * size / (std::sqrt(2.0) * error), 0.02);
  }
}

// A class at an end of an item has no size there and leaves the sums; what it had stays.
TEST_F(BiasSizesTest, LeavesOutTheEnds) {
  Give({"A010", "A011", "B0 1", "B1 0"});
  Estimate(Facet::Persons);
  EXPECT_EQ(sizes.At(1, 1).state, BiasState::Minimum);
  EXPECT_EQ(sizes.At(1, 2).state, BiasState::Maximum);
  EXPECT_EQ(sizes.At(1, 3).state, BiasState::Estimated);
  EXPECT_EQ(sizes.At(2, 2).state, BiasState::NoInformation);
  EXPECT_EQ(sizes.At(1, 2).expected, 1) << "without bias";
}

// Only active entries take part, whatever their labels; what is no category counts as missing.
TEST_F(BiasSizesTest, PassesOverWhoIsNotActive) {
  Give({"A10", "B11", "A05", "C00"});
  small->run.arrays.PersonStatus[2] = Status::ExtremeHigh;
  small->run.arrays.ItemStatus[1] = Status::ExtremeLow;
  Estimate(Facet::Persons);
  EXPECT_EQ(classes.codes, (std::vector<std::string>{"A", "C"}));
  EXPECT_EQ(sizes.At(1, 1).count, 0);
  EXPECT_EQ(sizes.At(1, 2).count, 1);
}

// Person 1 at 2 logits: on class X of the items 2 of 3 right by weight, on class Y 3 of 4. Persons'
// weights don't matter, and an item of weight 0 has no class.
TEST_F(BiasSizesTest, TurnsToPersons) {
  Give({"A10101", "A01011"});
  const char* labels[] = {"X1", "X2", "Y3", "Y4", "Y5"};
  for (int i = 1; i <= 5; ++i) small->SetItemLabel(i, labels[i - 1]);
  small->run.arrays.PersonMeasure[1] = 2;
  small->GiveItemWeights();
  small->run.arrays.GroupMaxWeight = small->Floats(1, 300);
  small->GivePersonWeights();
  small->run.given.PersonWeight[1] = 7;
  small->run.given.ItemWeight[1] = 200;
  small->run.given.ItemWeight[2] = 100;
  small->run.given.ItemWeight[3] = 300;
  small->run.given.ItemWeight[4] = 100;
  small->run.given.ItemWeight[5] = 0;
  Estimate(Facet::Items);
  ASSERT_EQ(sizes.Targets(), 2);
  EXPECT_NEAR(sizes.At(1, 1).size, std::log(2.0) - 2, kNear);
  EXPECT_NEAR(sizes.At(2, 1).size, std::log(3.0) - 2, kNear);
  EXPECT_EQ(sizes.At(2, 1).count, 400);
  EXPECT_NEAR(sizes.At(1, 2).size, -std::log(2.0), kNear);
  EXPECT_NEAR(sizes.At(2, 2).size, -std::log(3.0), kNear);
}

// Steps in succession of equal difficulty: each step that was in play is a trial. Of 40 persons 10
// fail the first step, 12 the second, so 48 of 70 trials are passed. The mirrored model has the
// like trials from above: in 0 both steps were failed, in 1 the upper one, in 2 the upper was
// passed and the lower not in play, so 30 of 62.
TEST_F(BiasSizesTest, JudgesStepsOneByOne) {
  const std::string responses = std::string(10, '0') + std::string(12, '1') + std::string(18, '2');
  GiveSteps(responses, Model::Successes);
  Estimate(Facet::Persons);
  EXPECT_NEAR(sizes.At(1, 1).size, -std::log(48.0 / 22), kNear);
  EXPECT_NEAR(sizes.At(1, 1).variance, 70 * (48.0 / 70) * (22.0 / 70), 0.01);
  GiveSteps(responses, Model::Failures);
  Estimate(Facet::Persons);
  EXPECT_NEAR(sizes.At(1, 1).size, -std::log(30.0 / 32), kNear);
  EXPECT_EQ(sizes.At(1, 1).observed, 48) << "the score, as that of other models";
}

// A blank is a character of a code like others, in front, within and behind.
TEST_F(BiasSizesTest, TellsClassesApartByWholeFields) {
  Give({" 1", "A0", "A1", " 0", "A1"});
  const char* const labels[] = {" A", "A ", "A", "AA", "AB"};
  for (int n = 1; n <= 5; ++n) small->SetPerson(n, labels[n - 1], {});
  Estimate(Facet::Persons, "$S1W2");
  EXPECT_EQ(classes.codes, (std::vector<std::string>{" A", "A", "AA", "AB"}));
  EXPECT_EQ(classes.classOf[3], 2);
  Estimate(Facet::Persons, "$S2W1+$S1W1");
  EXPECT_EQ(classes.codes, (std::vector<std::string>{"A", " A", "AA", "BA"}));
}

// The codes share 2,000 characters: with 600 for each there is room for three.
TEST_F(BiasSizesTest, HasRoomForSoManyClasses) {
  Give({"A1", "B0", "A0", "C1", "D1", "B1"});
  Estimate(Facet::Persons, "$s1w600");
  EXPECT_EQ(classes.codes, (std::vector<std::string>{"A", "B", "C"}));
  EXPECT_EQ(classes.classOf[5], 0);
  EXPECT_EQ(classes.classOf[6], 2);
  const FieldSpecification joined =
      ParseFieldSpecification(small->run, "DIF", "$S1W3+\"--\"+$s9e10");
  EXPECT_EQ(WidthOfField(joined), 7);
}

// Ten categories whose steps are in the wrong order, so that the score jumps from 0 to 9 within a
// tenth of a logit: plain steps of a logit at most go to and fro over it for ever.
TEST_F(BiasSizesTest, EndsWhereSizesJump) {
  Give({"A0", "A9", "A0", "A9"});
  RunArrays& a = small->run.arrays;
  a.GroupTop[1] = small->run.MAXCAT = 9;
  for (int k = 1; k <= 9; ++k) {
    a.CodeToCategory[k + 1] = k;
    a.StepCalibration[k + 1] = static_cast<float>(15 - 3 * k);
  }
  a.StepStatus = Array1<std::int32_t>(a.StepStatus.Data(), 10);
  a.ItemMeasure[1] = 0.48F;
  Estimate(Facet::Persons);
  EXPECT_GT(Iterations(), 100) << "it settles by itself";
  EXPECT_LE(Iterations(), 200);
  EXPECT_NEAR(sizes.At(1, 1).size, -0.48, 0.1);
}

TEST_F(BiasSizesTest, StopsBehindAWalk) {
  Give({"A1", "A0", "A1", "A1"});
  small->run.arrays.PersonMeasure[1] = 5;
  small->console.onPump = [](RecordingConsole& console) { console.interrupts = 1; };
  Estimate(Facet::Persons);
  EXPECT_EQ(Iterations(), 1);
  EXPECT_EQ(sizes.At(1, 1).state, BiasState::Estimated);
  Estimate(Facet::Persons);
  EXPECT_EQ(sizes.At(1, 1).state, BiasState::None) << "asked to stop before it began";
}

}  // namespace
}  // namespace vardento::test
