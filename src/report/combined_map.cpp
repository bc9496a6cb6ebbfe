// The map with the labels of persons and items on both sides of one scale.
#include <algorithm>
#include <cmath>

#include "report/label_map.h"
#include "report/measure_range.h"
#include "report/page.h"
#include "report/variable_maps.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kMostColumns = 69;  // of labels, both sides together
constexpr int kMostOnRow = 35;    // labels of both sides, unless the map was asked for
constexpr int kFirstLabel = 8;

// How the labels of one side stand on a row.
struct LabelSpacing {
  int full = 1;   // width of a label as it is wanted
  int label = 1;  // as it is
  int gap = 2;
  long long most = 0;  // labels on the fullest row
  long long Columns() const { return most > 0 ? (label + gap) * most - gap : 0; }
};

// One step towards a narrower map: the gaps first, then the labels, of the fuller side first.
void Shrink(LabelSpacing& persons, LabelSpacing& items) {
  const bool itemsFewer = items.most < persons.most;
  const bool personsFewer = persons.most < items.most;
  const auto narrow = [](LabelSpacing& side, LabelSpacing& other, bool otherFewer) {
    --side.label;
    if (otherFewer) other.label = other.full;
  };
  if (itemsFewer && persons.gap == 2) {
    persons.gap = 1;
  } else if (items.gap == 2) {
    items.gap = 1;
  } else if (persons.gap == 2) {
    persons.gap = 1;
  } else if (items.label < persons.label) {
    narrow(persons, items, itemsFewer);
  } else if (persons.label < items.label || personsFewer) {
    narrow(items, persons, personsFewer);
  } else {
    narrow(persons, items, itemsFewer);
  }
}

class CombinedMap {
 public:
  CombinedMap(Run& run, const VariableMap& map, const MapScale& scale)
      : run_(run),
        map_(map),
        scale_(scale),
        persons_(run, Facet::Persons),
        items_(run, Facet::Items),
        personCounts_(CountByRow(scale, map.persons)),
        itemCounts_(CountByRow(scale, map.items)) {
    left_.full = left_.label = persons_.Width();
    right_.full = right_.label = items_.Width();
    left_.most = personCounts_.MostEntries();
    right_.most = itemCounts_.MostEntries();
  }

  long long MostOnRows() const { return left_.most + right_.most; }

  // False when the labels don't fit side by side, as narrow as they may be.
  bool FitLabels() {
    const auto columns = [this] { return left_.Columns() + right_.Columns(); };
    while (columns() > kMostColumns && left_.label > 1 && right_.label > 1) Shrink(left_, right_);
    return columns() <= kMostColumns;
  }

  void Print() {
    const auto taken = [this](int row) {
      const auto n = static_cast<std::size_t>(row);
      return personCounts_.entries[n] + itemCounts_.entries[n] > 0;
    };
    int top = scale_.LastRow(), bottom = 0;
    while (top > 0 && !taken(top)) --top;
    while (bottom < top && !taken(bottom)) ++bottom;
    top = scale_.TickAtOrAbove(top);
    bottom = scale_.TickAtOrBelow(bottom);
    const LabelRows persons = Arrange(map_.persons, Facet::Persons);
    const LabelRows items = Arrange(map_.items, Facet::Items);
    const std::vector<char> personMarks = MarksByRow(scale_, map_.persons);
    const std::vector<char> itemMarks = MarksByRow(scale_, map_.items);
    PutHead();
    for (int row = top; row >= bottom; --row) {
      const auto n = static_cast<std::size_t>(row);
      ReportLine line;
      if (scale_.IsTick(row)) line.At(2).Integer(scale_.NumberAt(row), 5);
      PutPersons(line, persons[n]);
      line.At(RuleColumn() - 1).Repeat(personMarks[n], 1);
      PutMapRule(line, RuleColumn(), scale_.IsTick(row), map_.mirrored);
      line.Repeat(itemMarks[n], 1);
      PutItems(line, items[n]);
      PutReportLine(run_, line);
    }
    PutMapWords(run_, Facet::Persons, MapEnd::Bottom, RuleColumn(), map_.mirrored);
  }

 private:
  int LeftColumns() const { return static_cast<int>(left_.Columns()); }
  int RuleColumn() const { return LeftColumns() + 10; }

  LabelRows Arrange(const MapSide& side, Facet facet) {
    return ArrangeLabels(scale_, side, ListForMap(run_, facet), kMostColumns);
  }

  void PutHead() {
    PutPageHeading(run_, 1);
    constexpr std::string_view kName = " -MAP- ";
    const int start = RuleColumn() - TextWidth(kName) / 2;
    const std::string_view label = CutToWidth(run_.settings.PERSONS_LABEL, start - 2);
    ReportLine line;
    line.At(start - TextWidth(label)).Text(label).Text(kName);
    PutReportLine(run_, line.Text(run_.settings.ITEMS_LABEL));
    PutMapWords(run_, Facet::Persons, MapEnd::Top, RuleColumn(), map_.mirrored);
  }

  // Each label ends where its field does, the last one next to the rule.
  void PutPersons(ReportLine& line, const std::vector<LabelCell>& cells) const {
    int end = kFirstLabel + LeftColumns();
    for (auto cell = cells.rbegin(); cell != cells.rend(); ++cell) {
      const std::string text = persons_.Of(cell->entry);
      const std::string_view label = TrimRight(CutToWidth(text, left_.label));
      line.At(end - TextWidth(label)).Text(label);
      end -= left_.label + left_.gap;
    }
  }

  void PutItems(ReportLine& line, const std::vector<LabelCell>& cells) const {
    int start = RuleColumn() + (map_.mirrored ? 4 : 3);
    for (const LabelCell& cell : cells) {
      const std::string text = items_.Of(cell.entry);
      line.At(start).Text(CutToWidth(text, right_.label));
      start += right_.label + right_.gap;
    }
  }

  Run& run_;
  const VariableMap& map_;
  const MapScale& scale_;
  MapLabels persons_, items_;
  RowCounts personCounts_, itemCounts_;
  LabelSpacing left_, right_;
};

}  // namespace

void PrintCombinedMap(ReportContext& context) {
  Run& run = context.run;
  const bool mirrored = context.needs.mirrored;
  MeasureRange(context, run.arrays.CategoryThurstone);
  const MapScale scale(context);
  const VariableMap map = MakeVariableMap(run, mirrored);
  CombinedMap page(run, map, scale);
  const int subtable = mirrored ? 10 : 0;
  const bool askedFor = run.request.Set(1) != ' ' &&
                        std::lround(std::clamp(run.request.Value(1), -1.0F, 99.0F)) == subtable;
  if (!askedFor && page.MostOnRows() > kMostOnRow) return;
  if (page.FitLabels()) page.Print();
}

}  // namespace vardento
