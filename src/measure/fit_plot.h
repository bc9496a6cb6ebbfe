// How well persons or items fit, as plots show it: a point for each, and the axis of the fit. The
// fit is told by mean-squares (MNSQ=Y) or by the standardised values under their name (LOCAL=).
#pragma once

#include <span>
#include <vector>

#include "run/facet.h"
#include "run/run.h"

namespace vardento {

// Mean-squares, 1 expected; standardised values, 0 expected; logarithms of mean-squares.
enum class FitScale { MeanSquares, Standardised, Logarithms };

FitScale FitScaleOf(const ControlSettings& settings);

// One entry: its measure in the user's units, and both statistics in the scale of the plots.
struct FitPoint {
  int entry = 0;
  float measure = 0;
  float infit = 0, outfit = 0;
};
FitPoint FitPointOf(const Run& run, Facet facet, int entry);

// An axis of fit, from `low` to `high` (whole numbers from -10 to 10), and the values that plots
// mark by a line.
struct FitAxis {
  FitScale scale = FitScale::MeanSquares;
  float low = 0, high = 0;
  std::span<const float> guides;
};
// The axis that INFIT and OUTFIT of one side share: minus to plus FRANGE=, else what takes in all
// active entries and at least .5 to 1.5, -3 to 3, or -.5 to .5 in logarithms.
FitAxis FindFitAxis(const Run& run, Facet facet);
// The axis of INFIT against OUTFIT: mean-squares begin at 0.
FitAxis FindComparisonAxis(const Run& run, Facet facet);

// The points of the active ones among `entries`, in their order.
std::vector<FitPoint> CollectFitPoints(const Run& run, Facet facet, std::span<const int> entries);

// The entries whose INFIT or OUTFIT reaches FITP= or FITI=: by mean-squares 1 and a tenth of it.
struct Misfit {
  FitPoint fit;
  int place = 0;  // in `entries`, from 1
  bool anchored = false;
};
std::vector<Misfit> FindMisfits(const Run& run, Facet facet, std::span<const int> entries);

}  // namespace vardento
