// The category model: how likely each category is, what score is expected and with what variance,
// for a person d logits above an item. The innermost operation of the program. Nothing here
// allocates or keeps state; everything works on the tables of one group.
#pragma once

#include <cstdint>

#include "run/run_arrays.h"

namespace vardento {

inline constexpr float kExpGuard = 20.0F;               // largest exponent handed to exp
inline constexpr double kTiny = 9.357622968840175e-14;  // e to the -30: floor of divisors
inline constexpr float kLnTwo = 0.6931472F;

// What the probability routines need of a group: views into the category tables, index 0..top.
struct GroupModelTables {
  int top = 0;  // T; 1 is a dichotomy, -1 a dropped group
  Model model = Model::Rating;
  const float* step = nullptr;           // F(k), k = 1..T
  const std::int32_t* status = nullptr;  // StepStatus(k)
  // True when steps are judged one by one ("S" or "F" with more than two categories).
  bool IsSequential() const { return top >= 2 && model != Model::Rating; }
};

GroupModelTables TablesOfGroup(const RunArrays& arrays, int group);

// A buffer p holds MAXCAT + 1 elements, category 0 first.
//
// Writes p(0..T), a distribution over the categories, and returns the expected score E.
double CategoryProbabilities(double d, const GroupModelTables& group, double* p);
// For "S" and "F" with T >= 2: p(1..T) the chance of passing each step that the observation x puts
// in play, p(0) a complement; returns the expected number of steps passed among them.
double StepProbabilities(double d, const GroupModelTables& group, int x, double* p);

// The natural logarithm as this system computes it; x above 0.
double NaturalLog(double x);
// ln(max(a / max(b, tiny), tiny)).
double SafeLogOdds(double a, double b);

struct ScoreAndMaximum {
  int score;
  int maximum;
};
// Score and largest possible score of an observation in category x under the group's model.
ScoreAndMaximum ModelScore(int x, int top, Model model);

struct Evaluation {
  double expected;  // E
  double variance;  // V, not floored
  double fourth;    // C, the fourth central moment (of each step, summed, for sequential groups)
};
// E alone at d, for an observation in category x (x matters for sequential groups only).
double EvaluateExpected(double d, const GroupModelTables& group, int x, double* p);
// V and C behind a probability routine that left p and returned E.
Evaluation MomentsOf(const GroupModelTables& group, double expected, const double* p);
// E, V and C at d; p is left as by the probability routine that fits the group.
Evaluation Evaluate(double d, const GroupModelTables& group, int x, double* p);

// The first numbering of the categories, before the first pass of the start values.
void NumberCategories(RunArrays& arrays);

}  // namespace vardento
