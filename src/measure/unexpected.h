// The most unexpected responses of a run, as a grid of persons by items.
#pragma once

#include <span>
#include <vector>

#include "measure/responses.h"

namespace vardento {

struct UnexpectedRow {
  int entry = 0;
  float measure = 0;            // in the user's units
  float outfit = 0;             // mean-square
  std::vector<Response> cells;  // one for each column
};

// Able persons and easy items stand first, so that high responses are expected at the upper left
// and low ones at the lower right.
struct UnexpectedResponses {
  std::vector<int> columns;         // entries of the other side
  std::vector<UnexpectedRow> rows;  // those with an unexpected response in some column
};

// The responses of these entries to the most unexpected entries of the other side. Rows keep their
// order.
UnexpectedResponses CollectUnexpected(Run& run, Facet rows, std::span<const int> entries);
// The same of the most unexpected entries, by their measures.
UnexpectedResponses CollectMostUnexpected(Run& run, Facet rows);

}  // namespace vardento
