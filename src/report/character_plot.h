// A plot of curves or points over the measure: frame, numbers at its left, measures below it.
#pragma once

#include <string_view>

#include "report/measure_range.h"
#include "report/plot_grid.h"

namespace vardento {

// What stands around the cells of a plot.
struct PlotFrame {
  const PlotAxis& axis;  // below: columns, ticks and units, from ScalePlotAxis
  float low = 0;         // the measure at column 0
  std::string_view axisLabel = {};
  std::string_view caption = {};  // printed downward at the left
  // At the left: with `scores`, and with a scale above 1, the rows are scores from `lowest` to
  // `lowest` + scale, in halves where there is room; else probabilities.
  int scale = 1;
  int lowest = 0;
  bool scores = false;
};

// Prints rows LastRow to 0 of the grid, columns 0 to axis.columns.
void PutCharacterPlot(Run& run, const PlotGrid& grid, const PlotFrame& frame);

// The measures below or above a plot: one for each tick, its last digit in the tick's column. The
// first tick stands at column `first` of the line. A number that would run into the one before it,
// or is too wide, is left out.
void PutAxisNumbers(ReportLine& line, const PlotAxis& axis, float low, int first);
// A rule over the whole width of a plot: a corner at column `first` - 1, a cross at each tick, the
// other corner.
void PutAxisRule(ReportLine& line, const PlotAxis& axis, int first, Box left, Box right);

// A row of a plot: a character of its caption, the row's number at the left if it has one, and the
// cells from column `first` of the line on, between sides that are crosses where there is a number.
void PutPlotRow(ReportLine& line, const PlotGrid& grid, int row, int first, char caption,
                std::string_view number);
// What the axis below a plot is, in the middle of the plot's columns.
void PutAxisTitle(ReportLine& line, const PlotAxis& axis, int first, std::string_view title);

}  // namespace vardento
