// Single responses as listings show them: what was scored, whether it tells of the scale, and how
// far it lies from what the measures expect.
#pragma once

#include <cstdint>
#include <vector>

#include "measure/category_model.h"
#include "run/facet.h"
#include "run/run.h"

namespace vardento {

struct Response {
  int value = 0;        // as scored, in the scale of the data
  bool missing = true;  // nothing was scored
  bool used = false;    // a category of the scale, of an active person on an active item
  double z = 0;         // standardised residual; 0 unless used
};

// From this |z| on a response counts as unexpected; compared in 32 bits, as the fit pass does.
bool IsUnexpected(const Response& response);

// z = (score - E) / sqrt(V) of an observation in category x, d logits between person and item
// (Wright & Masters 1982, ch. 5), with the score as the group's model counts it: the z of the fit
// pass, but for a floor of V that keeps |z| below 32 where an observation was certain. `p` holds
// MAXCAT + 1 elements.
double StandardisedResidual(double d, const GroupModelTables& group, int x, double* p);

// Tells of stored responses what a Response says.
class ResponseJudge {
 public:
  explicit ResponseJudge(const Run& run);
  // `stored` is the scored byte of the person on the item, 255 for missing.
  Response Judge(int person, int item, std::uint8_t stored);

 private:
  const Run& run_;
  std::vector<double> p_;  // categories 0..MAXCAT of the pair in hand
};

// The responses of entries of one side, one entry after the other: of each person from its row, of
// items from columns that are collected in one walk over the persons, or in several where the
// columns together would take more than some 64 MB. Where there is no memory at all each response
// is read from its row.
class EntryResponses {
 public:
  EntryResponses(Run& run, Facet facet, std::vector<int> entries);
  // Makes entries[place] the entry in hand; places come in ascending order.
  void Open(std::size_t place);
  // What the entry in hand and entry `other` of the other side (1..NI or 1..NPERS) have between
  // them.
  Response With(int other);

 private:
  void CollectColumns(std::size_t first);

  Run& run_;
  Facet facet_;
  std::vector<int> entries_;
  ResponseJudge judge_;
  std::size_t place_ = 0;
  std::vector<std::uint8_t> row_;                 // of the person in hand, NI scores
  MemoryBlock block_;                             // columns of NPERS scores each
  std::size_t firstColumn_ = 0, lastColumn_ = 0;  // places of the columns held, last one excluded
};

}  // namespace vardento
