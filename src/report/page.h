// Pages of the report: their lines, headings, the mark of a continued sheet, the opening banner.
#pragma once

#include "report/report_line.h"
#include "run/run.h"

namespace vardento {

void PutReportLine(Run& run, const ReportLine& line);
void PutBlankLine(Run& run);
// Heading of a page, followed by `blankLines` blank lines.
void PutPageHeading(Run& run, int blankLines);
// The same for a further part of a Table. Where HEADING=N leaves the heading out, the sheet is
// broken when the `lines` that follow don't fit.
void PutPartHeading(Run& run, int blankLines, int lines);
// Breaks the sheet when `linesAfterBlock` would stand beyond MAXPAGE=. True when a new sheet began
// (the writer then repeats its column heads).
bool CheckPageBreak(Run& run, int linesAfterBlock);

// The opening banner of the report.
void WriteBanner(Run& run);
// The heading of the page that takes the copy of the Control File (Table 0.3).
void PutControlCopyHeading(Run& run);

}  // namespace vardento
