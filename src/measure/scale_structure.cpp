#include "measure/scale_structure.h"

#include <algorithm>
#include <cmath>

#include "measure/category_model.h"
#include "measure/observations.h"
#include "run/status.h"

namespace vardento {

namespace {

Vector1<char> FindGroupsInUse(const Run& run) {
  Vector1<char> used(run.NGROUPS, 0);
  for (int i = 1; i <= run.settings.NI; ++i) {
    if (IsActive(run.arrays.ItemStatus[i])) {
      used[run.arrays.ItemGroup[i]] = 1;
    }
  }
  return used;
}

void DropGroup(RunArrays& arrays, int group) {
  const int start = arrays.GroupStart[group];
  for (int k = 0; k <= arrays.GroupTop[group]; ++k) {
    arrays.CodeToCategory[start + arrays.CategoryToCode[start + k]] = -4;
  }
  arrays.GroupTop[group] = -1;
}

// One group being renumbered: its place in the tables and the outcome so far.
class Renumbering {
 public:
  Renumbering(Run& run, int group, CategorySums& sums, ScalePassResult& result)
      : run_(run),
        arrays_(run.arrays),
        sums_(sums),
        result_(result),
        group_(group),
        start_(run.arrays.GroupStart[group]),
        top_(run.arrays.GroupTop[group]) {}

  void Renumber() {
    MarkObserved();
    if (run_.settings.STKEEP) KeepUnobserved();
    Pack();
  }

 private:
  std::int32_t& StatusAt(int k) { return arrays_.StepStatus[start_ + k]; }

  // A category that nobody was seen in has no finite step. An anchored step stays whoever used it.
  void MarkObserved() {
    for (int k = 0; k <= top_; ++k) {
      if (StatusAt(k) < StepStatus::Unused) continue;
      if (arrays_.CategoryCount[start_ + k] <= 0 && StatusAt(k) != StepStatus::Anchored) {
        StatusAt(k) = StepStatus::Unused;
        continue;
      }
      highest_ = k;
      lowest_ = std::min(lowest_, k);
      if (StatusAt(k) != StepStatus::Anchored) StatusAt(k) = StepStatus::Active;
    }
  }

  // STKEEP=Y: an unobserved category between observed ones is taken as an accident of the sample,
  // and those above it keep their score. At an end of the scale it would change no difference of
  // scores.
  void KeepUnobserved() {
    int upper = highest_;
    for (int k = highest_ - 1; k > lowest_; --k) {
      if (StatusAt(k) == StepStatus::Unused) {
        if (arrays_.GroupModel[group_] == Model::Successes) {
          // The step into an unobserved category can be estimated, the one behind it cannot.
          StatusAt(k) = StepStatus::Active;
          if (StatusAt(upper) != StepStatus::Anchored) StatusAt(upper) = StepStatus::Kept;
        } else {
          StatusAt(k) = StepStatus::Kept;
        }
      }
      if (StatusAt(k) > 0) upper = k;
    }
  }

  // Closes the gaps; codes that lost their category count as missing.
  void Pack() {
    int last = -1;
    for (int j = 0; j <= top_; ++j) {
      const int code = arrays_.CategoryToCode[start_ + j];
      if (StatusAt(j) < 0) {
        result_.structureChanged = true;
        arrays_.CodeToCategory[start_ + code] = -4;
        continue;
      }
      ++last;
      ++result_.activeCategories;
      if (last != j) MoveCategory(j, last, code);
    }
    if (last == 0) {
      result_.structureChanged = true;
      --result_.activeCategories;
      arrays_.CodeToCategory[start_ + arrays_.CategoryToCode[start_]] = -4;
      last = -1;
    }
    // No step leads into the lowest category that is left.
    if (StatusAt(0) != StepStatus::Anchored) arrays_.StepCalibration[start_] = 0;
    arrays_.GroupTop[group_] = last;
    result_.largestTop = std::max(result_.largestTop, last);
  }

  void MoveCategory(int from, int to, int code) {
    arrays_.CodeToCategory[start_ + code] = to;
    arrays_.CategoryToCode[start_ + to] = code;
    StatusAt(to) = StatusAt(from);
    arrays_.StepCalibration[start_ + to] = arrays_.StepCalibration[start_ + from];
    arrays_.CategoryCount[start_ + to] = arrays_.CategoryCount[start_ + from];
    const int source = start_ + from;
    const int target = start_ + to;
    sums_.count[target] = sums_.count[source];
    sums_.measure[target] = sums_.measure[source];
    sums_.squares[target] = sums_.squares[source];
  }

  Run& run_;
  RunArrays& arrays_;
  CategorySums& sums_;
  ScalePassResult& result_;
  int group_, start_, top_;
  int highest_ = -1;      // highest and lowest category in use
  int lowest_ = 1 << 20;  // above any
};

// The step into category k, logits: observations above it (`above`) against those below (`below`),
// as the difficulty of an item for persons of measures B - D (Cohen 1979): mean difference +
// expansion x log(below / above). Both counts above 0.
double EstimateStep(const CategorySums::Triple& below, const CategorySums::Triple& above) {
  const double n = below.count + above.count;
  const double sum = below.measure + above.measure;
  const double squares = below.squares + above.squares;
  const double spread =
      std::sqrt(std::max(0.0, (squares - sum * sum / n) / (kLogisticSpread * n) + 1));
  return sum / n + NaturalLog(below.count / above.count) * spread;
}

// Who passed step k: "R" compares category k with the one below it, in succession ("S") whoever
// went on has passed it as well.
CategorySums::Triple ReachOfStep(const RunArrays& arrays, const CategorySums& sums, int group,
                                 int k) {
  const int start = arrays.GroupStart[group];
  CategorySums::Triple above = sums.At(start + k);
  if (arrays.GroupModel[group] == Model::Successes) {
    for (int j = k + 1; j <= arrays.GroupTop[group]; ++j) above.Add(sums.At(start + j));
  }
  return above;
}

// Who failed the step behind category k: with "F" all who are below it, as steps are tried from the
// top.
CategorySums::Triple FailuresBelow(const RunArrays& arrays, const CategorySums& sums, int group,
                                   int k) {
  const int start = arrays.GroupStart[group];
  CategorySums::Triple below = sums.At(start + k);
  if (arrays.GroupModel[group] == Model::Failures) {
    for (int j = 0; j < k; ++j) below.Add(sums.At(start + j));
  }
  return below;
}

// Takes the mean off the estimated steps and keeps the largest change. `previous` holds the steps
// before this pass. A shift of all steps is a shift of the items of the group: a mean of 0 parts
// the two (Andrich 1978).
void CentreSteps(RunArrays& arrays, int group, double mean, const std::vector<float>& previous,
                 float& stepChange) {
  const int start = arrays.GroupStart[group];
  for (int k = 1; k <= arrays.GroupTop[group]; ++k) {
    if (arrays.StepStatus[start + k] != StepStatus::Active) continue;
    float& step = arrays.StepCalibration[start + k];
    step = static_cast<float>(step - mean);
    const float change = step - previous[static_cast<std::size_t>(k)];
    if (std::fabs(change) > std::fabs(stepChange)) stepChange = change;
  }
}

void EstimateSteps(RunArrays& arrays, const CategorySums& sums, int group, float& stepChange) {
  const int start = arrays.GroupStart[group];
  const int top = arrays.GroupTop[group];
  std::vector<float> previous(static_cast<std::size_t>(std::max(top, 0)) + 1, 0.0F);
  CategorySums::Triple below;  // of the nearest category below that anybody used
  double stepSum = 0;          // of estimated and anchored steps
  int stepCount = 0;           // of the estimated ones, which alone move
  for (int k = 0; k <= top; ++k) {
    const int position = start + k;
    const int status = arrays.StepStatus[position];
    float& step = arrays.StepCalibration[position];
    if (k > 0 && status == StepStatus::Active) {
      previous[static_cast<std::size_t>(k)] = step;
      const CategorySums::Triple above = ReachOfStep(arrays, sums, group, k);
      step = above.count == 0 || below.count == 0 ? 0.0F
                                                  : static_cast<float>(EstimateStep(below, above));
      ++stepCount;
    }
    if (k > 0 && status < StepStatus::Active) step = 0;
    if (k > 0 && status >= StepStatus::Active) stepSum += step;
    if (sums.At(position).count > 0) below = FailuresBelow(arrays, sums, group, k);
  }
  if (stepCount > 0) CentreSteps(arrays, group, stepSum / stepCount, previous, stepChange);
}

}  // namespace

void CategorySums::Clear(int positions) {
  count.Assign(positions);
  measure.Assign(positions);
  squares.Assign(positions);
}

void CategorySums::Triple::Add(const Triple& other) {
  count += other.count;
  measure += other.measure;
  squares += other.squares;
}

CategorySums::Triple CategorySums::At(int position) const {
  return {count[position], measure[position], squares[position]};
}

ScalePassResult EstimateScales(Run& run, CategorySums& sums) {
  RunArrays& arrays = run.arrays;
  // Before packing: MarkObserved judges the positions as they were counted.
  for (int p = 1; p <= run.NCATS; ++p) {
    arrays.CategoryCount[p] = static_cast<float>(sums.At(p).count);
  }
  ScalePassResult result;
  const Vector1<char> used = FindGroupsInUse(run);
  for (int g = run.NGROUPS; g >= 1; --g) {
    if (arrays.GroupTop[g] < 0) continue;
    if (!used[g] || arrays.GroupTop[g] == 0) {
      DropGroup(arrays, g);
      continue;
    }
    Renumbering(run, g, sums, result).Renumber();
    EstimateSteps(arrays, sums, g, result.stepChange);
  }
  return result;
}

}  // namespace vardento
