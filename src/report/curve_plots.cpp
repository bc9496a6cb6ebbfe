#include "report/curve_plots.h"

#include <algorithm>
#include <cmath>

#include "report/page.h"

namespace vardento {
namespace {

// Beside a low plot there is room for the first word alone.
std::string_view ProbabilityCaption(int height) {
  return height < CurvePlots::kLargestHeight ? "PROBABILITY" : "PROBABILITY OF RESPONSE";
}

// A whole number of rows for each score point, as many as there is room for.
int HeightOfScores(int height, int top) {
  return std::min(std::max(height / top, 1) * top, CurvePlots::kLargestHeight);
}

}  // namespace

CurvePlots::CurvePlots(const CategoryCurves& curves, const PlotAxis& axis, float low, int height)
    : curves_(curves),
      axis_(axis),
      low_(low),
      probability_(MakeBand(height)),
      expected_(MakeBand(HeightOfScores(height, curves.Top()))),
      cumulative_(MakeBand(height)) {
  for (int row = height; row >= 0; --row) cumulative_.grid.PutCurve(0, row, MarkOf(0));
  std::vector<double> probabilities(static_cast<std::size_t>(curves_.Top()) + 1);
  for (int column = axis_.columns; column >= 0; --column) TraceColumn(column, probabilities);
  DrawScoreGuides();
  DrawMedians();
}

CurvePlots::Band CurvePlots::MakeBand(int height) const {
  const auto count = static_cast<std::size_t>(curves_.Top()) + 1;
  return {PlotGrid(axis_.columns, height), std::vector<int>(count, -1)};
}

// The last digit of the value that the category stands for.
char CurvePlots::MarkOf(int category) const {
  return static_cast<char>('0' + curves_.ValueOf(category) % 10);
}

// -1 or less, or beyond the last column, where the measure is off the scale.
int CurvePlots::ColumnOf(double measure) const {
  return NearestPlace((measure - low_) * axis_.columnsPerMeasure, axis_.columns);
}

// A point of a curve at `share` of the height, and what lies between it and the point before.
void CurvePlots::Band::Trace(int curve, int column, double share, char mark) {
  const int height = grid.LastRow();
  const int row = static_cast<int>(std::lround(height * std::clamp(share, 0.0, 1.0)));
  int& last = lastRow[static_cast<std::size_t>(curve)];
  grid.PutCurve(column, row, mark);
  if (last >= 0) {
    for (int r = std::min(row, last) + 1; r < std::max(row, last); ++r) {
      grid.PutCurve(column, r, mark);
    }
  }
  last = row;
}

void CurvePlots::TraceColumn(int column, std::vector<double>& probabilities) {
  const double measure = low_ + static_cast<double>(column) * axis_.measuresPerColumn;
  const double score = curves_.At(measure, probabilities.data());
  const int top = curves_.Top();
  const int nearest = std::clamp(static_cast<int>(std::lround(score)), 0, top);
  expected_.Trace(0, column, score / top, MarkOf(nearest));
  double sum = 0;
  for (int k = 0; k <= top; ++k) {
    const double p = probabilities[static_cast<std::size_t>(k)];
    probability_.Trace(k, column, p, MarkOf(k));
    sum += p;
    if (k < top) cumulative_.Trace(k, column, sum, MarkOf(k + 1));
  }
}

// From the axis up to the curve.
void CurvePlots::DrawGuide(double measure, char mark) {
  PlotGrid& grid = expected_.grid;
  const int column = ColumnOf(measure);
  if (!grid.Holds(column, 0)) return;
  grid.FillBlank(column, 0, mark);
  for (int row = 1; row <= grid.LastRow() && grid.IsBlank(column, row); ++row) {
    grid.FillBlank(column, row, mark);
  }
}

// Where the expected score is a category, and where one category's zone meets the next.
void CurvePlots::DrawScoreGuides() {
  for (int k = curves_.Top() - 1; k >= 1; --k) DrawGuide(curves_.MeasureOfScore(k), '*');
  for (int k = curves_.Top(); k >= 1; --k) DrawGuide(curves_.MeasureOfHalfPoint(k), '|');
}

// The line of even chances, and where each step's curve crosses it.
void CurvePlots::DrawMedians() {
  PlotGrid& grid = cumulative_.grid;
  const int half = grid.LastRow() / 2;
  for (int column = 0; column <= grid.LastColumn(); ++column) grid.FillBlank(column, half, '-');
  for (int k = curves_.Top(); k >= 1; --k) {
    const int column = ColumnOf(curves_.ThurstoneThreshold(k));
    if (!grid.Holds(column, 0)) continue;
    for (int row = half; row >= 0; --row) grid.FillBlank(column, row, '|');
  }
}

PlotFrame CurvePlots::Frame(std::string_view axisLabel, std::string_view caption) const {
  return {.axis = axis_, .low = low_, .axisLabel = axisLabel, .caption = caption};
}

void CurvePlots::PutPlot(Run& run, const Band& band, std::string_view title,
                         const PlotFrame& frame) const {
  ReportLine line;
  line.At(10).Text(title);
  PutReportLine(run, line);
  PutCharacterPlot(run, band.grid, frame);
}

void CurvePlots::PutProbabilities(Run& run, std::string_view axisLabel) const {
  PutPlot(run, probability_,
          curves_.Top() < 2 ? "DICHOTOMOUS CURVES"
                            : "CATEGORY PROBABILITIES: MODES - Step measures at intersections",
          Frame(axisLabel, ProbabilityCaption(probability_.grid.LastRow())));
}

void CurvePlots::PutExpectedScore(Run& run, std::string_view axisLabel) const {
  PlotFrame frame = Frame(axisLabel, "EXPECTED SCORE");
  frame.scale = curves_.Top();
  frame.lowest = curves_.ValueOf(0);
  PutPlot(run, expected_, "EXPECTED SCORE OGIVE: MEANS", frame);
}

void CurvePlots::PutCumulative(Run& run, std::string_view axisLabel) const {
  PutPlot(run, cumulative_, "THURSTONE THRESHOLDS: MEDIANS - Cumulative probabilities",
          Frame(axisLabel, ProbabilityCaption(cumulative_.grid.LastRow())));
}

}  // namespace vardento
