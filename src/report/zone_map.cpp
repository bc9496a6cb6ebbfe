// The maps of items by the categories of their scales, a column for each category.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "control/item_specifications.h"
#include "lists/category_labels.h"
#include "platform/memory.h"
#include "report/label_map.h"
#include "report/measure_range.h"
#include "report/page.h"
#include "report/variable_maps.h"
#include "run/messages.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kLineLength = 1000, kCellsEnd = 484;
constexpr std::int16_t kNoRow = -1;

// The row on which each category of each item begins.
class ZoneRows {
 public:
  // False when there is no memory for it.
  bool Fill(Run& run, const ZoneMap& map, const MapScale& scale) {
    categories_ = map.categories.size();
    const auto items = static_cast<std::size_t>(run.arrays.ItemStatus.Size());
    bytes_ = items * categories_ * sizeof(std::int16_t);
    if (!block_.Allocate(run.memory, bytes_)) return false;
    std::fill_n(Rows(1), items * categories_, kNoRow);
    for (const ZonePoint& point : map.points) {
      Rows(point.entry)[point.category] =
          static_cast<std::int16_t>(scale.RowOf(point.measure, point.place));
    }
    return true;
  }
  std::size_t Bytes() const { return bytes_; }
  int Categories() const { return static_cast<int>(categories_); }
  // kNoRow: no step of the item leads into the category.
  int RowOf(int item, int category) { return Rows(item)[category]; }

 private:
  std::int16_t* Rows(int item) {
    return reinterpret_cast<std::int16_t*>(block_.Data()) +
           static_cast<std::size_t>(item - 1) * categories_;
  }

  MemoryBlock block_;
  std::size_t bytes_ = 0, categories_ = 0;
};

// Puts cells into the lines of a row, each into its column.
class RowFiller {
 public:
  explicit RowFiller(int columns) : taken_(static_cast<std::size_t>(columns), false) {}

  void Add(LabelCell cell) {
    auto taken = taken_.begin() + cell.column;
    if (*taken) {
      std::fill(taken_.begin(), taken_.end(), false);
      ++line_;
    }
    *taken = true;
    cell.line = line_;
    // The label of an item stands once on a line, in the last of its cells.
    if (!cells_.empty() && cells_.back().entry == cell.entry && cells_.back().line == line_) {
      cells_.back().withLabel = false;
    }
    cells_.push_back(cell);
  }
  std::vector<LabelCell> Take() { return std::move(cells_); }

 private:
  std::vector<bool> taken_;
  std::vector<LabelCell> cells_;
  int line_ = 0;
};

LabelRows ArrangeZones(ZoneRows& zones, const ZoneMap& map, const MapScale& scale,
                       const std::vector<int>& list) {
  std::vector<RowFiller> rows(static_cast<std::size_t>(scale.LastRow()) + 1,
                              RowFiller(zones.Categories()));
  for (const int item : list) {
    for (int category = 0; category < zones.Categories(); ++category) {
      const int row = zones.RowOf(item, category);
      if (row < 0) continue;
      rows[static_cast<std::size_t>(row)].Add(
          {.entry = item,
           .column = category,
           .value = map.categories[static_cast<std::size_t>(category)].value});
    }
  }
  LabelRows cells;
  for (RowFiller& row : rows) cells.push_back(row.Take());
  return cells;
}

// The number of the first code that the items of a group score as `value`; 0 without one.
int CodeOfValue(const Run& run, int value, int item) {
  for (int code = 1; code <= run.settings.CATEGS; ++code) {
    if (ScoreResponse(run.settings, run.inForce.scoring, code, item) == value) return code;
  }
  return 0;
}

std::string WordsOf(const Run& run, const CategoryLabels& labels, const ZoneCategory& category) {
  const Array1<std::int32_t>& groups = run.arrays.ItemGroup;
  const auto found = std::find(groups.begin(), groups.end(), category.group);
  const int item = static_cast<int>(found - groups.begin()) + 1;
  std::string_view words = labels.OfCategory(category.value, category.group);
  if (words.empty() && labels.HasCodes()) {
    words = labels.OfCode(CodeOfValue(run, category.value, item), item, category.group);
  }
  return words.empty() ? IntegerText(category.value) : std::string(words);
}

int DigitsOfValues(const ZoneMap& map) {
  std::size_t digits = IntegerText(static_cast<int>(map.categories.size())).size();
  for (const ZoneCategory& category : map.categories) {
    digits = std::max(digits, IntegerText(category.value).size());
  }
  return static_cast<int>(digits);
}

// Columns for each cell; below 1 when there are more categories than a line can hold.
int CellWidth(const LabelMap& page, const ZoneMap& map) {
  const int columns = static_cast<int>(map.categories.size());
  const int width = page.LabelWidth() + DigitsOfValues(map) + 1;
  return std::min({width, kLineLength / columns, (kCellsEnd - page.BarWidth()) / columns - 2});
}

void PrintZoneMap(ReportContext& context, ZoneKind kind, std::string_view titleEnd) {
  Run& run = context.run;
  const RunArrays& arrays = run.arrays;
  const bool thurstone = kind == ZoneKind::Thurstone;
  MeasureRange(context, thurstone ? arrays.CategoryThurstone : arrays.CategoryHalfPoint);
  const MapScale scale(context);
  const ZoneMap zones = MakeZoneMap(run, kind);
  if (zones.categories.size() < 2) return;
  ZoneRows rows;
  if (!rows.Fill(run, zones, scale)) {
    WriteConsole(
        run, std::to_string(rows.Bytes()) + " bytes of memory not available. Table not produced.");
    PutPageHeading(run, 1);
    WriteReportText(run, " NOT ENOUGH MEMORY FOR TABLE");
    return;
  }
  const VariableMap map = MakeVariableMap(run, false);
  LabelMap page(context, map, scale, Facet::Items);
  const int width = CellWidth(page, zones);
  if (width < 1) {
    TellUser(run, "NAMMAP: BB PROBLEM");
    return;
  }
  const CategoryLabels labels(run);
  std::vector<std::string> heads;
  for (const ZoneCategory& category : zones.categories) {
    heads.push_back(WordsOf(run, labels, category));
  }
  const std::vector<int> list = ListForMap(run, Facet::Items);
  page.Print(ArrangeZones(rows, zones, scale, list), width, titleEnd, heads);
}

}  // namespace

void PrintScoreZoneMap(ReportContext& context) {
  PrintZoneMap(context, ZoneKind::ExpectedScore, " - Expected score zones");
}

void PrintThurstoneMap(ReportContext& context) {
  PrintZoneMap(context, ZoneKind::Thurstone, " - Thurstone thresholds");
}

}  // namespace vardento
