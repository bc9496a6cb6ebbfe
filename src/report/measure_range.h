// The measure scale of plots and maps: its ends, its unit, its fit to the columns of a plot.
#pragma once

#include <array>
#include <string_view>

#include "report/report_context.h"

namespace vardento {

// Sets the context's rangeLow, rangeHigh (user units, whole multiples of rangeUnit), rangeUnit (1,
// 10 or 100) and rangeSpan (whole units between them). `boundaries` holds, at the position of each
// category of each group, the boundary below it in logits from the item's measure; Tables that
// show categories widen the range by it (see TableNeeds).
void MeasureRange(ReportContext& context, const Array1<double>& boundaries);
// The same from ends that the caller has found, user units: what the request says of them, and
// whole units, outward.
void SetMeasureRange(ReportContext& context, float low, float high);

// The horizontal measure axis of a character plot.
struct PlotAxis {
  int columns = 70;   // in: columns available; out: a whole number of ticks
  int tickWidth = 5;  // columns from tick to tick
  int ticks = 0;
  float unit = 1;  // in: measure units of the scale; out: units from tick to tick
  float high = 0;  // out: the scale's end, low + ticks x unit
  float columnsPerMeasure = 0;
  float measuresPerColumn = 0;
};
void ScalePlotAxis(const TableRequest& request, PlotAxis& axis, float unit, float low, float high);

// A caption that a plot prints downward, one character for each of its rows 0 to `rows`.
using CaptionField = std::array<char, 67>;
CaptionField CentreCaption(std::string_view text, int rows);

}  // namespace vardento
