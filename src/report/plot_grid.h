// The grid of characters that plots are drawn in, before its rows become lines. Rows and columns
// count from 0 at the lower left corner. Marks are plain characters; guide lines may also be drawn
// pieces of boxes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "report/report_line.h"

namespace vardento {

// The column or row nearest to a place, counted from 0; off the grid, which ends at `last`, it is
// -1 or `last` + 1.
int NearestPlace(double place, int last);
// What stands at a place, by weight, as a count: a part of one counts as one. Weights are 32-bit:
// what their sum is off a whole number by their rounding is no part.
double CountOfWeights(double weight);

inline constexpr char kDrawnVertical = static_cast<char>(Box::Vertical);
inline constexpr char kDrawnHorizontal = static_cast<char>(Box::Horizontal);
inline constexpr char kDrawnCross = static_cast<char>(Box::Cross);

class PlotGrid {
 public:
  // Blank, with columns 0 to `lastColumn` and rows 0 to `lastRow`.
  PlotGrid(int lastColumn, int lastRow);

  int LastColumn() const { return lastColumn_; }
  int LastRow() const { return lastRow_; }
  // Whether a place is on the grid; all the others below want one that is.
  bool Holds(int column, int row) const;
  char At(int column, int row) const { return cells_[Place(column, row)]; }
  bool IsBlank(int column, int row) const { return At(column, row) == ' '; }

  // A blank cell takes the mark; others stay.
  void FillBlank(int column, int row, char mark);
  // The same for all cells of a column or a row; nothing where that isn't on the grid.
  void FillBlankColumn(int column, char mark);
  void FillBlankRow(int row, char mark);
  // A point of a curve: over another curve's mark it becomes "*".
  void PutCurve(int column, int row, char mark);
  // An entry by its letter or digit, or ' ' for one of a crowd that is only counted: in the first
  // free cell of the place and its neighbours, so that close points spread out by one cell. Where
  // none is free, the place itself shows a count.
  void PutEntry(int column, int row, char mark);
  // A guide line, which joins the other guide lines it meets and stands behind all other marks.
  void MergeGuide(int column, int row, char guide);

  // Puts a row's cells onto a line.
  void PutRow(ReportLine& line, int row) const;

 private:
  std::size_t Place(int column, int row) const;

  int lastColumn_, lastRow_;
  std::string cells_;
};

}  // namespace vardento
