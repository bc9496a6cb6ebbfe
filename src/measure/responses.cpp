#include "measure/responses.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "data/work_files.h"
#include "measure/fit_statistics.h"

namespace vardento {
namespace {

constexpr std::uint8_t kMissing = 255;
constexpr double kLeastVariance = 0.001;
constexpr std::size_t kColumnBytes = std::size_t{64} << 20;

}  // namespace

bool IsUnexpected(const Response& response) {
  return static_cast<float>(std::fabs(response.z)) >= static_cast<float>(kUnexpected);
}

double StandardisedResidual(double d, const GroupModelTables& group, int x, double* p) {
  const Evaluation model = Evaluate(d, group, x, p);
  const double score = ModelScore(x, group.top, group.model).score;
  return (score - model.expected) / std::sqrt(std::max(model.variance, kLeastVariance));
}

ResponseJudge::ResponseJudge(const Run& run)
    : run_(run), p_(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0) {}

Response ResponseJudge::Judge(int person, int item, std::uint8_t stored) {
  Response response;
  if (stored == kMissing) return response;
  const RunArrays& arrays = run_.arrays;
  response.missing = false;
  response.value = stored;
  const int group = arrays.ItemGroup[item];
  const int x = arrays.CodeToCategory[arrays.GroupStart[group] + stored];
  response.used =
      x >= 0 && IsActive(arrays.PersonStatus[person]) && IsActive(arrays.ItemStatus[item]);
  if (response.used) {
    const double d = static_cast<double>(arrays.PersonMeasure[person]) - arrays.ItemMeasure[item];
    response.z = StandardisedResidual(d, TablesOfGroup(arrays, group), x, p_.data());
  }
  return response;
}

EntryResponses::EntryResponses(Run& run, Facet facet, std::vector<int> entries)
    : run_(run), facet_(facet), entries_(std::move(entries)), judge_(run) {}

void EntryResponses::Open(std::size_t place) {
  place_ = place;
  if (facet_ == Facet::Persons) {
    const std::uint8_t* row = ReadScoredRow(run_, entries_[place]);
    row_.assign(row, row + run_.settings.NI);
  } else if (place >= lastColumn_) {
    CollectColumns(place);
  }
}

void EntryResponses::CollectColumns(std::size_t first) {
  const auto persons = static_cast<std::size_t>(run_.NPERS);
  const std::size_t fitting = kColumnBytes / std::max<std::size_t>(persons, 1);
  std::size_t columns = std::clamp<std::size_t>(fitting, 1, entries_.size() - first);
  while (columns > 0 && !block_.Allocate(run_.memory, columns * persons)) columns /= 2;
  firstColumn_ = first;
  lastColumn_ = first + columns;
  if (columns == 0) return;
  for (std::size_t n = 0; n < persons; ++n) {
    const std::uint8_t* row = ReadScoredRow(run_, static_cast<int>(n) + 1);
    for (std::size_t c = 0; c < columns; ++c) {
      block_.Data()[c * persons + n] = row[entries_[first + c] - 1];
    }
  }
}

Response EntryResponses::With(int other) {
  const int entry = entries_[place_];
  if (facet_ == Facet::Persons) {
    return judge_.Judge(entry, other, row_[static_cast<std::size_t>(other - 1)]);
  }
  if (place_ >= lastColumn_) {
    return judge_.Judge(other, entry, ReadScoredRow(run_, other)[entry - 1]);
  }
  const auto persons = static_cast<std::size_t>(run_.NPERS);
  const std::size_t column = (place_ - firstColumn_) * persons;
  return judge_.Judge(other, entry, block_.Data()[column + static_cast<std::size_t>(other - 1)]);
}

}  // namespace vardento
