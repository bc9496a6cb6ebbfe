// The summary box of a run, and the lines that the screen shows at its end.
#pragma once

#include <string>

#include "report/report_line.h"
#include "run/run.h"

namespace vardento {

// The box, to the report and the summary lines.
void WriteRunSummary(Run& run);
// Separation and reliability of both sides in one line, for the page heads: results.RunDigest.
std::string RunDigest(const Run& run);
// Appends a line, cut to `width` columns, to the summary lines, which have no drawn characters: a
// screen has no page of them. Opens their file when it isn't open yet; a failure is told once and
// the run goes on.
void PutSummaryLine(Run& run, const ReportLine& line, int width);
// Copies the summary lines to the console and says where the report is.
void ShowRunSummary(Run& run);

}  // namespace vardento
