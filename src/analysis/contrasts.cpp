#include "analysis/contrasts.h"

#include <algorithm>
#include <cmath>

#include "data/work_files.h"
#include "measure/category_model.h"
#include "measure/entry_values.h"

namespace vardento {
namespace {

constexpr std::size_t kFewestPicks = 3, kMostPicks = 9;  // at each end; counts are one digit
constexpr double kAsExpected = 0.5;                      // score points either way
constexpr std::uint8_t kMissing = 255;

}  // namespace

ContrastFinder::ContrastFinder(Run& run, Facet facet, const std::vector<int>& order)
    : run_(run),
      facet_(facet),
      order_(order),
      marked_(ArraysOf(run, facet).Count(), 0),
      p_(static_cast<std::size_t>(run.MAXCAT) + 2, 0.0) {}

Contrast ContrastFinder::Find(const Vector1<double>& loadings) {
  Contrast contrast;
  const std::size_t picks = CountPicks(loadings);
  contrast.top.resize(picks);
  contrast.bottom.resize(picks);
  if (picks == 0) return contrast;
  Pick(loadings, contrast);
  CountResponses(contrast);
  return contrast;
}

// As many as load substantially at either end, within limits. What the component before picked is
// not counted again, but for the last one that it picked: the settled form.
std::size_t ContrastFinder::CountPicks(const Vector1<double>& loadings) {
  const float least = std::fabs(run_.settings.LOA_VALUE);
  std::size_t high = 0, low = 0, counted = 0;
  for (const int entry : order_) {
    const bool left = marked_[entry] != 0;
    marked_[entry] = 0;
    if (left) continue;
    ++counted;
    const auto loading = static_cast<float>(loadings[entry]);
    if (loading >= least) ++high;
    if (loading <= -least) ++low;
  }
  return std::min({std::max({kFewestPicks, high, low}), counted / 2, kMostPicks});
}

void ContrastFinder::Pick(const Vector1<double>& loadings, Contrast& contrast) {
  // The most extreme entry not yet picked; of equal ones the first in the order.
  const auto take = [&](std::vector<int>& picks, double sign) {
    for (int& pick : picks) {
      pick = 0;
      for (const int entry : order_) {
        if (marked_[entry] != 0) continue;
        if (pick == 0 || sign * loadings[entry] > sign * loadings[pick]) pick = entry;
      }
      marked_[pick] = 1;
    }
  };
  take(contrast.top, 1);
  take(contrast.bottom, -1);
  marked_[contrast.bottom.back()] = 0;
}

// Extreme entries at the top are listed too; those at the bottom are not.
void ContrastFinder::CountResponses(Contrast& contrast) {
  const FacetArrays others = ArraysOf(run_, OtherFacet(facet_));
  for (int i = 1; i <= others.Count(); ++i) {
    if (others.status[i] >= Status::ExtremeHigh) contrast.others.push_back({i, {}, {}});
  }
  if (facet_ == Facet::Items) {
    for (ContrastingEntry& other : contrast.others) {
      const std::uint8_t* const row = ReadScoredRow(run_, other.entry);
      for (const int item : contrast.top) CountOf(other.entry, row, item, other.top);
      for (const int item : contrast.bottom) CountOf(other.entry, row, item, other.bottom);
    }
    return;
  }
  const auto count = [&](int person, ContrastCounts ContrastingEntry::*counts) {
    const std::uint8_t* const row = ReadScoredRow(run_, person);
    for (ContrastingEntry& other : contrast.others)
      CountOf(person, row, other.entry, other.*counts);
  };
  for (const int person : contrast.top) count(person, &ContrastingEntry::top);
  for (const int person : contrast.bottom) count(person, &ContrastingEntry::bottom);
}

void ContrastFinder::CountOf(int person, const std::uint8_t* row, int item,
                             ContrastCounts& counts) {
  const RunArrays& arrays = run_.arrays;
  const std::uint8_t response = row[item - 1];
  if (response == kMissing) return;
  const int group = arrays.ItemGroup[item];
  const int x = arrays.CodeToCategory[arrays.GroupStart[group] + response];
  if (x < 0) return;
  const double d = static_cast<double>(arrays.PersonMeasure[person]) - arrays.ItemMeasure[item];
  const double residual = x - CategoryProbabilities(d, TablesOfGroup(arrays, group), p_.data());
  ++(residual > kAsExpected ? counts.high : residual < -kAsExpected ? counts.low : counts.expected);
}

}  // namespace vardento
