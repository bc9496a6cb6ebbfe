// A map with the labels of one side against the bars of the other.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "report/map_labels.h"
#include "report/map_scale.h"

namespace vardento {

// A place on a line of labels.
struct LabelCell {
  int entry = 0;
  int line = 0;    // of its row, from 0
  int column = 0;  // of the line, from 0
  int value = -1;  // a category that stands in front of the label
  bool withLabel = true;
};
// Row by row, from the low end of the scale; within a row line by line.
using LabelRows = std::vector<std::vector<LabelCell>>;

// The measured entries of a side in the order in which maps list them: of their labels, with
// INUMB=Y of the items' numbers.
std::vector<int> ListForMap(Run& run, Facet facet);

// The entries of a side on their rows, in the order of `list`, so many on a line.
LabelRows ArrangeLabels(const MapScale& scale, const MapSide& side, const std::vector<int>& list,
                        int perLine);

class LabelMap {
 public:
  LabelMap(ReportContext& context, const VariableMap& map, const MapScale& scale, Facet labelled);

  // Columns for labels on a line, and for the label of an entry when it stands by its measure.
  int LineWidth() const;
  int LabelWidth() const;
  int BarWidth() const { return barWidth_; }

  // `width`: columns of a cell. `heads`: what stands above each column of cells; none: no such
  // line.
  void Print(const LabelRows& rows, int width, std::string_view titleEnd = {},
             const std::vector<std::string>& heads = {});

 private:
  void PutHead(std::string_view titleEnd, const std::vector<std::string>& heads);
  void PutRow(int row, const std::vector<LabelCell>& cells);
  // What stands left of the labels: the measure, the bar, the rule and its marks.
  ReportLine RowStart(int row) const;
  void PutCell(ReportLine& line, const LabelCell& cell) const;
  void PutUnit();
  int RuleColumn() const { return barWidth_ + 10; }
  int CellColumn(int column) const;

  Run& run_;
  const VariableMap& map_;
  const MapScale& scale_;
  Facet labelled_, other_;
  MapLabels labels_;
  bool oneLine_;  // labels are cut so that those of a row fit on one line
  RowCounts labelledCounts_, otherCounts_;
  std::vector<char> labelledMarks_, otherMarks_;
  int barWidth_;
  BarUnit unit_;
  int cellWidth_ = 1;
};

}  // namespace vardento
