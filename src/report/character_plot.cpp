#include "report/character_plot.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "report/page.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kCaptionColumn = 2;
constexpr int kFirstColumn = 10;  // of the cells
constexpr int kNumberWidth = 5;

// The number at the left of a row; empty for a row without one.
std::string ScoreAtRow(int row, int height, int scale, int lowest) {
  const double halves = std::round(static_cast<double>(row) * scale * 2 / height);
  if (std::round(halves * height / (2.0 * scale)) != row) return {};
  constexpr int kHalvesShown = 999;  // on longer scales whole numbers alone
  const auto count = static_cast<long long>(halves);
  if (count % 2 != 0 && scale <= kHalvesShown) {
    return fixed_field((2.0 * lowest + halves) * 0.5, kNumberWidth, 1);
  }
  return integer_field(std::lround(halves / 2) + lowest, kNumberWidth);
}

std::string ProbabilityAtRow(int row, int height) {
  if (row * 5 % height != 0 && row * 2 % height != 0) return {};
  return fixed_field(static_cast<double>(row) / height, kNumberWidth, 1);
}

std::string NumberAtRow(int row, int height, const PlotFrame& frame) {
  return frame.scores || frame.scale > 1 ? ScoreAtRow(row, height, frame.scale, frame.lowest)
                                         : ProbabilityAtRow(row, height);
}

}  // namespace

void PutAxisNumbers(ReportLine& line, const PlotAxis& axis, float low, int first) {
  int free = 1;
  for (int tick = 0; tick <= axis.ticks; ++tick) {
    const std::string number =
        integer_field(std::lround(low + static_cast<float>(tick) * axis.unit), kNumberWidth);
    const std::string_view digits = Trim(number);
    const int column = first + tick * axis.tickWidth - TextWidth(digits) + 1;
    if (column < free || digits.front() == '*') continue;
    line.At(column).Text(digits);
    free = line.Column() + 1;
  }
}

void PutAxisRule(ReportLine& line, const PlotAxis& axis, int first, Box left, Box right) {
  line.At(first - 1).Repeat(left, 1).Repeat(Box::Cross, 1);
  for (int tick = 1; tick <= axis.ticks; ++tick) {
    line.Repeat(Box::Horizontal, axis.tickWidth - 1).Repeat(Box::Cross, 1);
  }
  line.Repeat(right, 1);
}

void PutPlotRow(ReportLine& line, const PlotGrid& grid, int row, int first, char caption,
                std::string_view number) {
  const Box side = number.empty() ? Box::Vertical : Box::Cross;
  line.At(kCaptionColumn).Repeat(caption, 1).Text(number).At(first - 1).Repeat(side, 1);
  grid.PutRow(line, row);
  line.Repeat(side, 1);
}

void PutAxisTitle(ReportLine& line, const PlotAxis& axis, int first, std::string_view title) {
  const int spare = axis.columns + 1 - TextWidth(title);
  line.At(std::max(first + spare / 2, kCaptionColumn)).Text(title);
}

void PutCharacterPlot(Run& run, const PlotGrid& grid, const PlotFrame& frame) {
  const int height = std::max(grid.LastRow(), 1);
  // The caption runs from the rule above the rows to the one below them.
  const CaptionField caption = CentreCaption(frame.caption, grid.LastRow() + 2);
  std::size_t next = 0;
  const auto nextOfCaption = [&] { return next < caption.size() ? caption[next++] : ' '; };
  ReportLine line;
  line.At(kCaptionColumn).Repeat(nextOfCaption(), 1);
  PutAxisRule(line, frame.axis, kFirstColumn, Box::TopLeft, Box::TopRight);
  PutReportLine(run, line);
  for (int row = grid.LastRow(); row >= 0; --row) {
    line.Clear();
    PutPlotRow(line, grid, row, kFirstColumn, nextOfCaption(), NumberAtRow(row, height, frame));
    PutReportLine(run, line);
  }
  line.Clear();
  line.At(kCaptionColumn).Repeat(nextOfCaption(), 1);
  PutAxisRule(line, frame.axis, kFirstColumn, Box::BottomLeft, Box::BottomRight);
  PutReportLine(run, line);
  line.Clear();
  PutAxisNumbers(line, frame.axis, frame.low, kFirstColumn);
  PutReportLine(run, line);
  line.Clear();
  PutAxisTitle(line, frame.axis, kFirstColumn, frame.axisLabel);
  PutReportLine(run, line);
}

}  // namespace vardento
