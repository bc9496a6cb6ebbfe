#include "report/map_scale.h"

#include <algorithm>
#include <cmath>

#include "report/page.h"
#include "report/plot_grid.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kMostRows = 62;         // between the lowest and the highest row
constexpr int kLinesAroundRows = 11;  // of a page, for its heading and the map's
constexpr double kMostEntries = 1e15;

int HeightOf(const Run& run) {
  const int page = run.settings.MAXPAGE;
  if (page == 0 || run.request.Set(4) != ' ') return kMostRows;
  return std::min(std::max((page - kLinesAroundRows) / 10, 1) * 10, kMostRows);
}

int LastRowOf(const ReportContext& context) {
  const TableRequest& request = context.run.request;
  const int height = HeightOf(context.run);
  const double wanted = request.Set(4) != ' ' ? request.Value(4) : 0;
  if (wanted > 0) {
    const double span = static_cast<double>(context.rangeHigh) - context.rangeLow;
    return static_cast<int>(std::lround(std::clamp(span * wanted, 1.0, 1.0 * kMostRows)));
  }
  const long rowsPerUnit = std::max(std::lround(1.0 * height / context.rangeSpan), 1L);
  return static_cast<int>(std::min<long>(height, rowsPerUnit * context.rangeSpan));
}

// The end where able persons and hard items stand: the top, unless USCALE= turns the scale round.
bool IsHighEnd(const Run& run, MapEnd end) {
  return (run.settings.USCALE > 0) == (end == MapEnd::Top);
}

template <class Count>
Count Most(const std::vector<Count>& counts) {
  return counts.empty() ? Count{} : *std::ranges::max_element(counts);
}

}  // namespace

MapScale::MapScale(const ReportContext& context)
    : low_(context.rangeLow),
      unit_(context.rangeUnit),
      lastRow_(LastRowOf(context)),
      rowsPerMeasure_(lastRow_ / (static_cast<double>(context.rangeHigh) - context.rangeLow)) {}

int MapScale::NearestRow(double measure) const {
  return NearestPlace((measure - low_) * rowsPerMeasure_, lastRow_);
}

int MapScale::RowOf(double measure, MapPlace place) const {
  if (place == MapPlace::AtTop) return lastRow_;
  if (place == MapPlace::AtBottom) return 0;
  return std::clamp(NearestRow(measure), 0, lastRow_);
}

int MapScale::RowOf(const MapPoint& entry, double point) const {
  const int row = RowOf(entry);
  if (entry.place != MapPlace::AtMeasure) return row;
  const double limit = lastRow_;
  const double distance = std::clamp((point - entry.measure) * rowsPerMeasure_, -limit, limit);
  return std::clamp(row + static_cast<int>(std::lround(distance)), 0, lastRow_);
}

long long MapScale::NumberAt(int row) const {
  const double measure = row / rowsPerMeasure_ + low_;
  return std::llround(std::round(measure / unit_) * unit_);
}

bool MapScale::IsTick(int row) const {
  return row == 0 || row == lastRow_ || NearestRow(static_cast<double>(NumberAt(row))) == row;
}

int MapScale::TickAtOrAbove(int row) const {
  while (row < lastRow_ && !IsTick(row)) ++row;
  return row;
}

int MapScale::TickAtOrBelow(int row) const {
  while (row > 0 && !IsTick(row)) --row;
  return row;
}

int RowCounts::MostEntries() const { return Most(entries); }
double RowCounts::MostWeight() const { return Most(weights); }

RowCounts CountByRow(const MapScale& scale, const MapSide& side) {
  const auto rows = static_cast<std::size_t>(scale.LastRow()) + 1;
  RowCounts counts{std::vector<int>(rows, 0), std::vector<double>(rows, 0.0)};
  for (const MapPoint& point : side.points) {
    const auto row = static_cast<std::size_t>(scale.RowOf(point));
    ++counts.entries[row];
    counts.weights[row] += point.weight;
  }
  for (double& weight : counts.weights) weight = CountOfWeights(weight);
  return counts;
}

std::vector<char> MarksByRow(const MapScale& scale, const MapSide& side) {
  std::vector<char> marks(static_cast<std::size_t>(scale.LastRow()) + 1, ' ');
  if (!side.hasMean) return marks;
  const auto put = [&](double deviations, char mark) {
    const int row = scale.NearestRow(side.mean + deviations * side.sd);
    if (row >= 0 && row <= scale.LastRow()) marks[static_cast<std::size_t>(row)] = mark;
  };
  put(2, 'T');
  put(-2, 'T');
  put(1, 'S');
  put(-1, 'S');
  put(0, 'M');
  return marks;
}

BarUnit DecideBarUnit(const Run& run, Facet facet, double largest, int columns) {
  const bool persons = facet == Facet::Persons;
  const int slot = persons ? 6 : 7;
  const bool given = run.request.Set(slot) != ' ' && run.request.Value(slot) >= 1;
  const double wanted = given ? std::round(static_cast<double>(run.request.Value(slot)))
                              : std::fabs(1.0 * (persons ? run.settings.T1P : run.settings.T1I));
  const double fitting = std::ceil(largest / columns);
  return {static_cast<long long>(std::clamp(std::max(fitting, wanted), 1.0, kMostEntries))};
}

std::string BarOf(const BarUnit& unit, double count) {
  const auto entries = static_cast<long long>(std::clamp(count, 0.0, kMostEntries));
  const auto signs = std::llround(static_cast<double>(entries) / static_cast<double>(unit.unit));
  std::string bar(static_cast<std::size_t>(std::min<long long>(signs, ReportOutput::kMaxLine)),
                  unit.Sign());
  if (signs * unit.unit == entries) return bar;
  if (signs * unit.unit > entries) bar.pop_back();
  return bar + '.';
}

std::string_view PersonWord(const Run& run, MapEnd end) {
  return IsHighEnd(run, end) ? "<more>" : "<less>";
}

std::string_view ItemWord(const Run& run, MapEnd end, bool mirrored) {
  return IsHighEnd(run, end) != mirrored ? "<rare>" : "<frequ>";
}

std::string_view ItemCaption(const Run& run, MapEnd end, bool mirrored) {
  return IsHighEnd(run, end) != mirrored ? "--- <rare>" : "<frequent>";
}

void PutMapRule(ReportLine& line, int column, bool tick, bool mirrored) {
  line.At(column).Repeat(tick ? Box::Cross : Box::Vertical, mirrored ? 2 : 1);
}

void PutMapWords(Run& run, Facet left, MapEnd end, int ruleColumn, bool mirrored) {
  std::string_view words[] = {PersonWord(run, end), ItemWord(run, end, mirrored)};
  if (left == Facet::Items) std::swap(words[0], words[1]);
  ReportLine line;
  line.At(ruleColumn - TextWidth(words[0])).Text(words[0]);
  PutMapRule(line, ruleColumn, false, mirrored);
  line.Text(words[1]);
  PutReportLine(run, line);
}

}  // namespace vardento
