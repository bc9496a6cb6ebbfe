// The report writer: page headings, paging, the line composer, sorted lists, and the dispatch of a
// Table request to the writer of the Table.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "run/run.h"

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

// Entry numbers in an order, with the tag of that order; negated numbers are entries that a Table
// left out.
struct SelectedList {
  std::vector<int> entries;
  char order = ' ';
};

// What the Table writers share: the run and the lists that survive between Tables.
struct ReportContext {
  Run& run;
  SelectedList persons, items;
  float rangeLow = 0, rangeHigh = 0, rangeUnit = 1;  // left by MeasureRange
  int rangeSpan = 0;
  int personSummaryLines = 0, itemSummaryLines = 0;  // rows sent to the screen's summary so far
};

void PutReportLine(Run& run, const ReportLine& line);
void PutBlankLine(Run& run);
// Heading of a page, followed by `blankLines` blank lines.
void PutPageHeading(Run& run, int blankLines);
// Breaks the sheet when `linesAfterBlock` would stand beyond MAXPAGE=. True when a new sheet began
// (the writer then repeats its column heads).
bool CheckPageBreak(Run& run, int linesAfterBlock);

// The opening banner of the report.
void WriteBanner(Run& run);
// The heading of the page that takes the copy of the Control File (Table 0.3).
void PutControlCopyHeading(Run& run);

// Prints the Table of run.request and clears its slots.
void DispatchTable(ReportContext& context);
// Runs every "1" of TABLES=, then the lines of TFILE=.
void RunRequestedTables(ReportContext& context);
// Fills run.request from one line of up to 80 characters.
void ParseTableRequest(TableRequest& request, std::string_view line);

// The summary box of the run, to the report and the summary lines; leaves results.RunDigest.
void WriteRunSummary(Run& run);
// Copies the summary lines to the console and says where the report is.
void ShowRunSummary(Run& run);

}  // namespace vardento
