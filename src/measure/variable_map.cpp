#include "measure/variable_map.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "measure/entry_values.h"
#include "run/user_scale.h"

namespace vardento {
namespace {

MapPlace PlaceOf(StatusByte status, bool mirrored) {
  if (!IsExtreme(status)) return MapPlace::AtMeasure;
  return (status == Status::ExtremeHigh) != mirrored ? MapPlace::AtTop : MapPlace::AtBottom;
}

MapSide MakeSide(const Run& run, Facet facet, bool mirrored) {
  const FacetArrays arrays = ArraysOf(run, facet);
  const UserScale scale(run, facet);
  MapSide side;
  for (int entry = 1; entry <= arrays.Count(); ++entry) {
    const StatusByte status = arrays.status[entry];
    if (!IsMeasured(status)) continue;
    const float measure = scale.Measure(arrays.measure[entry]);
    side.points.push_back({.entry = entry,
                           .measure = mirrored ? 2 * run.settings.UMEAN - measure : measure,
                           .weight = std::max(arrays.WeightOf(entry), 0.0F),
                           .place = PlaceOf(status, mirrored)});
  }
  return side;
}

// Mean and S.D. over the population of those at their measures.
void AddMoments(MapSide& side) {
  double weight = 0, sum = 0, squares = 0;
  for (const MapPoint& point : side.points) {
    if (point.place != MapPlace::AtMeasure) continue;
    weight += point.weight;
    sum += static_cast<double>(point.weight) * point.measure;
  }
  side.hasMean = weight > 0;
  if (!side.hasMean) return;
  side.mean = sum / weight;
  for (const MapPoint& point : side.points) {
    if (point.place != MapPlace::AtMeasure) continue;
    squares += point.weight * (point.measure - side.mean) * (point.measure - side.mean);
  }
  side.sd = std::sqrt(squares / std::max(weight, 1.0));
}

StepPoints StepPointsOf(const Run& run, const MapPoint& point) {
  const RunArrays& arrays = run.arrays;
  const int group = arrays.ItemGroup[point.entry];
  const int top = arrays.GroupTop[group];
  const double measure = point.measure;
  StepPoints points{measure, measure, run.NGROUPS > 1 && top < 2};
  if (top < 1) return points;
  const UserScale scale(run.settings);
  const int start = arrays.GroupStart[group];
  points.lowest += scale.Distance(arrays.CategoryThurstone[start + 1]);
  points.highest += scale.Distance(arrays.CategoryThurstone[start + top]);
  return points;
}

// The values that groups with a measured item can give.
std::vector<ZoneCategory> CategoriesInUse(const Run& run) {
  const RunArrays& arrays = run.arrays;
  std::vector<bool> used(static_cast<std::size_t>(run.NGROUPS) + 1, false);
  for (int i = 1; i <= arrays.ItemStatus.Size(); ++i) {
    if (IsMeasured(arrays.ItemStatus[i]))
      used[static_cast<std::size_t>(arrays.ItemGroup[i])] = true;
  }
  std::map<int, int> groupOfValue;
  for (int g = 1; g <= run.NGROUPS; ++g) {
    if (!used[static_cast<std::size_t>(g)]) continue;
    for (int k = 0; k <= arrays.GroupTop[g]; ++k) {
      groupOfValue.emplace(arrays.CategoryToCode[arrays.GroupStart[g] + k], g);
    }
  }
  std::vector<ZoneCategory> categories;
  for (const auto& [value, group] : groupOfValue) categories.push_back({value, group});
  return categories;
}

int PlaceOfValue(const std::vector<ZoneCategory>& categories, int value) {
  const auto found = std::ranges::lower_bound(categories, value, {}, &ZoneCategory::value);
  return static_cast<int>(found - categories.begin());
}

}  // namespace

VariableMap MakeVariableMap(const Run& run, bool mirrored) {
  VariableMap map;
  map.mirrored = mirrored;
  map.persons = MakeSide(run, Facet::Persons, false);
  map.items = MakeSide(run, Facet::Items, mirrored);
  AddMoments(map.persons);
  AddMoments(map.items);
  map.steps.reserve(map.items.points.size());
  for (const MapPoint& item : map.items.points) map.steps.push_back(StepPointsOf(run, item));
  return map;
}

bool HasSeveralSteps(const Run& run) {
  const Array1<std::int32_t>& tops = run.arrays.GroupTop;
  return std::any_of(tops.begin(), tops.end(), [](std::int32_t top) { return top > 1; });
}

ZoneMap MakeZoneMap(const Run& run, ZoneKind kind) {
  const RunArrays& arrays = run.arrays;
  const Array1<double>& boundaries =
      kind == ZoneKind::Thurstone ? arrays.CategoryThurstone : arrays.CategoryHalfPoint;
  const UserScale scale(run.settings);
  ZoneMap map;
  map.categories = CategoriesInUse(run);
  for (const MapPoint& item : MakeSide(run, Facet::Items, false).points) {
    const int group = arrays.ItemGroup[item.entry];
    for (int k = 1; k <= arrays.GroupTop[group]; ++k) {
      const int position = arrays.GroupStart[group] + k;
      map.points.push_back({item.entry,
                            PlaceOfValue(map.categories, arrays.CategoryToCode[position]),
                            item.measure + scale.Distance(boundaries[position]), item.place});
    }
  }
  return map;
}

}  // namespace vardento
