// The loadings of a component in three orders.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

#include "measure/entry_values.h"
#include "measure/shell_sort.h"
#include "report/component_pages.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr std::string_view kLoading = "LOADING", kMeasure = "MEASURE", kEntry = "ENTRY";
constexpr double kEqualLoadings = 0.0001;
constexpr int kFactorWidth = 6, kLoadingWidth = 7;
constexpr int kFitWidth = 19, kWeighedFitWidth = 25;  // measure, mean-squares, weight
constexpr int kGroupWidth = 2;
constexpr int kWeightWidth = 5;
constexpr int kListLines = 10;  // of a list of one row: titles, head, row and rule

// 5 columns with as many of 2 decimals as there is room for, of which none are shown for a whole
// number that has them; its digits stay in place.
std::string WeightText(float weight) {
  std::string text = fixed_field(weight, kWeightWidth, 2);
  if (text.front() == '*') text = fixed_field(weight, kWeightWidth, 1);
  if (text.front() == '*') text = integer_field(std::lround(weight), kWeightWidth);
  if (text.ends_with(".00")) text.replace(text.size() - 3, 3, "   ");
  if (Trim(text).empty()) text[1] = '0';
  return text;
}

}  // namespace

LoadingLists::LoadingLists(ReportContext& context, const ResidualComponents& found)
    : run_(context.run), found_(found) {
  const ControlSettings& settings = run_.settings;
  weighed_ = ArraysOf(run_, found.facet).weight.Size() > 0;
  grouped_ = found.facet == Facet::Items && run_.NGROUPS > 1 && settings.GROUPS != PerItem::Single;
  const Vector1<char> marks = MarkEntries(found);
  numberWidth_ = WidthOfEntries(found.entries.back());
  rows_.reserve(found.entries.size());
  for (const int entry : found.entries) {
    const EntryValues values = ReadEntryValues(run_, found.facet, entry);
    rows_.push_back({entry, marks[entry], values.measure, values.infit, values.outfit,
                     values.weight, LabelOfEntry(run_, found.facet, entry)});
    labelWidth_ = std::max(labelWidth_, TextWidth(rows_.back().label));
  }
  labelWidth_ = std::min(labelWidth_, kWidestListedLabel);
}

// By a key, largest first, keys closer than `equal` by entry number; then those that `isLater`.
template <class Key, class Later>
std::vector<int> LoadingLists::Sorted(Key key, double equal, Later isLater) const {
  std::vector<int> places(rows_.size());
  std::iota(places.begin(), places.end(), 0);
  const auto row = [&](int place) -> const Row& { return rows_[static_cast<std::size_t>(place)]; };
  ShellSort(places, FirstGap(places.size()), [&](int a, int b) {
    if (isLater(row(a)) != isLater(row(b))) return isLater(row(b));
    const double difference = key(row(a)) - key(row(b));
    return std::fabs(difference) <= equal ? a < b : difference > 0;
  });
  return places;
}

void LoadingLists::PutByLoading(const Component& component) {
  const auto loading = [&](const Row& row) { return component.loadings[row.entry]; };
  PutPartHeading(run_, 1, kListLines);
  Put(component, kLoading,
      Sorted([&](const Row& row) { return std::fabs(loading(row)); }, kEqualLoadings,
             [&](const Row& row) { return loading(row) < 0; }));
}

void LoadingLists::PutByMeasure(const Component& component) {
  PutGap(run_, kListLines);
  Put(component, kMeasure,
      Sorted([](const Row& row) -> double { return row.measure; }, 0,
             [](const Row&) { return false; }));
}

void LoadingLists::PutByEntry(const Component& component) {
  PutGap(run_, kListLines);
  Put(component, kEntry,
      Sorted([](const Row&) { return 0.0; }, 0, [](const Row&) { return false; }));
}

// Of those sorted by loading the negative ones stand behind a rule.
void LoadingLists::Put(const Component& component, std::string_view order,
                       const std::vector<int>& places) {
  PutTitle(component, order);
  PutHead();
  bool before = true;  // it is negative; so that no rule stands below that of the head
  for (const int place : places) {
    const Row& row = rows_[static_cast<std::size_t>(place)];
    const bool negative = component.loadings[row.entry] < 0;
    const bool parts = order == kLoading && negative && !before;
    before = negative;
    // The row, and a rule in front of it and below it.
    if (CheckPageBreak(run_, run_.report.LinesOnPage + (parts ? 3 : 2))) {
      PutHead();
    } else if (parts) {
      PutRule(Box::LeftTee, Box::RightTee);
    }
    PutRow(row, component);
  }
  PutRule(Box::BottomLeft, Box::BottomRight);
}

void LoadingLists::PutTitle(const Component& component, std::string_view order) {
  const ControlSettings& settings = run_.settings;
  const std::string number = integer_field(component.number, 2);
  PutSqueezedLine(run_, 3, "FACTOR" + number + " FROM PRINCIPAL COMPONENT ANALYSIS OF");
  std::string text(ResidualWord(run_.inForce.PRCOMP));
  text += " CORRELATIONS FOR " + PluralLabel(settings, found_.facet) + " (SORTED BY ";
  PutSqueezedLine(run_, 4, text.append(order) + ")");
  text = "Factor" + number + " explains " + PlainNumber(component.eigenvalue, 8, 1) + " of ";
  text += std::to_string(rows_.size()) + " residual variance units, one per ";
  PutSqueezedLine(run_, 5, text + SingularLabel(settings, found_.facet));
  PutVarianceRatios(run_, found_, component);
}

void LoadingLists::PutRule(Box left, Box right) {
  const int labels = 1 + numberWidth_ + 1 + labelWidth_ + (grouped_ ? kGroupWidth : 0) + 1;
  const int fit = weighed_ ? kWeighedFitWidth : kFitWidth;
  PutReportLine(run_, BoxRule(left, {kFactorWidth, kLoadingWidth, fit, labels}, right));
}

void LoadingLists::PutHead() {
  PutRule(Box::TopLeft, Box::TopRight);
  for (const bool first : {true, false}) {
    ReportLine line;
    PutBar(line, 2);
    line.Text(first ? "" : "FACTOR", kFactorWidth);
    PutBar(line, line.Column());
    line.Text(first ? "" : "LOADING", kLoadingWidth);
    PutBar(line, line.Column());
    line.Text(first ? "       INFIT OUTFIT" : "MEASURE  MNSQ MNSQ ", kFitWidth);
    if (weighed_) line.Text(first ? "" : "WEIGHT", kWeighedFitWidth - kFitWidth);
    PutBar(line, line.Column());
    line.Text(first ? " ENTRY " : "NUMBER ", 1 + numberWidth_ + 1);
    line.Text(TrimRight(SingularLabel(run_.settings, found_.facet)), labelWidth_);
    if (grouped_) line.Text(first ? " G" : " R");
    PutBar(line, line.Column() + 1);
    PutReportLine(run_, line);
  }
  PutRule(Box::LeftTee, Box::RightTee);
}

void LoadingLists::PutRow(const Row& row, const Component& component) {
  ReportLine line;
  PutBar(line, 2);
  line.Integer(component.number, kFactorWidth - 2).Skip(2);
  PutBar(line, line.Column());
  line.Fixed(std::clamp(component.loadings[row.entry], -1.0, 1.0), kLoadingWidth - 1, 2).Skip(1);
  PutBar(line, line.Column());
  PutMeasure(line, run_.settings, row.measure);
  line.Fixed(row.infit, 5, 2).Fixed(row.outfit, 5, 2).Skip(1);
  if (weighed_) line.Text(WeightText(row.weight)).Skip(1);
  PutBar(line, line.Column());
  line.Repeat(row.mark, 1).Integer(row.entry, numberWidth_).Skip(1);
  line.Text(row.label, labelWidth_);
  if (grouped_) line.Skip(1).Repeat(GroupCodeOf(run_.settings, row.entry), 1);
  PutBar(line, line.Column() + 1);
  PutReportLine(run_, line);
}

}  // namespace vardento
