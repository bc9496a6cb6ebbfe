// The plot of a component: its loadings over the measures.
#include <algorithm>
#include <cmath>
#include <string>

#include "measure/entry_values.h"
#include "report/character_plot.h"
#include "report/component_pages.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kTitleColumn = 9;
constexpr int kFirstColumn = 9;  // of the cells
constexpr int kColumns = 67;     // over the measure
constexpr int kNumberWidth = 4;  // of loadings
constexpr int kStatementLines = 3;
constexpr int kLinesAround = 5;  // two rules, the numbers twice, the title
constexpr int kTooManyRows = 41;

// The rows of a plot: whole steps of the loading, so that 0 falls on a row where the plot has it.
struct LoadingRows {
  double step = 0.05;
  int bottom = 0;  // steps from a loading of 0 up to row 0
  int last = 0;

  int Nearest(double loading) const {
    return NearestPlace(std::round(loading / step) - bottom, last);
  }
  // A tenth of a loading at its row; empty for rows that have none.
  std::string NumberAt(int row) const {
    const double tenths = std::clamp(std::round((row + bottom) * step * 10), -10.0, 10.0);
    return Nearest(tenths / 10) == row ? fixed_field(tenths / 10, kNumberWidth, 1) : std::string();
  }
};

// The smallest step from .05 on, in hundredths, that leaves few enough rows.
LoadingRows DecideRows(const Component& component) {
  const double span = component.largest - component.smallest;
  for (int hundredths = std::max(5, static_cast<int>(100 * span / kTooManyRows));; ++hundredths) {
    const double step = hundredths / 100.0;
    const auto top = static_cast<int>(std::ceil(component.largest / step));
    const auto bottom = static_cast<int>(std::floor(component.smallest / step));
    if (top - bottom < kTooManyRows) return {step, bottom, std::max(top - bottom, 1)};
  }
}

PlotGrid DrawLoadings(const ReportContext& context, const ResidualComponents& found,
                      const Component& component, const PlotAxis& axis, const LoadingRows& rows) {
  const Run& run = context.run;
  PlotGrid grid(axis.columns, rows.last);
  const Vector1<char> marks = MarkEntries(found);
  const auto columnOf = [&](float measure) {
    return NearestPlace((measure - context.rangeLow) * axis.columnsPerMeasure, axis.columns);
  };
  for (const int entry : found.order) {
    const int column = columnOf(MeasureOf(run, found.facet, entry));
    grid.PutEntry(std::clamp(column, 0, axis.columns),
                  std::clamp(rows.Nearest(component.loadings[entry]), 0, rows.last), marks[entry]);
  }
  grid.FillBlankColumn(columnOf(run.results.summary.items.measure.mean), '|');
  grid.FillBlankRow(rows.Nearest(0), '-');
  return grid;
}

void PutStatement(Run& run, const ResidualComponents& found, const Component& component) {
  const std::string title("PRINCIPAL COMPONENTS (");
  PutSqueezedLine(run, kTitleColumn,
                  title + std::string(ResidualWord(run.inForce.PRCOMP)) + ") FACTOR PLOT");
  std::string text = "Factor" + integer_field(component.number, 2) + " extracts ";
  text += PlainNumber(component.eigenvalue, 8, 1) + " units out of ";
  text += std::to_string(found.entries.size()) + " units of ";
  text += SingularLabel(run.settings, found.facet) + " noise.";
  PutSqueezedLine(run, kTitleColumn, text);
  PutVarianceRatios(run, found, component);
}

}  // namespace

void PutLoadingPlot(ReportContext& context, const ResidualComponents& found,
                    const Component& component) {
  Run& run = context.run;
  const bool drawn = component.smallest < component.largest;
  const LoadingRows rows = drawn ? DecideRows(component) : LoadingRows();
  PutPartHeading(run, 1, kStatementLines + (drawn ? rows.last + 1 + kLinesAround : 0));
  PutStatement(run, found, component);
  if (!drawn) return;
  PlotAxis axis{.columns = kColumns, .tickWidth = 6};
  ScalePlotAxis(run.request, axis, context.rangeUnit, context.rangeLow, context.rangeHigh);
  const PlotGrid grid = DrawLoadings(context, found, component, axis, rows);
  const CaptionField caption =
      CentreCaption("FACTOR " + std::to_string(component.number) + " LOADING", rows.last);

  const auto putRule = [&](Box left, Box right) {
    ReportLine line;
    PutAxisRule(line, axis, kFirstColumn, left, right);
    PutReportLine(run, line);
  };
  ReportLine numbers;
  PutAxisNumbers(numbers, axis, context.rangeLow, kFirstColumn);
  PutReportLine(run, numbers);
  putRule(Box::TopLeft, Box::TopRight);
  for (int row = rows.last; row >= 0; --row) {
    ReportLine line;
    PutPlotRow(line, grid, row, kFirstColumn, caption[static_cast<std::size_t>(rows.last - row)],
               rows.NumberAt(row));
    PutReportLine(run, line);
  }
  putRule(Box::BottomLeft, Box::BottomRight);
  PutReportLine(run, numbers);
  ReportLine title;
  PutAxisTitle(title, axis, kFirstColumn,
               std::string(TrimRight(SingularLabel(run.settings, found.facet))) + " MEASURE");
  PutReportLine(run, title);
}

}  // namespace vardento
