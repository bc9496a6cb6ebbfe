// The vertical scale of maps: from measures to rows of text, 0 at the low end, and the rows that
// show their measure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "measure/variable_map.h"
#include "report/report_context.h"
#include "report/report_line.h"

namespace vardento {

class MapScale {
 public:
  // The scale over the context's range of measures (MeasureRange), as high as MAXPAGE= lets it be
  // or with as many rows for each measure unit as slot 4 of the request says.
  explicit MapScale(const ReportContext& context);

  int LastRow() const { return lastRow_; }
  // The row nearest to a measure; beyond the scale -1 or LastRow() + 1.
  int NearestRow(double measure) const;
  // The rows that an entry and a point of it stand on: within the scale, extreme ones at its ends.
  int RowOf(double measure, MapPlace place) const;
  int RowOf(const MapPoint& point) const { return RowOf(point.measure, point.place); }
  // The row of a point of an entry: as many rows from the entry's as their distance makes.
  int RowOf(const MapPoint& entry, double point) const;

  // Rows at both ends and at whole units show their measure, a whole number.
  bool IsTick(int row) const;
  long long NumberAt(int row) const;
  int TickAtOrAbove(int row) const;
  int TickAtOrBelow(int row) const;

 private:
  double low_, unit_;
  int lastRow_;
  double rowsPerMeasure_;
};

// What stands on each row, 0 to LastRow().
struct RowCounts {
  std::vector<int> entries;     // places taken
  std::vector<double> weights;  // weighted counts, rounded up
  int MostEntries() const;
  double MostWeight() const;
};

RowCounts CountByRow(const MapScale& scale, const MapSide& side);

// The marks beside the rule: the mean (M), one (S) and two (T) standard deviations from it, row by
// row; of marks on the same row the one nearer to the mean shows.
std::vector<char> MarksByRow(const MapScale& scale, const MapSide& side);

// What the bars of a histogram are made of.
struct BarUnit {
  long long unit = 1;  // entries for each sign
  char Sign() const { return unit == 1 ? 'X' : '#'; }
};
// The smallest unit with which `largest` entries fit into `columns`, raised by slot 6 (persons) or
// 7 (items) of the request, else by T1P= or T1I=.
BarUnit DecideBarUnit(const Run& run, Facet facet, double largest, int columns);
// A bar for so many entries, from the rule outwards. Its outer end is a "." for what makes less
// than a sign, or more than half of one.
std::string BarOf(const BarUnit& unit, double count);

// The two ends of a map.
enum class MapEnd { Top, Bottom };
// The word of the persons' side at an end of the scale, and the item side's: short beside a rule,
// long in a caption. They say which way the scale runs (USCALE=, mirrored items).
std::string_view PersonWord(const Run& run, MapEnd end);
std::string_view ItemWord(const Run& run, MapEnd end, bool mirrored);
std::string_view ItemCaption(const Run& run, MapEnd end, bool mirrored);

// The central rule at `column`: crossed on a tick row, doubled when the items are mirrored.
void PutMapRule(ReportLine& line, int column, bool tick, bool mirrored);
// A line with the words of an end on both sides of the rule, the side of `left` first.
void PutMapWords(Run& run, Facet left, MapEnd end, int ruleColumn, bool mirrored);

}  // namespace vardento
