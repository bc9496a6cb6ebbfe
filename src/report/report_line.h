// The line composer: one line of a report, put together by column, that knows which of its
// characters are drawn and which are text.
#pragma once

#include <array>
#include <bitset>
#include <string>
#include <string_view>

#include "run/report_output.h"

namespace vardento {

// What reports draw with, as bytes of the page they come from.
enum class Box : unsigned char {
  Vertical = 179,
  RightTee = 180,
  TopRight = 191,
  BottomLeft = 192,
  BottomTee = 193,
  TopTee = 194,
  LeftTee = 195,
  Horizontal = 196,
  Cross = 197,
  BottomRight = 217,
  TopLeft = 218,
  // Of plots and maps.
  DoubleVertical = 186,
  DoubleTopRight = 187,
  DoubleBottomRight = 188,
  DoubleBottomLeft = 200,
  DoubleTopLeft = 201,
  DoubleHorizontal = 205,
  Bullet = 249,
  SmallBullet = 250,
};

// Composes one line of a report by column. Column 1 is the control column.
class ReportLine {
 public:
  ReportLine() { Clear(); }
  void Clear();
  ReportLine& At(int column);     // where the next piece goes, from 1
  ReportLine& Skip(int columns);  // moves on over blanks
  ReportLine& Text(std::string_view text);
  ReportLine& Text(std::string_view text, int width);        // padded or cut
  ReportLine& Fixed(double value, int width, int decimals);  // Fw.d, asterisks when too wide
  ReportLine& Integer(long long value, int width);
  ReportLine& Repeat(char c, int count);
  ReportLine& Repeat(Box piece, int count);
  int Column() const { return next_; }
  char CharacterAt(int column) const { return text_[static_cast<std::size_t>(column - 1)]; }
  // The line without trailing blanks, at least 1 character: with what is drawn as it stands in its
  // page, and with plain characters in its place. Text is the same in both.
  std::string_view View() const;
  std::string Plain() const;

 private:
  // Where the next `count` characters go, as many of them as the line holds.
  char* Take(int count, bool drawn, std::size_t& held);

  std::array<char, ReportOutput::kMaxLine> text_;
  std::bitset<ReportOutput::kMaxLine> drawn_;
  int next_ = 1;
  std::size_t end_ = 0;       // behind the furthest character
  std::size_t drawnEnd_ = 0;  // behind the furthest drawn one
};

}  // namespace vardento
