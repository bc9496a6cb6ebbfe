#include "report/report_columns.h"

#include <algorithm>

#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {

void PutMeasure(ReportLine& line, const ControlSettings& settings, double value) {
  line.Fixed(value, 8, settings.UDECIM);
}

void PutFit(ReportLine& line, double meanSquare, double standardised) {
  line.Fixed(meanSquare, 4, 2).Fixed(standardised, 6, 1);
}

void PutSummaryFit(ReportLine& line, const FacetSummary& summary, float Statistic::*value) {
  line.At(51).Fixed(summary.infit.*value, 7, 2).Fixed(summary.infitZ.*value, 7, 1);
  line.Fixed(summary.outfit.*value, 7, 2).Fixed(summary.outfitZ.*value, 7, 1);
}

void PutBar(ReportLine& line, int column) { line.At(column).Repeat(Box::Vertical, 1); }

ReportLine BoxRule(Box left, int count, Box right) {
  ReportLine line;
  line.At(2).Repeat(left, 1).Repeat(Box::Horizontal, count).Repeat(right, 1);
  return line;
}

ReportLine BoxRule(Box left, std::initializer_list<int> widths, Box right) {
  ReportLine line;
  line.At(2);
  Box joint = left;
  for (const int width : widths) {
    line.Repeat(joint, 1).Repeat(Box::Horizontal, width);
    joint = Box::Cross;
  }
  line.Repeat(right, 1);
  return line;
}

ReportLine SeparationRow(std::string_view kind, const SeparationValues& values,
                         const SeparationForm& form) {
  ReportLine line;
  PutBar(line, 2);
  line.Text(kind).Text(" RMSE").Fixed(values.RMSE, 7, 2);
  line.At(22).Text("ADJ.SD").Fixed(values.AdjustedSD, 8, 2);
  line.At(38).Text("SEPARATION").Fixed(values.SeparationIndex, 6, 2);
  const std::string_view label = CutToWidth(TrimRight(form.label), form.labelWidth);
  line.At(56).Text(label, form.padLabel ? form.labelWidth : TextWidth(label));
  line.Skip(1).Text("RELIABILITY").Fixed(values.Reliability, 5, 2);
  PutBar(line, form.barColumn);
  return line;
}

std::string PlainNumber(double value, int width, int decimals) {
  return std::string(Trim(fixed_field(value, width, decimals)));
}

char LetterOfPlace(int n, int count) {
  if (n <= kLetters && n <= (count + 1) / 2) return static_cast<char>('A' + n - 1);
  const int fromEnd = count - n + 1;
  return fromEnd <= std::min(kLetters, count / 2) ? static_cast<char>('a' + fromEnd - 1) : ' ';
}

}  // namespace vardento
