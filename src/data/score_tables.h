// The scores of all codes on all items, worked out once before the persons are scored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "run/run.h"

namespace vardento {

// ScoreResponse for category numbers 0..CATEGS of items 1..NI. Items that score alike share one
// column, so that it stays small unless the scoring differs from item to item.
class ScoreTable {
 public:
  ScoreTable(const ControlSettings& settings, const ScoringInForce& scoring);

  // The CATEGS + 1 scores of the item, by category number; 255 is missing.
  const std::uint8_t* Column(int item) const {
    return scores_.data() + columnStart_[static_cast<std::size_t>(item - 1)];
  }
  // The highest score that a code of CODES= has on the item; -1 when none has one.
  int TopScore(int item) const;

  // Scores the items in `items` (from 0): scored[i] from category number coded[i].
  void ScoreRow(const std::uint8_t* coded, const std::vector<int>& items,
                std::uint8_t* scored) const {
    for (const int i : items) {
      scored[i] = scores_[columnStart_[static_cast<std::size_t>(i)] + coded[i]];
    }
  }

 private:
  std::size_t columnLength_;
  std::vector<std::uint8_t> scores_;
  std::vector<std::size_t> columnStart_;  // by item, from 0
};

// Sets the given GroupTop of every group from the scores of its items' codes and of MISSING=, then
// GroupStart (the position of category 0), NCATS and MAXCAT. A group has at least two positions.
// Ends the run when no response can score 1 or above.
void SizeCategories(Run& run);

}  // namespace vardento
