// Sums over the residuals of pairs of entries of one side, as correlations need them. Residuals are
// whole numbers, and so are these sums, exactly: no order of adding, no road through memory or file
// changes a bit of a correlation.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/file.h"
#include "platform/memory.h"
#include "run/facet.h"
#include "run/run.h"

namespace vardento {

// Over the entries of the other side that count for both: how many, and the sums of the residuals,
// of their squares and products. A residual that is missing is 0 where its partner is not, and the
// pair is passed over where both are missing; of plain observations (PRCOMP=O) both must be there.
struct PairSums {
  std::int64_t count = 0, a = 0, b = 0, aa = 0, bb = 0, ab = 0;
  void Add(std::int16_t first, std::int16_t second, bool needsBoth);
};

// Pearson's r; 0 of fewer than two pairs or where one of the two does not vary.
double CorrelationOf(const PairSums& sums);

// Walks the pairs of active entries, whole columns at a time: with the matrix in memory, 2 bytes
// for each of NI times NPERS residuals, else with the outer entry's residuals alone in memory, else
// with nothing but the file.
class ResidualPairs {
 public:
  // `entries` of the facet and `others` of the other side: all active, ascending.
  ResidualPairs(Run& run, Facet facet, std::span<const int> entries, std::span<const int> others);

  // Sums the pairs of the entry at `place` (from 0) with all later ones. Places come in ascending
  // order. False when the file of residuals fails, which is told.
  bool SumWithLater(std::size_t place);
  // Of the entry in hand with the later one at this place.
  const PairSums& With(std::size_t later) const { return sums_[row_ * entries_.size() + later]; }

 private:
  enum class Road { Memory, RowInMemory, Disk };

  void ChooseRoad();
  bool Open();
  bool Fail(IoStatus status, char operation, int person);

  // With the matrix in memory: the residuals of `entries` over `others`, one entry after the other.
  bool Load();
  void SumOwn();
  void SumStrip(std::size_t first);
  void AddProducts(std::size_t from, std::size_t count);
  void Complete(std::size_t place, std::size_t later);
  void SumComplete(std::size_t place);
  std::int16_t* Column(std::size_t place) const { return matrix_ + place * others_.size(); }
  std::span<const std::int16_t> Residuals(std::size_t place) const {
    return {Column(place), others_.size()};
  }
  bool IsIncomplete(std::size_t place) const {
    return own_[place].count < static_cast<std::int64_t>(others_.size());
  }
  PairSums& SumsOf(std::size_t place, std::size_t later) {
    return sums_[(place - first_) * entries_.size() + later];
  }

  // From the file, piece by piece; the outer entry's residuals may be held.
  bool ReadResiduals(int person, int firstItem, std::span<std::int16_t> residuals);
  bool HoldOuter(int entry);
  bool SumItems(std::size_t place);
  bool SumPersons(std::size_t place);
  bool AddPiece(std::size_t place, std::size_t later, std::size_t& other);
  std::size_t PieceFrom(int item) const;

  Run& run_;
  Facet facet_;
  std::span<const int> entries_, others_;
  bool needsBoth_;
  Road road_ = Road::Memory;
  MemoryBlock block_;
  std::int16_t* matrix_ = nullptr;  // the matrix; or the outer entry's residuals, by entry from 1
  std::vector<PairSums> own_;       // of each entry with itself, where it has residuals
  bool anyMissing_ = false;
  std::vector<PairSums> sums_;       // of the entries in hand, one row each, by later place
  std::size_t first_ = 0, end_ = 0;  // places of the entries in hand
  std::size_t row_ = 0;              // of the entry asked for
  File file_;
};

}  // namespace vardento
