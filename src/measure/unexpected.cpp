#include "measure/unexpected.h"

#include <algorithm>

#include "data/work_files.h"
#include "measure/entry_values.h"

namespace vardento {
namespace {

// The entries of the most unexpected responses: persons from the able to the less able, items from
// the easy to the hard, whichever way the user's scale runs.
std::vector<int> WorstInOrder(const Run& run, Facet facet) {
  const bool persons = facet == Facet::Persons;
  const FitOutcome& fit = run.results.fit;
  const FacetArrays arrays = ArraysOf(run, facet);
  std::vector<int> entries;
  for (const WorstEntry& worst : persons ? fit.worstPersons : fit.worstItems) {
    entries.push_back(worst.number);
  }
  std::ranges::sort(entries, [&](int a, int b) {
    const float x = arrays.measure[a], y = arrays.measure[b];
    if (x != y) return persons ? x > y : x < y;
    return a < b;
  });
  return entries;
}

// Reads each person of the grid once.
void FillCells(Run& run, Facet facet, UnexpectedResponses& grid) {
  ResponseJudge judge(run);
  const std::size_t columns = grid.columns.size();
  for (UnexpectedRow& row : grid.rows) row.cells.resize(columns);
  if (facet == Facet::Persons) {
    for (UnexpectedRow& row : grid.rows) {
      const std::uint8_t* scores = ReadScoredRow(run, row.entry);
      for (std::size_t c = 0; c < columns; ++c) {
        const int item = grid.columns[c];
        row.cells[c] = judge.Judge(row.entry, item, scores[item - 1]);
      }
    }
    return;
  }
  for (std::size_t c = 0; c < columns; ++c) {
    const int person = grid.columns[c];
    const std::uint8_t* scores = ReadScoredRow(run, person);
    for (UnexpectedRow& row : grid.rows) {
      row.cells[c] = judge.Judge(person, row.entry, scores[row.entry - 1]);
    }
  }
}

}  // namespace

UnexpectedResponses CollectUnexpected(Run& run, Facet rows, std::span<const int> entries) {
  UnexpectedResponses grid;
  grid.columns = WorstInOrder(run, OtherFacet(rows));
  for (const int entry : entries) {
    const EntryValues values = ReadEntryValues(run, rows, entry);
    grid.rows.push_back({entry, values.measure, values.outfit, {}});
  }
  FillCells(run, rows, grid);
  std::erase_if(grid.rows, [](const UnexpectedRow& row) {
    return std::ranges::none_of(row.cells, IsUnexpected);
  });
  return grid;
}

UnexpectedResponses CollectMostUnexpected(Run& run, Facet rows) {
  return CollectUnexpected(run, rows, WorstInOrder(run, rows));
}

}  // namespace vardento
