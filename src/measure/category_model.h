// The category model: how likely each category is, what score is expected and with what variance,
// for a person d logits above an item. The innermost operation of the program. Nothing here
// allocates or keeps state; everything works on the tables of one group.
//
// Model "R" compares adjacent categories: log(p(k) / p(k-1)) = d - F(k). With two categories this
// is Rasch 1960; with steps shared by a group of items the rating scale of Andrich 1978; with a
// group for each item the partial credit model of Masters 1982. Models "S" and "F" take the steps
// one after the other (continuation ratios; sequential model, Tutz 1990): a step in play is passed
// with probability 1 / (1 + exp(F(k) - d)). d and F are logits, scores and E score points from 0 to
// T.
#pragma once

#include <cstdint>

#include "run/run_arrays.h"

namespace vardento {

inline constexpr float kExpGuard = 20.0F;  // largest exponent handed to exp, logits
// e to the -30: floor of divisors and of what a logarithm is taken of.
inline constexpr double kTiny = 9.357622968840175e-14;
inline constexpr float kLnTwo = 0.6931472F;  // in 32-bit precision: see NaturalLog

// What the probability routines need of a group: views into the category tables, index 0..top.
struct GroupModelTables {
  int top = 0;  // T; 1 is a dichotomy, -1 a dropped group
  Model model = Model::Rating;
  const float* step = nullptr;           // F(k), k = 1..T, logits
  const std::int32_t* status = nullptr;  // StepStatus(k), k = 0..T
  // True when steps are judged one by one ("S" or "F" with more than two categories).
  bool IsSequential() const { return top >= 2 && model != Model::Rating; }
};

// Views into the arrays, good until categories are renumbered.
GroupModelTables TablesOfGroup(const RunArrays& arrays, int group);

// A buffer p holds MAXCAT + 1 elements, category 0 first. Nothing here fails: exponents are held
// within kExpGuard, so any finite d will do; callers floor what they divide by.
//
// Writes p(0..T), a distribution over the categories, and returns the expected score E. A group
// without steps (T below 1) gives p(0) = 1 and E = 0. For "S" and "F" this is the distribution
// before anything was observed, as curves need it; estimation and fit ask StepProbabilities.
double CategoryProbabilities(double d, const GroupModelTables& group, double* p);
// For "S" and "F" with T >= 2: p(1..T) the chance of passing each step that the observation x puts
// in play, p(0) a complement; returns the expected number of steps passed among them. No
// distribution over categories: the steps in play depend on x.
double StepProbabilities(double d, const GroupModelTables& group, int x, double* p);

// The natural logarithm as this system computes it, by way of base 2; x above 0. The 32-bit ln 2 is
// off by 3 parts in 10^9: the settled form, too small to show.
double NaturalLog(double x);
// ln(max(a / max(b, tiny), tiny)), logits: the log-odds of a score a whose distance from the
// maximum is b.
double SafeLogOdds(double a, double b);

struct ScoreAndMaximum {
  int score;
  int maximum;
};
// Score and largest possible score of an observation in category x under the group's model: x out
// of T ("R"), or steps passed out of steps in play ("S", "F").
ScoreAndMaximum ModelScore(int x, int top, Model model);

struct Evaluation {
  double expected;  // E, score points
  double variance;  // V, score points squared: the information about d; not floored
  double fourth;    // C, the fourth central moment (of each step, summed, for sequential groups)
};
// E alone at d, for an observation in category x (x matters for sequential groups only).
double EvaluateExpected(double d, const GroupModelTables& group, int x, double* p);
// V and C behind a probability routine that left p and returned E: the W and C of Wright & Masters
// 1982, ch. 5.
Evaluation MomentsOf(const GroupModelTables& group, double expected, const double* p);
// E, V and C at d; p is left as by the probability routine that fits the group.
Evaluation Evaluate(double d, const GroupModelTables& group, int x, double* p);

// The first numbering of the categories, before the first pass of the start values: categories that
// the user deleted are closed up. Takes GroupTop, StepStatus and StepCalibration by code, leaves
// them by ordered category, and fills CodeToCategory (negative: the code counts as missing) and
// CategoryToCode. A group with a single category is dropped: GroupTop -1.
void NumberCategories(RunArrays& arrays);

}  // namespace vardento
