// The line composer: one line of a report, put together by column.
#pragma once

#include <array>
#include <string_view>

#include "run/report_output.h"

namespace vardento {

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
  int Column() const { return next_; }
  char CharacterAt(int column) const { return text_[static_cast<std::size_t>(column - 1)]; }
  std::string_view View() const;  // without trailing blanks, at least 1 character

 private:
  std::array<char, ReportOutput::kMaxLine> text_;
  int next_ = 1;
};

}  // namespace vardento
