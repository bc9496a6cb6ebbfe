// How many persons or items stand at each place of a plot's measure axis, digits downward, with
// their mean and standard deviations below: the strips under plots and score curves.
#pragma once

#include "report/measure_range.h"

namespace vardento {

struct StripForm {
  const PlotAxis& axis;
  float low = 0;                   // the measure at the axis's first column
  int firstColumn = 10;            // where that column stands on the line
  bool extremesByMeasure = false;  // else they stand at the ends of the axis
  bool wordBehind = false;         // the facet's word stands behind the units, in full
};

// Prints the strip of one facet: persons by PWEIGHT=, items by IWEIGHT=, each column's total
// rounded up.
void PutDistributionStrip(Run& run, Facet facet, const StripForm& form);

}  // namespace vardento
