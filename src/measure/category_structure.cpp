#include "measure/category_structure.h"

#include <algorithm>
#include <cmath>

#include "measure/entry_values.h"
#include "run/user_scale.h"

namespace vardento {
namespace {

constexpr double kLeastInformation = 0.001;  // keeps a standard error finite
constexpr double kShownResidual = 0.01;      // as a share of the expected count

// A share in percent that is 1 at least when there is anything, and 99 at most unless all is there.
int HoldPercent(double percent, bool any, bool all) {
  const int most = all ? 100 : 99;
  return static_cast<int>(std::clamp(percent, any ? 1.0 : 0.0, static_cast<double>(most)));
}

double ShareOfExpected(const CategoryRow& row) {
  return row.residual / std::max(1.0, row.ExpectedCount());
}

// Marks the categories whose average measure does not rise, in logits of the variable, whichever
// way the user's scale runs.
void MarkDisordered(const CategoryStructure& structure, const RunArrays& arrays,
                    std::vector<CategoryRow>& rows) {
  const int start = arrays.GroupStart[structure.group];
  bool any = false;
  float last = 0;
  for (std::size_t k = 0; k < rows.size(); ++k) {
    if (!(rows[k].count > 0)) continue;
    const float average = arrays.CategoryObservedMeasure[start + static_cast<int>(k)];
    rows[k].disordered = any && !(average > last);
    last = average;
    any = true;
  }
}

}  // namespace

bool CategoryRow::HasStep() const { return status >= StepStatus::Active; }

double CategoryRow::ResidualPercent() const { return 100 * ShareOfExpected(*this); }

int CategoryRow::MeasureToCategory() const {
  const double share = std::floor(100.0 * matches / std::max(predicted, 1));
  return HoldPercent(share, matches > 0, matches >= predicted);
}

int CategoryRow::CategoryToMeasure() const {
  const double share = std::round(100.0 * matches / std::max(count, 1.0));
  return HoldPercent(share, matches > 0, matches >= count);
}

bool CategoryStructure::HasResiduals() const {
  return std::ranges::any_of(rows, [](const CategoryRow& row) {
    return std::fabs(ShareOfExpected(row)) >= kShownResidual;
  });
}

CategoryStructures::CategoryStructures(Run& run)
    : run_(run),
      labels_(run),
      scores_(run.settings, run.inForce.scoring),
      itemsOfGroup_(static_cast<std::size_t>(run.NGROUPS) + 1) {
  const RunArrays& arrays = run.arrays;
  for (int i = 1; i <= arrays.ItemStatus.Size(); ++i) {
    if (!IsActive(arrays.ItemStatus[i])) continue;
    itemsOfGroup_[static_cast<std::size_t>(arrays.ItemGroup[i])].push_back(i);
  }
}

bool CategoryStructures::IsMeasured(int group) const {
  return run_.arrays.GroupTop[group] >= 1 &&
         !itemsOfGroup_[static_cast<std::size_t>(group)].empty();
}

CategoryStructure CategoryStructures::Of(int group) const {
  const RunArrays& arrays = run_.arrays;
  CategoryStructure structure;
  structure.group = group;
  structure.model = arrays.GroupModel[group];
  structure.items = itemsOfGroup_[static_cast<std::size_t>(group)];
  if (!IsMeasured(group)) return structure;
  structure.groupCode = GroupCodeOf(run_.settings, structure.items.front());
  if (structure.items.size() == 1) {
    structure.difficulty = MeasureOf(run_, Facet::Items, structure.items.front());
  }
  if (arrays.GroupPivotFlag[group]) structure.pivot = run_.given.GroupPivot[group];
  structure.rows.resize(static_cast<std::size_t>(arrays.GroupTop[group]) + 1);
  double responses = structure.missingCount = arrays.GroupMissingCount[group];
  for (int k = 0; k <= structure.Top(); ++k) {
    CategoryRow& row = structure.rows[static_cast<std::size_t>(k)];
    ReadRow(structure, k, row);
    responses += row.count;
  }
  const double share = responses > 0 ? 100 / responses : 0;
  for (CategoryRow& row : structure.rows) row.percent = share * row.count;
  structure.missingPercent = share * structure.missingCount;
  structure.missingAverage =
      structure.difficulty + UserScale(run_.settings).Difference(arrays.GroupMissingMeasure[group]);
  MarkDisordered(structure, arrays, structure.rows);
  NameRows(structure);
  return structure;
}

void CategoryStructures::ReadRow(const CategoryStructure& structure, int k,
                                 CategoryRow& row) const {
  const RunArrays& arrays = run_.arrays;
  const int start = arrays.GroupStart[structure.group];
  row.value = arrays.CategoryToCode[start + k];
  row.score = arrays.CategoryToCode[start] + k;
  row.status = arrays.StepStatus[start + k];
  ReadUse(structure, k, row);
  ReadScale(start + k, row);
  for (double* measure :
       {&row.average, &row.expected, &row.measurePoint, &row.halfPoint, &row.thurstone}) {
    *measure += structure.difficulty;
  }
}

// The sums of what the model expects count, for steps taken in succession, whoever is expected to
// pass step k: in category k are those of them who are not expected to pass the next.
void CategoryStructures::ReadUse(const CategoryStructure& structure, int k,
                                 CategoryRow& row) const {
  const RunArrays& arrays = run_.arrays;
  const int position = arrays.GroupStart[structure.group] + k;
  const UserScale scale(run_.settings);
  row.count = arrays.CategoryCount[position];
  row.residual = arrays.CategoryExpectedCount[position];
  row.average = scale.Difference(arrays.CategoryObservedMeasure[position]);
  double expected = arrays.CategoryExpectedMeasure[position];
  if (structure.model == Model::Successes && k > 0 && k < structure.Top()) {
    const double passed = arrays.CategoryCount[position + 1];
    row.residual += passed - arrays.CategoryExpectedCount[position + 1];
    expected -= arrays.CategoryExpectedMeasure[position + 1] * std::max(passed, 1.0) /
                std::max(row.count, 1.0);
  }
  row.expected = scale.Difference(expected);
  row.infit = arrays.CategoryObservedY[position];
  row.outfit = arrays.CategoryObservedZ[position];
  row.predicted = arrays.CategoryExpectedHits[position];
  row.matches = arrays.CategoryMatches[position];
}

void CategoryStructures::ReadScale(int position, CategoryRow& row) const {
  const RunArrays& arrays = run_.arrays;
  const UserScale scale(run_.settings);
  row.step = scale.Distance(arrays.StepCalibration[position]);
  const double information = arrays.CategoryInformation[position];
  row.stepError = scale.Distance(1 / std::sqrt(std::max(kLeastInformation, information)));
  row.measurePoint = scale.Distance(arrays.CategoryMeasurePoint[position]);
  row.halfPoint = scale.Distance(arrays.CategoryHalfPoint[position]);
  row.thurstone = scale.Distance(arrays.CategoryThurstone[position]);
}

// The place (from 1) of the first of CODES= that is scored as `value`; 0 without one.
int CategoryStructures::CodeScoredAs(int value, const std::uint8_t* column) const {
  for (int c = 1; c <= run_.settings.CATEGS; ++c) {
    if (column[c] == value) return c;
  }
  return 0;
}

// The code that all of the columns score as `value`. With a key of its own each item has another
// right answer: none then stands for the category.
int CategoryStructures::CommonCode(int value, const std::set<const std::uint8_t*>& columns) const {
  int common = -1;
  for (const std::uint8_t* const column : columns) {
    const int code = CodeScoredAs(value, column);
    if (common >= 0 && code != common) return 0;
    common = code;
  }
  return common;
}

void CategoryStructures::NameRows(CategoryStructure& structure) const {
  const int item = structure.items.front();
  const auto wide = static_cast<std::size_t>(run_.settings.XWIDE);
  std::set<const std::uint8_t*> columns;  // items that score alike share one
  for (const int i : structure.items) columns.insert(scores_.Column(i));
  for (CategoryRow& row : structure.rows) {
    const int code = CommonCode(row.value, columns);
    if (code > 0) {
      row.code = run_.settings.CODES.substr(static_cast<std::size_t>(code - 1) * wide, wide);
    }
    row.words = labels_.OfCategory(row.value, structure.group);
    if (row.words.empty()) row.words = labels_.OfCode(code, item, structure.group);
  }
}

}  // namespace vardento
