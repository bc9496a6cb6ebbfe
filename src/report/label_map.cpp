#include "report/label_map.h"

#include <algorithm>
#include <cmath>

#include "report/measure_range.h"
#include "report/page.h"
#include "report/variable_maps.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kWidestBar = 13, kNarrowestBar = 7;
constexpr int kWidestLabel = 99;
constexpr int kGap = 2;      // between the labels of a line
constexpr int kMargin = 10;  // columns of a line that neither bars nor labels take
constexpr int kFirstBar = 8;

Facet OtherOf(Facet facet) { return facet == Facet::Items ? Facet::Persons : Facet::Items; }

int DecideBarWidth(const Run& run, const RowCounts& counts) {
  const double wanted =
      std::min({run.settings.LINELEN / 4.0, counts.MostWeight(), 1.0 * kWidestBar});
  return static_cast<int>(std::max(wanted, 1.0 * kNarrowestBar));
}

int LinesOnPage(const Run& run) { return run.report.LinesOnPage; }

}  // namespace

std::vector<int> ListForMap(Run& run, Facet facet) {
  SelectedList list;
  if (facet == Facet::Persons || !run.settings.INUMB) {
    SortAlphabetically(run, facet, list);
    return list.entries;
  }
  const FacetArrays arrays = ArraysOf(run, facet);
  for (int entry = 1; entry <= arrays.Count(); ++entry) {
    if (IsMeasured(arrays.status[entry])) list.entries.push_back(entry);
  }
  return list.entries;
}

LabelMap::LabelMap(ReportContext& context, const VariableMap& map, const MapScale& scale,
                   Facet labelled)
    : run_(context.run),
      map_(map),
      scale_(scale),
      labelled_(labelled),
      other_(OtherOf(labelled)),
      labels_(context.run, labelled),
      oneLine_(context.needs.labelsOnOneLine),
      labelledCounts_(CountByRow(scale, map.Side(labelled))),
      otherCounts_(CountByRow(scale, map.Side(other_))),
      labelledMarks_(MarksByRow(scale, map.Side(labelled))),
      otherMarks_(MarksByRow(scale, map.Side(other_))),
      barWidth_(DecideBarWidth(run_, otherCounts_)),
      unit_(DecideBarUnit(run_, other_, otherCounts_.MostWeight(), barWidth_)) {}

int LabelMap::LineWidth() const {
  return std::min(run_.settings.LINELEN, ReportOutput::kMaxLine) - kMargin - barWidth_;
}

int LabelMap::LabelWidth() const {
  int width = std::min(labels_.Width(), kWidestLabel);
  const int most = labelledCounts_.MostEntries();
  if (oneLine_ && most > 0) width = std::min(width, LineWidth() / most - kGap);
  return std::max(width, 1);
}

int LabelMap::CellColumn(int column) const {
  return RuleColumn() + (map_.mirrored ? 4 : 3) + column * (cellWidth_ + kGap);
}

void LabelMap::Print(const LabelRows& rows, int width, std::string_view titleEnd,
                     const std::vector<std::string>& heads) {
  cellWidth_ = width;
  const auto holds = [&](int row) { return !rows[static_cast<std::size_t>(row)].empty(); };
  const auto counts = [&](int row) {
    return otherCounts_.entries[static_cast<std::size_t>(row)] > 0;
  };
  int top = scale_.LastRow();
  while (top > 0 && !holds(top) && !counts(top)) --top;
  top = scale_.TickAtOrAbove(top);
  int lowest = 0;
  while (lowest < top && !holds(lowest)) ++lowest;
  PutHead(titleEnd, heads);
  for (int row = top; row >= 0; --row) {
    PutRow(row, rows[static_cast<std::size_t>(row)]);
    const int maximum = run_.settings.MAXPAGE;
    const bool full = maximum > 0 && LinesOnPage(run_) + 4 > maximum;
    // A page that is full below all labels goes to the close: bars alone don't go on.
    if (full && row < lowest) break;
  }
  PutMapWords(run_, other_, MapEnd::Bottom, RuleColumn(), map_.mirrored);
  PutUnit();
}

void LabelMap::PutHead(std::string_view titleEnd, const std::vector<std::string>& heads) {
  PutPageHeading(run_, 1);
  ReportLine title;
  title.At(9).Text(PluralLabel(run_.settings, other_)).Text(" MAP OF ");
  PutReportLine(run_, title.Text(PluralLabel(run_.settings, labelled_)).Text(titleEnd));
  PutMapWords(run_, other_, MapEnd::Top, RuleColumn(), map_.mirrored);
  if (heads.empty()) return;
  ReportLine line;
  for (std::size_t column = 0; column < heads.size(); ++column) {
    line.At(CellColumn(static_cast<int>(column))).Text(CutToWidth(heads[column], cellWidth_));
  }
  PutReportLine(run_, line);
}

ReportLine LabelMap::RowStart(int row) const {
  const auto n = static_cast<std::size_t>(row);
  const bool tick = scale_.IsTick(row);
  ReportLine line;
  if (tick) line.At(2).Integer(scale_.NumberAt(row), 5);
  std::string bar = BarOf(unit_, otherCounts_.weights[n]);
  std::ranges::reverse(bar);
  line.At(kFirstBar).Text(PadLeft(bar, barWidth_));
  line.Skip(1).Repeat(otherMarks_[n], 1);
  PutMapRule(line, RuleColumn(), tick, map_.mirrored);
  return line.Repeat(labelledMarks_[n], 1);
}

void LabelMap::PutRow(int row, const std::vector<LabelCell>& cells) {
  ReportLine line = RowStart(row);
  if (cells.empty()) {
    CheckPageBreak(run_, LinesOnPage(run_) + 4);
    PutReportLine(run_, line);
    return;
  }
  for (std::size_t n = 0; n < cells.size(); ++n) {
    PutCell(line, cells[n]);
    if (n + 1 < cells.size() && cells[n + 1].line == cells[n].line) continue;
    CheckPageBreak(run_, LinesOnPage(run_) + 3);
    PutReportLine(run_, line);
    line.Clear();
  }
}

void LabelMap::PutCell(ReportLine& line, const LabelCell& cell) const {
  const int column = CellColumn(cell.column);
  int width = cellWidth_;
  if (cell.value >= 0) {
    const std::string value = IntegerText(cell.value);
    line.At(column).Text(CutToWidth(value, cellWidth_));
    width -= TextWidth(value) + 1;
  }
  if (!cell.withLabel || width < 1) return;
  const std::string text = labels_.Of(cell.entry);
  const std::string_view label = CutToWidth(text, width);
  const int start = cell.value >= 0 ? column + cellWidth_ - TextWidth(label) : column;
  line.At(start).Text(label);
}

void LabelMap::PutUnit() {
  if (unit_.unit <= 1) return;
  ReportLine line;
  line.At(3).Text("EACH '#' IS ").Text(Trim(integer_field(unit_.unit, 20))).Text(".");
  PutReportLine(run_, line);
}

LabelRows ArrangeLabels(const MapScale& scale, const MapSide& side, const std::vector<int>& list,
                        int perLine) {
  std::vector<int> rowOf;
  for (const MapPoint& point : side.points) {
    rowOf.resize(static_cast<std::size_t>(point.entry) + 1, 0);
    rowOf.back() = scale.RowOf(point);
  }
  LabelRows rows(static_cast<std::size_t>(scale.LastRow()) + 1);
  for (const int entry : list) {
    const int row = rowOf[static_cast<std::size_t>(entry)];
    std::vector<LabelCell>& cells = rows[static_cast<std::size_t>(row)];
    const int place = static_cast<int>(cells.size());
    cells.push_back({.entry = entry, .line = place / perLine, .column = place % perLine});
  }
  return rows;
}

namespace {

void PrintLabelMap(ReportContext& context, Facet labelled) {
  Run& run = context.run;
  MeasureRange(context, run.arrays.CategoryThurstone);
  const MapScale scale(context);
  const VariableMap map = MakeVariableMap(run, context.needs.mirrored);
  LabelMap page(context, map, scale, labelled);
  const int width = page.LabelWidth();
  const int perLine = std::max(page.LineWidth() / (width + kGap), 1);
  const std::vector<int> list = ListForMap(run, labelled);
  page.Print(ArrangeLabels(scale, map.Side(labelled), list, perLine), width);
}

}  // namespace

void PrintItemLabelMap(ReportContext& context) { PrintLabelMap(context, Facet::Items); }
void PrintPersonLabelMap(ReportContext& context) { PrintLabelMap(context, Facet::Persons); }

}  // namespace vardento
