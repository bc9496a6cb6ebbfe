// Maps of bars alone.
#include <algorithm>
#include <cmath>
#include <string>

#include "report/map_scale.h"
#include "report/measure_range.h"
#include "report/page.h"
#include "report/plot_grid.h"
#include "report/variable_maps.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kMeasureColumn = 2, kWordColumn = 4, kFirstBar = 11;
constexpr int kWidestOfTwo = 29, kWidestOfFour = 13;

// One column of bars behind a central rule.
struct ItemColumn {
  std::vector<double> counts;
  std::vector<double> dichotomous;  // of them, row by row; empty: not shown
};

// Tallies of items row by row, each rounded up. `rowOf` gives an item's row, -1 for none.
template <class RowOf>
std::vector<double> CountItems(const VariableMap& map, const MapScale& scale, RowOf rowOf) {
  std::vector<double> counts(static_cast<std::size_t>(scale.LastRow()) + 1, 0.0);
  for (std::size_t n = 0; n < map.items.points.size(); ++n) {
    const int row = rowOf(map.items.points[n], map.steps[n]);
    if (row >= 0) counts[static_cast<std::size_t>(row)] += map.items.points[n].weight;
  }
  for (double& count : counts) count = CountOfWeights(count);
  return counts;
}

// The items at their measures.
ItemColumn CountMeasures(const VariableMap& map, const MapScale& scale) {
  const auto all = [&](const MapPoint& item, const StepPoints&) { return scale.RowOf(item); };
  const auto apart = [&](const MapPoint& item, const StepPoints& steps) {
    return steps.dichotomous ? scale.RowOf(item) : -1;
  };
  return {CountItems(map, scale, all), CountItems(map, scale, apart)};
}

// The items that have steps, at the lowest or the highest of them.
ItemColumn CountSteps(const VariableMap& map, const MapScale& scale, double StepPoints::*point) {
  const auto rowOf = [&](const MapPoint& item, const StepPoints& steps) {
    return steps.dichotomous ? -1 : scale.RowOf(item, steps.*point);
  };
  return {CountItems(map, scale, rowOf), {}};
}

// One or three columns of items beside one of persons.
class HistogramMap {
 public:
  HistogramMap(Run& run, const VariableMap& map, const MapScale& scale,
               std::vector<ItemColumn> columns, int barWidth)
      : run_(run),
        scale_(scale),
        persons_(CountByRow(scale, map.persons).weights),
        columns_(std::move(columns)),
        personMarks_(MarksByRow(scale, map.persons)),
        itemMarks_(MarksByRow(scale, map.items)),
        width_(barWidth) {
    double largest = 0;
    for (const ItemColumn& column : columns_) {
      largest = std::max(largest, *std::ranges::max_element(column.counts));
    }
    personUnit_ = DecideBarUnit(run, Facet::Persons, *std::ranges::max_element(persons_), width_);
    itemUnit_ = DecideBarUnit(run, Facet::Items, largest, width_);
  }

  void PutRows() {
    for (int row = scale_.LastRow(); row >= 0; --row) PutRow(row);
  }
  // What a sign stands for, where it is more than one.
  void PutUnits() {
    PutUnit(Facet::Persons, personUnit_);
    PutUnit(Facet::Items, itemUnit_);
  }

 private:
  // With one column of items the marks of both sides stand beside the rule.
  bool HasMarks() const { return columns_.size() == 1; }

  void PutRow(int row) {
    const auto n = static_cast<std::size_t>(row);
    const bool tick = scale_.IsTick(row);
    ReportLine line;
    if (tick) line.At(kMeasureColumn).Integer(scale_.NumberAt(row), 5);
    std::string bar = BarOf(personUnit_, persons_[n]);
    std::ranges::reverse(bar);
    line.At(kFirstBar).Text(PadLeft(bar, width_));
    for (const ItemColumn& column : columns_) {
      line.Skip(1);
      if (HasMarks()) line.Repeat(personMarks_[n], 1);
      PutMapRule(line, line.Column(), tick, false);
      if (HasMarks()) line.Repeat(itemMarks_[n], 1);
      line.Skip(1).Text(PadRight(ItemBar(column, n), width_));
    }
    if (tick) line.Integer(scale_.NumberAt(row), 5);
    PutReportLine(run_, line);
  }

  // Where each sign is one item, those without several steps show.
  std::string ItemBar(const ItemColumn& column, std::size_t row) const {
    std::string bar = BarOf(itemUnit_, column.counts[row]);
    if (itemUnit_.unit > 1 || column.dichotomous.empty()) return bar;
    const auto apart = std::min(bar.size(), static_cast<std::size_t>(column.dichotomous[row]));
    std::fill(bar.end() - static_cast<std::ptrdiff_t>(apart), bar.end(), 'D');
    return bar;
  }

  void PutUnit(Facet facet, const BarUnit& unit) {
    if (unit.unit <= 1) return;
    // The bars mean nothing without their unit: a large one takes the columns it needs.
    const int width = std::max(4, static_cast<int>(std::to_string(unit.unit).size()) + 1);
    ReportLine line;
    line.At(3).Text("EACH '#' IN THE ").Text(TrimRight(SingularLabel(run_.settings, facet)));
    line.Text(" COLUMN IS").Integer(unit.unit, width).Text(" ");
    line.Text(PluralLabel(run_.settings, facet)).Text("; EACH '.' IS 1");
    if (unit.unit >= 3) line.Text(" TO").Integer(unit.unit - 1, width);
    PutReportLine(run_, line);
  }

  Run& run_;
  const MapScale& scale_;
  std::vector<double> persons_;
  std::vector<ItemColumn> columns_;
  std::vector<char> personMarks_, itemMarks_;
  int width_;
  BarUnit personUnit_, itemUnit_;
};

// The joint under or above a rule whose column is `column`.
void PutJoint(ReportLine& line, int column) {
  line.At(column - 1).Repeat(Box::Horizontal, 1).Repeat(Box::Cross, 1).Repeat(Box::Horizontal, 1);
}

// The persons' word and label, a rule between them that long labels shorten; the label begins at
// `labelColumn` unless it needs more room, and ends in front of the joint of the rule.
void PutPersonCaption(ReportLine& line, const Run& run, MapEnd end, int lastHorizontal,
                      int labelColumn, int ruleColumn) {
  const std::string_view label = run.settings.PERSONS_LABEL;
  const int start = std::min(labelColumn, ruleColumn - 1 - TextWidth(label));
  const int horizontals = std::min(lastHorizontal, start - (labelColumn - lastHorizontal)) - 10;
  line.At(kWordColumn).Text(PersonWord(run, end), 6);
  line.At(kFirstBar).Repeat(Box::Horizontal, horizontals);
  line.At(start).Text(label);
  PutJoint(line, ruleColumn);
}

void PutCaptionOfTwo(Run& run, MapEnd end) {
  constexpr int kRule = 42, kLabelEnd = 53, kRuleEnd = 71;
  ReportLine line;
  PutPersonCaption(line, run, end, 31, 33, kRule);
  const std::string_view label = run.settings.ITEMS_LABEL;
  line.At(kRule + 3).Text(label);
  line.At(std::max(kLabelEnd, line.Column()));
  line.Repeat(Box::Horizontal, kRuleEnd - line.Column()).Text(ItemCaption(run, end, false));
  PutReportLine(run, line);
}

void PutCaptionOfFour(Run& run, MapEnd end) {
  ReportLine line;
  PutPersonCaption(line, run, end, 16, 17, 25);
  for (const int rule : {25, 41, 57}) {
    PutJoint(line, rule);
    line.Text(run.settings.ITEMS_LABEL);
  }
  line.At(73).Text(ItemCaption(run, end, false));
  PutReportLine(run, line);
}

void PutTitle(Run& run) {
  PutPageHeading(run, 1);
  ReportLine line;
  line.At(9).Text("MAP OF ").Text(run.settings.PERSONS_LABEL).Text(" AND ");
  PutReportLine(run, line.Text(run.settings.ITEMS_LABEL));
}

}  // namespace

void PrintHistogramMap(ReportContext& context) {
  Run& run = context.run;
  MeasureRange(context, run.arrays.CategoryThurstone);
  const MapScale scale(context);
  const VariableMap map = MakeVariableMap(run, false);
  HistogramMap histogram(run, map, scale, {CountMeasures(map, scale)}, kWidestOfTwo);
  PutTitle(run);
  ReportLine head;
  head.At(2).Text("MEASURE");
  PutMapRule(head, 42, false, false);
  PutReportLine(run, head.At(74).Text("MEASURE"));
  PutCaptionOfTwo(run, MapEnd::Top);
  histogram.PutRows();
  PutCaptionOfTwo(run, MapEnd::Bottom);
  histogram.PutUnits();
}

void PrintStepHistogramMap(ReportContext& context) {
  Run& run = context.run;
  MeasureRange(context, run.arrays.CategoryThurstone);
  const MapScale scale(context);
  const VariableMap map = MakeVariableMap(run, false);
  HistogramMap histogram(run, map, scale,
                         {CountSteps(map, scale, &StepPoints::lowest), CountMeasures(map, scale),
                          CountSteps(map, scale, &StepPoints::highest)},
                         kWidestOfFour);
  PutTitle(run);
  ReportLine head;
  head.At(3).Text("MEASURE");
  PutMapRule(head, 25, false, false);
  head.Text(" BOTTOM P=50%");
  PutMapRule(head, 41, false, false);
  head.Text(" CALIBRATION");
  PutMapRule(head, 57, false, false);
  PutReportLine(run, head.Text(" TOP P=50%").At(72).Text("MEASURE"));
  PutCaptionOfFour(run, MapEnd::Top);
  histogram.PutRows();
  PutCaptionOfFour(run, MapEnd::Bottom);
  histogram.PutUnits();
}

}  // namespace vardento
