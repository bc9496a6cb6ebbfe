#include "report/plot_grid.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>

namespace vardento {
namespace {

constexpr std::string_view kGuides{"-|\xC4\xB3+", 5};
// What two guide lines make where they meet: by the one that is there, and the one that comes.
constexpr std::array<std::string_view, 5> kJoined = {
    std::string_view("-+\xC4\xC5+", 5),           // -
    std::string_view("+|\xC5\xB3+", 5),           // |
    std::string_view("\xC4\xC5\xC4\xC5\xC5", 5),  // horizontal
    std::string_view("\xC5\xB3\xC5\xB3\xC5", 5),  // vertical
    std::string_view("++\xC5\xC5+", 5),           // +
};

bool IsCount(char c) { return c >= '1' && c <= '9'; }

// One entry more in a cell that counts them.
char CountOneMore(char cell) {
  if (cell == ' ') return '1';
  if (IsCount(cell)) return cell == '9' ? '*' : static_cast<char>(cell + 1);
  return cell == '*' ? '*' : '2';  // a letter and one more
}

}  // namespace

int NearestPlace(double place, int last) {
  return static_cast<int>(std::lround(std::clamp(place, -1.0, last + 1.0)));
}

double CountOfWeights(double weight) {
  constexpr double kRounding = 1e-6;
  return std::ceil(weight * (1 - kRounding));
}

PlotGrid::PlotGrid(int lastColumn, int lastRow)
    : lastColumn_(lastColumn),
      lastRow_(lastRow),
      cells_(static_cast<std::size_t>(lastColumn + 1) * static_cast<std::size_t>(lastRow + 1),
             ' ') {}

bool PlotGrid::Holds(int column, int row) const {
  return column >= 0 && column <= lastColumn_ && row >= 0 && row <= lastRow_;
}

std::size_t PlotGrid::Place(int column, int row) const {
  assert(Holds(column, row));
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(lastColumn_ + 1) +
         static_cast<std::size_t>(column);
}

void PlotGrid::FillBlank(int column, int row, char mark) {
  char& cell = cells_[Place(column, row)];
  if (cell == ' ') cell = mark;
}

void PlotGrid::FillBlankColumn(int column, char mark) {
  for (int row = 0; Holds(column, row); ++row) FillBlank(column, row, mark);
}

void PlotGrid::FillBlankRow(int row, char mark) {
  for (int column = 0; Holds(column, row); ++column) FillBlank(column, row, mark);
}

void PlotGrid::PutCurve(int column, int row, char mark) {
  char& cell = cells_[Place(column, row)];
  cell = cell == ' ' || cell == mark ? mark : '*';
}

void PlotGrid::PutEntry(int column, int row, char mark) {
  static constexpr int kNeighbours[][2] = {{0, 0},  {0, 1},  {0, -1}, {1, 0},  {1, 1},
                                           {1, -1}, {-1, 0}, {-1, 1}, {-1, -1}};
  for (const auto& [up, right] : kNeighbours) {
    char& cell = cells_[Place(std::clamp(column + right, 0, lastColumn_),
                              std::clamp(row + up, 0, lastRow_))];
    const bool counts = mark == ' ' && (IsCount(cell) || cell == '*');
    if (cell != ' ' && !counts) continue;
    cell = mark == ' ' ? CountOneMore(cell) : mark;
    return;
  }
  char& cell = cells_[Place(column, row)];
  cell = IsCount(mark) ? '*' : CountOneMore(cell);
}

void PlotGrid::MergeGuide(int column, int row, char guide) {
  char& cell = cells_[Place(column, row)];
  const std::size_t there = kGuides.find(cell);
  const std::size_t comes = kGuides.find(guide);
  const bool known = cell == ' ' || there != kGuides.npos;
  if (known && (cell == ' ' || guide == kDrawnCross)) {
    cell = guide;
  } else if (known && comes != kGuides.npos) {
    cell = kJoined[there][comes];
  }
}

void PlotGrid::PutRow(ReportLine& line, int row) const {
  for (int column = 0; column <= lastColumn_; ++column) {
    const char cell = At(column, row);
    if (static_cast<unsigned char>(cell) < 0x80) {
      line.Repeat(cell, 1);
    } else {
      line.Repeat(static_cast<Box>(static_cast<unsigned char>(cell)), 1);
    }
  }
}

}  // namespace vardento
