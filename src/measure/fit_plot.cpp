#include "measure/fit_plot.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "measure/entry_values.h"

namespace vardento {
namespace {

constexpr std::array kMeanSquareGuides = {1.0F, 2.0F};
constexpr std::array kStandardisedGuides = {-2.0F, 0.0F, 2.0F};
constexpr std::array kLogarithmGuides = {-0.3F, 0.0F, 0.3F};
constexpr float kFarthestFit = 10;

std::span<const float> GuidesOf(FitScale scale) {
  if (scale == FitScale::MeanSquares) return kMeanSquareGuides;
  if (scale == FitScale::Logarithms) return kLogarithmGuides;
  return kStandardisedGuides;
}

// What the axis covers whatever the data are.
std::pair<float, float> LeastRange(FitScale scale) {
  if (scale == FitScale::MeanSquares) return {0.5F, 1.5F};
  if (scale == FitScale::Logarithms) return {-0.5F, 0.5F};
  return {-3.0F, 3.0F};
}

}  // namespace

FitScale FitScaleOf(const ControlSettings& settings) {
  if (settings.MNSQ) return FitScale::MeanSquares;
  return settings.LOCAL == 'L' ? FitScale::Logarithms : FitScale::Standardised;
}

FitPoint FitPointOf(const Run& run, Facet facet, int entry) {
  const RunArrays& arrays = run.arrays;
  const bool persons = facet == Facet::Persons;
  FitPoint point{entry, MeasureOf(run, facet, entry)};
  if (run.settings.MNSQ) {
    point.infit = persons ? arrays.PersonInfit[entry] : arrays.ItemInfit[entry];
    point.outfit = persons ? arrays.PersonOutfit[entry] : arrays.ItemOutfit[entry];
  } else {
    point.infit = persons ? arrays.PersonInfitZ[entry] : arrays.ItemInfitZ[entry];
    point.outfit = persons ? arrays.PersonOutfitZ[entry] : arrays.ItemOutfitZ[entry];
  }
  return point;
}

FitAxis FindFitAxis(const Run& run, Facet facet) {
  const FitScale scale = FitScaleOf(run.settings);
  const FacetSummary& summary = SummaryOf(run.results, facet);
  const bool squares = scale == FitScale::MeanSquares;
  const Statistic& infit = squares ? summary.infit : summary.infitZ;
  const Statistic& outfit = squares ? summary.outfit : summary.outfitZ;
  auto [low, high] = LeastRange(scale);
  if (run.settings.FRANGE != 0) {
    high = std::fabs(run.settings.FRANGE);
    low = -high;
  } else if (summary.measured > 0) {
    low = std::min({low, infit.minimum, outfit.minimum});
    high = std::max({high, infit.maximum, outfit.maximum});
  }
  return {scale, std::max(std::floor(low), -kFarthestFit), std::min(std::ceil(high), kFarthestFit),
          GuidesOf(scale)};
}

FitAxis FindComparisonAxis(const Run& run, Facet facet) {
  FitAxis axis = FindFitAxis(run, facet);
  if (axis.scale == FitScale::MeanSquares) axis.low = 0;
  axis.high = std::max(axis.high, axis.low + 1);
  return axis;
}

std::vector<FitPoint> CollectFitPoints(const Run& run, Facet facet, std::span<const int> entries) {
  const FacetArrays arrays = ArraysOf(run, facet);
  std::vector<FitPoint> points;
  for (const int entry : entries) {
    if (IsActive(arrays.status[entry])) points.push_back(FitPointOf(run, facet, entry));
  }
  return points;
}

std::vector<Misfit> FindMisfits(const Run& run, Facet facet, std::span<const int> entries) {
  const ControlSettings& settings = run.settings;
  const FacetArrays arrays = ArraysOf(run, facet);
  const float given = facet == Facet::Persons ? settings.FITP : settings.FITI;
  const float threshold = settings.MNSQ ? 1 + given / 10 : given;
  std::vector<Misfit> misfits;
  int place = 0;
  for (const int entry : entries) {
    ++place;
    if (!IsActive(arrays.status[entry])) continue;
    const FitPoint fit = FitPointOf(run, facet, entry);
    if (fit.infit < threshold && fit.outfit < threshold) continue;
    misfits.push_back({fit, place, IsAnchored(arrays.status[entry])});
  }
  return misfits;
}

}  // namespace vardento
