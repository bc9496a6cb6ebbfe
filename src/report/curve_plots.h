// The curves of one group's categories, plotted: probabilities, expected score, cumulative
// probabilities.
#pragma once

#include <string_view>
#include <vector>

#include "measure/category_curves.h"
#include "report/character_plot.h"

namespace vardento {

// The curves of a group traced over the columns of an axis, each plot on a grid of its own.
class CurvePlots {
 public:
  static constexpr int kLargestHeight = 20;

  // `low`: the measure at the axis's column 0. `height`: rows of the probability plots, 10 or 20.
  CurvePlots(const CategoryCurves& curves, const PlotAxis& axis, float low, int height);

  // Each prints title and plot; `axisLabel` stands below the measures.
  void PutProbabilities(Run& run, std::string_view axisLabel) const;
  void PutExpectedScore(Run& run, std::string_view axisLabel) const;
  void PutCumulative(Run& run, std::string_view axisLabel) const;

 private:
  // A plot's grid and the row that each of its curves had in the column traced before.
  struct Band {
    PlotGrid grid;
    std::vector<int> lastRow;
    void Trace(int curve, int column, double share, char mark);
  };
  Band MakeBand(int height) const;
  void TraceColumn(int column, std::vector<double>& probabilities);
  void DrawScoreGuides();
  void DrawGuide(double measure, char mark);
  void DrawMedians();
  char MarkOf(int category) const;
  int ColumnOf(double measure) const;
  void PutPlot(Run& run, const Band& band, std::string_view title, const PlotFrame& frame) const;
  PlotFrame Frame(std::string_view axisLabel, std::string_view caption) const;

  const CategoryCurves& curves_;
  const PlotAxis& axis_;
  float low_;
  Band probability_, expected_, cumulative_;
};

}  // namespace vardento
