// How the response categories of one group of items work: how each was used, what the model expects
// of it, where it lies on the scale. Read from the arrays that the fit pass and the category points
// leave; the category Tables lay it out.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "data/score_tables.h"
#include "lists/category_labels.h"
#include "run/run.h"

namespace vardento {

// A category of the group, and the step into it from the one below. Measures are user units, told
// from the item: with the item's difficulty added where the group is one item.
struct CategoryRow {
  int value = 0;      // the score in the data that the category stands for
  int score = 0;      // the group's lowest value plus the category's place in the order
  int status = 0;     // of the step (StepStatus); of the lowest category whether it was anchored
  std::string code;   // the response code that is scored so; empty when items differ in it
  std::string words;  // the user's words for category or code

  // Over the observations of active persons on active items, by their weights.
  double count = 0;
  double percent = 0;   // of all responses, missing ones included
  double residual = 0;  // count less what the model expects
  double average = 0;   // mean of the person measures in the category; 0 without any
  double expected = 0;  // the value that the model expects of it
  // The average is not further along the variable than that of the last category below that was
  // used: those in higher categories should have higher measures.
  bool disordered = false;
  double infit = 0, outfit = 0;  // mean-squares of the observations in the category

  // Of the step, without the item's difficulty, and its standard error. For the lowest category,
  // and with a status below StepStatus::Active, there is no step.
  double step = 0, stepError = 0;
  // Where the expected score is the category (off the ends for the lowest and highest), where it is
  // half a point less, and where this category or above is as likely as not.
  double measurePoint = 0, halfPoint = 0, thurstone = 0;

  // Coherence: observations for which the measures imply this category, and those of them that are
  // in it.
  int predicted = 0, matches = 0;

  bool HasStep() const;
  double ExpectedCount() const { return count - residual; }
  // 100 x residual over the expected count, which counts as 1 at least.
  double ResidualPercent() const;
  // Matches in percent of those predicted, and of those observed. 100 stands for a perfect
  // agreement alone, 0 for none.
  int MeasureToCategory() const;
  int CategoryToMeasure() const;
};

struct CategoryStructure {
  int group = 0;
  char groupCode = ' ';  // of GROUPS=
  Model model = Model::Rating;
  std::vector<int> items;  // the active ones, ascending
  float difficulty = 0;    // added to the measures: of the one item, 0 for several
  std::optional<float> pivot;
  std::vector<CategoryRow> rows;  // position 0 to GroupTop

  // Missing responses, weighed like the others.
  double missingCount = 0, missingPercent = 0, missingAverage = 0;

  int Top() const { return static_cast<int>(rows.size()) - 1; }
  // Observed and expected counts differ by 1% somewhere.
  bool HasResiduals() const;
};

// Makes the structures of a run's groups. What all of them need (items by group, words, scores of
// codes) is read once.
class CategoryStructures {
 public:
  explicit CategoryStructures(Run& run);

  // The group has active items and two categories or more.
  bool IsMeasured(int group) const;
  CategoryStructure Of(int group) const;
  const CategoryLabels& Labels() const { return labels_; }

 private:
  void ReadRow(const CategoryStructure& structure, int k, CategoryRow& row) const;
  void ReadUse(const CategoryStructure& structure, int k, CategoryRow& row) const;
  void ReadScale(int position, CategoryRow& row) const;
  int CodeScoredAs(int value, const std::uint8_t* column) const;
  int CommonCode(int value, const std::set<const std::uint8_t*>& columns) const;
  void NameRows(CategoryStructure& structure) const;

  Run& run_;
  CategoryLabels labels_;
  ScoreTable scores_;
  std::vector<std::vector<int>> itemsOfGroup_;  // active items, from group 1 at place 1
};

}  // namespace vardento
