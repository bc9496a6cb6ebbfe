#include "analysis/residual_pairs.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/residual_file.h"
#include "measure/category_model.h"
#include "run/messages.h"

namespace vardento {
namespace {

constexpr std::size_t kStrip = 8;     // outer entries in hand at a time: one walk serves them all
constexpr std::size_t kPiece = 2048;  // residuals of an entry in hand at a time

using Piece = std::array<double, kPiece>;
using StripPiece =
    std::array<double, kStrip * kPiece>;  // residual by residual, the strip's entries

double ValueOf(std::int16_t residual) { return residual == kNoResidual ? 0.0 : residual; }

// The products of one entry's residuals with those of the strip, summed. Products of 16-bit numbers
// and sums of 2,048 of them are whole and exact in a double, which multiplies faster.
std::array<double, kStrip> MultiplyStrip(const StripPiece& strip, const Piece& entry,
                                         std::size_t count) {
  std::array<double, kStrip> sums{};
  for (std::size_t k = 0; k < count; ++k) {
    const double value = entry[k];
    for (std::size_t s = 0; s < kStrip; ++s) sums[s] += strip[k * kStrip + s] * value;
  }
  return sums;
}

std::int64_t CountBothMissing(std::span<const std::int16_t> a, std::span<const std::int16_t> b) {
  std::int64_t count = 0;
  for (std::size_t k = 0; k < a.size(); ++k) {
    count += static_cast<int>(a[k] == kNoResidual) & static_cast<int>(b[k] == kNoResidual);
  }
  return count;
}

}  // namespace

void PairSums::Add(std::int16_t first, std::int16_t second, bool needsBoth) {
  const bool firstMissing = first == kNoResidual, secondMissing = second == kNoResidual;
  if (needsBoth ? firstMissing || secondMissing : firstMissing && secondMissing) return;
  const std::int64_t x = firstMissing ? 0 : first, y = secondMissing ? 0 : second;
  ++count;
  a += x;
  b += y;
  aa += x * x;
  bb += y * y;
  ab += x * y;
}

double CorrelationOf(const PairSums& sums) {
  if (sums.count < 2) return 0;
  const auto n = static_cast<double>(sums.count);
  // About the mean: the sum of products less what the means make of it.
  const auto about = [n](std::int64_t products, std::int64_t first, std::int64_t second) {
    return static_cast<double>(products) -
           static_cast<double>(first) * (static_cast<double>(second) / n);
  };
  const double varianceA = about(sums.aa, sums.a, sums.a);
  const double varianceB = about(sums.bb, sums.b, sums.b);
  if (varianceA <= 0 || varianceB <= 0) return 0;
  return about(sums.ab, sums.a, sums.b) / std::sqrt(std::max(varianceA * varianceB, kTiny));
}

ResidualPairs::ResidualPairs(Run& run, Facet facet, std::span<const int> entries,
                             std::span<const int> others)
    : run_(run),
      facet_(facet),
      entries_(entries),
      others_(others),
      needsBoth_(run.inForce.PRCOMP == 'O') {
  ChooseRoad();
}

void ResidualPairs::ChooseRoad() {
  const auto items = static_cast<std::size_t>(run_.settings.NI);
  const auto persons = static_cast<std::size_t>(run_.NPERS);
  const std::size_t all = sizeof(std::int16_t) * items * persons;
  if (!block_.Allocate(run_.memory, all)) {
    WriteConsole(run_,
                 std::to_string(all) + " bytes of memory not available, using disk work file ...");
    const std::size_t row = sizeof(std::int16_t) * (facet_ == Facet::Persons ? items : persons);
    road_ = block_.Allocate(run_.memory, row) ? Road::RowInMemory : Road::Disk;
  }
  matrix_ = reinterpret_cast<std::int16_t*>(block_.Data());
}

bool ResidualPairs::SumWithLater(std::size_t place) {
  if (place == 0 && !Open()) return false;
  if (road_ == Road::Memory) {
    if (place >= end_) SumStrip(place);
    row_ = place - first_;
    return true;
  }
  sums_.assign(entries_.size(), PairSums());
  if (road_ == Road::RowInMemory && !HoldOuter(entries_[place])) return false;
  return facet_ == Facet::Persons ? SumPersons(place) : SumItems(place);
}

bool ResidualPairs::Open() {
  if (road_ == Road::Memory) return Load();
  const IoStatus opened = file_.Open(run_.workDirectory.NameOf("ZUU"), FileMode::Read);
  return opened == kIoOk || Fail(opened, 'O', 0);
}

bool ResidualPairs::Load() {
  WriteConsole(run_, " Loading:");
  std::vector<std::int16_t> row(static_cast<std::size_t>(run_.settings.NI));
  const bool persons = facet_ == Facet::Persons;
  const std::span<const int> read = persons ? entries_ : others_;
  const std::span<const int> items = persons ? others_ : entries_;
  for (std::size_t n = 0; n < read.size(); ++n) {
    const IoStatus status = run_.stores.residuals.Read(read[n], row.data());
    if (status != kIoOk) return Fail(status, 'R', read[n]);
    for (std::size_t i = 0; i < items.size(); ++i) {
      const std::int16_t residual = row[static_cast<std::size_t>(items[i] - 1)];
      (persons ? Column(n)[i] : Column(i)[n]) = residual;
    }
    ShowProgress(run_, static_cast<int>(n) + 1, static_cast<int>(read.size()));
  }
  SumOwn();
  WriteConsole(run_, " Computing:");
  return true;
}

void ResidualPairs::SumOwn() {
  own_.assign(entries_.size(), PairSums());
  for (std::size_t place = 0; place < entries_.size(); ++place) {
    for (const std::int16_t residual : Residuals(place)) {
      own_[place].Add(residual, residual, true);
    }
    anyMissing_ = anyMissing_ || IsIncomplete(place);
  }
}

void ResidualPairs::SumStrip(std::size_t first) {
  first_ = first;
  end_ = std::min(first + kStrip, entries_.size());
  sums_.assign(kStrip * entries_.size(), PairSums());
  if (needsBoth_ && anyMissing_) {
    for (std::size_t place = first_; place < end_; ++place) SumComplete(place);
    return;
  }
  for (std::size_t from = 0; from < others_.size(); from += kPiece) {
    AddProducts(from, std::min(kPiece, others_.size() - from));
  }
  for (std::size_t place = first_; place < end_; ++place) {
    for (std::size_t later = place + 1; later < entries_.size(); ++later) Complete(place, later);
  }
}

// Adds the products of `count` residuals from place `from` on, of the strip with all later entries.
void ResidualPairs::AddProducts(std::size_t from, std::size_t count) {
  StripPiece strip{};
  for (std::size_t place = first_; place < end_; ++place) {
    const std::int16_t* const column = Column(place) + from;
    for (std::size_t k = 0; k < count; ++k) strip[k * kStrip + place - first_] = ValueOf(column[k]);
  }
  Piece entry;
  for (std::size_t later = first_ + 1; later < entries_.size(); ++later) {
    std::transform(Column(later) + from, Column(later) + from + count, entry.begin(), ValueOf);
    const std::array<double, kStrip> products = MultiplyStrip(strip, entry, count);
    for (std::size_t place = first_; place < end_; ++place) {
      SumsOf(place, later).ab += static_cast<std::int64_t>(products[place - first_]);
    }
  }
}

// Where a missing residual counts as 0, the sums of an entry are the same in all its pairs.
void ResidualPairs::Complete(std::size_t place, std::size_t later) {
  PairSums& sums = SumsOf(place, later);
  sums.a = own_[place].a;
  sums.aa = own_[place].aa;
  sums.b = own_[later].a;
  sums.bb = own_[later].aa;
  sums.count = static_cast<std::int64_t>(others_.size());
  if (IsIncomplete(place) && IsIncomplete(later)) {
    sums.count -= CountBothMissing(Residuals(place), Residuals(later));
  }
}

void ResidualPairs::SumComplete(std::size_t place) {
  const std::span<const std::int16_t> outer = Residuals(place);
  for (std::size_t later = place + 1; later < entries_.size(); ++later) {
    const std::span<const std::int16_t> inner = Residuals(later);
    PairSums& sums = SumsOf(place, later);
    for (std::size_t k = 0; k < outer.size(); ++k) sums.Add(outer[k], inner[k], true);
  }
}

bool ResidualPairs::ReadResiduals(int person, int firstItem, std::span<std::int16_t> residuals) {
  const auto items = static_cast<std::uint64_t>(run_.settings.NI);
  const std::uint64_t place =
      static_cast<std::uint64_t>(person - 1) * items + static_cast<std::uint64_t>(firstItem - 1);
  std::size_t got = 0;
  const IoStatus status =
      file_.ReadAt(place * sizeof(std::int16_t), residuals.data(), residuals.size_bytes(), got);
  if (status != kIoOk) return Fail(status, 'R', person);
  return got == residuals.size_bytes() || Fail(kIoEndOfFile, 'R', person);
}

// The outer entry's residuals: of a person on every item, of an item by every person that counts.
bool ResidualPairs::HoldOuter(int entry) {
  if (facet_ == Facet::Persons) {
    return ReadResiduals(entry, 1, {matrix_, static_cast<std::size_t>(run_.settings.NI)});
  }
  for (const int person : others_) {
    if (!ReadResiduals(person, entry, {matrix_ + person - 1, 1})) return false;
  }
  return true;
}

bool ResidualPairs::SumItems(std::size_t place) {
  std::array<std::int16_t, kPiece> piece;
  for (const int person : others_) {
    std::int16_t outer = 0;
    if (road_ == Road::RowInMemory) {
      outer = matrix_[person - 1];
    } else if (!ReadResiduals(person, entries_[place], {&outer, 1})) {
      return false;
    }
    std::size_t later = place + 1;
    while (later < entries_.size()) {
      const int first = entries_[later];
      const std::size_t count = PieceFrom(first);
      if (!ReadResiduals(person, first, {piece.data(), count})) return false;
      const int end = first + static_cast<int>(count);
      for (; later < entries_.size() && entries_[later] < end; ++later) {
        sums_[later].Add(outer, piece[static_cast<std::size_t>(entries_[later] - first)],
                         needsBoth_);
      }
    }
  }
  return true;
}

bool ResidualPairs::SumPersons(std::size_t place) {
  for (std::size_t later = place + 1; later < entries_.size(); ++later) {
    std::size_t other = 0;
    while (other < others_.size()) {
      if (!AddPiece(place, later, other)) return false;
    }
  }
  return true;
}

// Adds a piece of two persons' rows, from the item at place `other` on, which moves on behind it.
bool ResidualPairs::AddPiece(std::size_t place, std::size_t later, std::size_t& other) {
  std::array<std::int16_t, kPiece> outerPiece, piece;
  const int first = others_[other];
  const std::size_t count = PieceFrom(first);
  if (!ReadResiduals(entries_[later], first, {piece.data(), count})) return false;
  const std::int16_t* outer = matrix_ + first - 1;
  if (road_ == Road::Disk) {
    if (!ReadResiduals(entries_[place], first, {outerPiece.data(), count})) return false;
    outer = outerPiece.data();
  }
  const int end = first + static_cast<int>(count);
  for (; other < others_.size() && others_[other] < end; ++other) {
    const int k = others_[other] - first;
    sums_[later].Add(outer[k], piece[static_cast<std::size_t>(k)], needsBoth_);
  }
  return true;
}

// How many residuals of a row make the piece that begins at this item.
std::size_t ResidualPairs::PieceFrom(int item) const {
  return std::min(kPiece, static_cast<std::size_t>(run_.settings.NI - item + 1));
}

bool ResidualPairs::Fail(IoStatus status, char operation, int person) {
  run_.RunIoStatus = status;
  TellResidualFailure(run_, person, operation);
  return false;
}

}  // namespace vardento
