// Columns that several Tables share, each printed by one routine: how a measure, a mean-square or a
// standardised value looks is said here and nowhere else.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "report/report_line.h"
#include "run/control_settings.h"
#include "run/results.h"

namespace vardento {

// Measure, standard error or displacement: 8 columns with UDECIM= decimals.
void PutMeasure(ReportLine& line, const ControlSettings& settings, double value);
// Mean-square in 4 columns and its standardised value in 6: the columns of entry lists.
void PutFit(ReportLine& line, double meanSquare, double standardised);
// INFIT and OUTFIT of a summary box, 28 columns from column 51 on.
void PutSummaryFit(ReportLine& line, const FacetSummary& summary, float Statistic::*value);

// What the fit of Tables is named by: "MNSQ", or the standardised values' own name in 4 columns.
inline std::string_view FitWord(const ControlSettings& settings) {
  return settings.MNSQ ? "MNSQ" : std::string_view(settings.fitName);
}

// Vertical rule at a column.
void PutBar(ReportLine& line, int column);
// A rule from column 2 on: a corner or tee, `count` horizontals, a corner or tee.
ReportLine BoxRule(Box left, int count, Box right);
// The same over columns of these widths, with crosses between them.
ReportLine BoxRule(Box left, std::initializer_list<int> widths, Box right);

// The separation row of a summary box: `kind` is " REAL" or "MODEL"; the label takes at most
// `labelWidth` columns from 56 on and the bar stands at `barColumn`. `padLabel`: the label always
// takes its full width.
struct SeparationForm {
  std::string_view label;
  int labelWidth;
  bool padLabel;
  int barColumn;
};
ReportLine SeparationRow(std::string_view kind, const SeparationValues& values,
                         const SeparationForm& form);

// A number as a field of `width` with `decimals` decimals shows it, less the blanks around it.
std::string PlainNumber(double value, int width, int decimals);

inline constexpr int kLetters = 26;  // entries at each end of a list that get a letter
// The mark of place n of `count` in a list of fit order: "A" to "Z" for the first 26, "a" to "z"
// for the last ones seen from the end, the middle belonging to the top; ' ' between them.
char LetterOfPlace(int n, int count);

}  // namespace vardento
