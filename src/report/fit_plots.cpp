#include "report/fit_plots.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>

#include "measure/entry_values.h"
#include "measure/fit_plot.h"
#include "report/character_plot.h"
#include "report/distribution_strip.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kFirstColumn = 9;   // of the cells
constexpr int kTitleColumn = 35;  // of the words below a plot
constexpr int kNumberWidth = 4;   // of the numbers of the fit
constexpr int kMostRows = 40;
constexpr int kLinesAround = 16;    // what a page holds beside the rows
constexpr int kColumns = 67;        // over the measure
constexpr int kSquareColumns = 70;  // of one fit over the other

// The rows of a plot, from 0 at the low end of the fit.
struct FitRows {
  int last = 0;
  double low = 0, rowsPerUnit = 1;

  int Nearest(double fit) const { return NearestPlace((fit - low) * rowsPerUnit, last); }
  double FitAt(int row) const { return row / rowsPerUnit + low; }
};

// As many whole rows to a unit as fit the page, up to 4; a low plot may have 5.
FitRows DecideRows(const FitAxis& axis, int maxPage) {
  const int height = maxPage == 0 ? kMostRows : std::clamp(maxPage - kLinesAround, 1, kMostRows);
  const double span = axis.high - axis.low;
  FitRows rows{0, axis.low, 1};
  for (const double limit : {4.0, 5.0}) {
    const double perUnit = std::clamp(std::round(height / span), 1.0, limit);
    rows.last = std::max(std::min(height, static_cast<int>(std::lround(perUnit * span))), 1);
    if (rows.last >= 20) break;
  }
  rows.rowsPerUnit = rows.last / span;
  return rows;
}

// Logarithms are shown as the mean-squares that they stand for.
std::string MeanSquareAtRow(const FitRows& rows, int row) {
  if (row == rows.last) return "MNSQ";
  const double value = std::round(std::exp(rows.FitAt(row)) * 10) / 10;
  if (value <= 0 || value >= 10 || rows.Nearest(std::log(value)) != row) return {};
  return fixed_field(value, kNumberWidth, 1);
}

std::string UnitAtRow(const FitRows& rows, int row) {
  const double units = std::round(row / rows.rowsPerUnit);
  if (std::round(units * rows.rowsPerUnit) != row) return {};
  return integer_field(std::lround(rows.FitAt(row)), kNumberWidth);
}

// What the Tables of one facet share: where points and lines of a plot stand, and its frame.
class FitPlotter {
 public:
  FitPlotter(ReportContext& context, const FitAxis& fit, const PlotAxis& axis, float low)
      : context_(context),
        fit_(fit),
        axis_(axis),
        low_(low),
        rows_(DecideRows(fit, context.run.settings.MAXPAGE)),
        grid_(axis.columns, rows_.last) {}

  PlotGrid& Grid() { return grid_; }
  const FitRows& Rows() const { return rows_; }
  int ColumnOf(double value) const {
    return NearestPlace((value - low_) * axis_.columnsPerMeasure, axis_.columns);
  }
  double ValueAt(int column) const {
    return static_cast<double>(column) / axis_.columnsPerMeasure + low_;
  }

  // What lies beyond an end of a scale stands at that end.
  void PutEntry(int entry, double across, double up) {
    grid_.PutEntry(std::clamp(ColumnOf(across), 0, axis_.columns),
                   std::clamp(rows_.Nearest(up), 0, rows_.last),
                   PlotLetter(context_.SubjectList(), entry));
  }

  void PutRule(Box left, Box right) {
    ReportLine line;
    PutAxisRule(line, axis_, kFirstColumn, left, right);
    PutReportLine(context_.run, line);
  }

  void PutRows(std::string_view captionText) {
    const CaptionField caption = CentreCaption(captionText, rows_.last);
    for (int row = rows_.last; row >= 0; --row) {
      const std::string number =
          fit_.scale == FitScale::Logarithms ? MeanSquareAtRow(rows_, row) : UnitAtRow(rows_, row);
      ReportLine line;
      PutPlotRow(line, grid_, row, kFirstColumn,
                 caption[static_cast<std::size_t>(rows_.last - row)], number);
      line.Text(number);
      PutReportLine(context_.run, line);
    }
  }

  void PutTitle(std::string_view title) {
    ReportLine line;
    line.At(kTitleColumn).Text(title);
    PutReportLine(context_.run, line);
  }

 private:
  ReportContext& context_;
  const FitAxis& fit_;
  const PlotAxis& axis_;
  float low_;  // value at column 0
  FitRows rows_;
  PlotGrid grid_;
};

std::string SubjectOf(const ReportContext& context) {
  return std::string(TrimRight(SingularLabel(context.run.settings, context.needs.subject)));
}

std::string JoinWords(std::initializer_list<std::string_view> words) {
  std::string text;
  for (const std::string_view word : words) text.append(text.empty() ? "" : " ").append(word);
  return text;
}

// The guides of the fit, drawn across between the lowest row and the highest.
void MarkGuides(FitPlotter& plot, const FitAxis& fit) {
  for (const float guide : fit.guides) {
    const int row = plot.Rows().Nearest(guide);
    if (row > 0 && row < plot.Rows().last) plot.Grid().FillBlankRow(row, '-');
  }
}

// `statistic` is the value of a point that the plot shows, `word` its name in 6 columns.
void PrintFitOverMeasure(ReportContext& context, float FitPoint::*statistic,
                         std::string_view word) {
  Run& run = context.run;
  const Facet facet = context.needs.subject;
  const SelectedList& list = ListInFitOrder(context);
  const FitAxis fit = FindFitAxis(run, facet);
  MeasureRange(context, run.arrays.CategoryHalfPoint);
  PlotAxis axis{.columns = kColumns, .tickWidth = 6};
  ScalePlotAxis(run.request, axis, context.rangeUnit, context.rangeLow, context.rangeHigh);
  FitPlotter plot(context, fit, axis, context.rangeLow);
  for (const FitPoint& point : CollectFitPoints(run, facet, EntriesOf(list))) {
    plot.PutEntry(point.entry, point.measure, point.*statistic);
  }
  plot.Grid().FillBlankColumn(plot.ColumnOf(SummaryOf(run.results, facet).measure.mean), '|');
  MarkGuides(plot, fit);

  const std::string subject = SubjectOf(context);
  ReportLine numbers;
  PutAxisNumbers(numbers, axis, context.rangeLow, kFirstColumn);
  PutPageHeading(run, 1);
  PutReportLine(run, numbers);
  plot.PutRule(Box::TopLeft, Box::TopRight);
  plot.PutRows(JoinWords({subject, word, FitWord(run.settings)}));
  plot.PutRule(Box::BottomLeft, Box::BottomRight);
  PutReportLine(run, numbers);
  plot.PutTitle(JoinWords({subject, "MEASURE"}));
  PutDistributionStrip(run, OtherFacet(facet),
                       {.axis = axis, .low = context.rangeLow, .firstColumn = kFirstColumn});
}

// A line up and a line across for each guide, joined where they meet.
void DrawGuides(FitPlotter& plot, const FitAxis& fit) {
  PlotGrid& grid = plot.Grid();
  for (const float guide : fit.guides) {
    const int column = plot.ColumnOf(guide);
    for (int row = 0; row <= grid.LastRow() && grid.Holds(column, row); ++row) {
      grid.MergeGuide(column, row, column == 0 ? kDrawnVertical : '|');
    }
    const int row = plot.Rows().Nearest(guide);
    for (int c = 0; c <= grid.LastColumn() && grid.Holds(c, row); ++c) {
      grid.MergeGuide(c, row, '-');
    }
  }
}

// Where INFIT and OUTFIT are the same: the cells whose column and row tell one value.
void DrawDiagonal(FitPlotter& plot) {
  const FitRows& rows = plot.Rows();
  for (int row = 0; row <= rows.last; ++row) {
    const int column = plot.ColumnOf(rows.FitAt(row));
    if (plot.Grid().Holds(column, row) && rows.Nearest(plot.ValueAt(column)) == row) {
      plot.Grid().FillBlank(column, row, '.');
    }
  }
}

// The numbers below INFIT: logarithms as the mean-squares that they stand for.
ReportLine InfitNumbers(const FitAxis& fit, const PlotAxis& axis) {
  ReportLine line;
  if (fit.scale != FitScale::Logarithms) {
    PutAxisNumbers(line, axis, fit.low, kFirstColumn);
    return line;
  }
  // A number that would run into the one before it is left out.
  const int step = (kNumberWidth + axis.tickWidth) / axis.tickWidth;
  for (int tick = 0; tick <= axis.ticks; tick += step) {
    line.At(kFirstColumn - 2 + tick * axis.tickWidth);
    line.Fixed(std::exp(fit.low + static_cast<float>(tick) * axis.unit), kNumberWidth, 1);
  }
  line.At(kFirstColumn - 2).Text("MNSQ");
  return line;
}

}  // namespace

void PrintInfitPlot(ReportContext& context) {
  PrintFitOverMeasure(context, &FitPoint::infit, "INFIT ");
}

void PrintOutfitPlot(ReportContext& context) {
  PrintFitOverMeasure(context, &FitPoint::outfit, "OUTFIT");
}

void PrintOutfitAgainstInfit(ReportContext& context) {
  Run& run = context.run;
  const Facet facet = context.needs.subject;
  const SelectedList& list = ListInFitOrder(context);
  const FitAxis fit = FindComparisonAxis(run, facet);
  PlotAxis axis{.columns = kSquareColumns, .tickWidth = 4};
  ScalePlotAxis(run.request, axis, 1, fit.low, fit.high);
  FitPlotter plot(context, fit, axis, fit.low);
  for (const FitPoint& point : CollectFitPoints(run, facet, EntriesOf(list))) {
    plot.PutEntry(point.entry, point.infit, point.outfit);
  }
  DrawGuides(plot, fit);
  DrawDiagonal(plot);
  const std::string subject = SubjectOf(context);
  const std::string_view word = FitWord(run.settings);
  // Two rules, the numbers and the title.
  PutPartHeading(run, 1, plot.Rows().last + 1 + 4);
  plot.PutRule(Box::TopLeft, Box::TopRight);
  plot.PutRows(JoinWords({subject, "OUTFIT", word}));
  plot.PutRule(Box::BottomLeft, Box::BottomRight);
  PutReportLine(run, InfitNumbers(fit, axis));
  plot.PutTitle(JoinWords({subject, "INFIT", word}));
}

}  // namespace vardento
