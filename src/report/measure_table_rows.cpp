// The rows of the measure Tables and what closes them.
#include <algorithm>
#include <cmath>
#include <string>

#include "report/measure_table.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "report/run_summary.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kScreenRows = 4;     // rows of each side that the screen shows at the end
constexpr int kScreenWidth = 80;   // of such a row
constexpr int kLetterColumn = 62;  // the first column of the correlation

std::string_view StatusText(StatusByte status) {
  switch (status) {
    case Status::ExtremeHigh:
      return "MAXIMUM";
    case Status::ExtremeLow:
      return "MINIMUM";
    case Status::NoResponses:
      return "DROPPED";
    case Status::Deleted:
      return "DELETED";
    case Status::LostHigh:
      return "INESTIMABLE: HIGH";
    case Status::LostLow:
      return "INESTIMABLE: LOW";
    default:
      return "DESELECTED";
  }
}

// The 5 columns of a weight: the first 6 characters of its number with 3 decimals, set to the right
// in 6 columns, of which the rule takes the last.
std::string WeightText(float weight) {
  return PadLeft(PlainNumber(weight, 10, 3).substr(0, 6), 6).substr(0, 5);
}

// The bars between the fit columns; their contents are blank or put in later.
void PutFitBars(ReportLine& line) {
  for (const int column : {39, 50, 61}) PutBar(line, column);
}

}  // namespace

void MeasureTable::PutRows() {
  const int count = static_cast<int>(list_.entries.size());
  for (int n = 1; n <= count; ++n) {
    int& place = list_.entries[static_cast<std::size_t>(n - 1)];
    const int entry = place;
    if (entry <= 0 || IsLeftOut(n, entry)) {
      omitted_ = true;
      place = -std::abs(entry);
      continue;
    }
    if (omitted_ && !omissionShown_ && IsBetterThanExpected(entry)) PutOmissionLine();
    BreakPage();
    PutRow(n, entry);
    if (arrays_.status[entry] < Status::NoResponses) place = -entry;
  }
  if (omitted_ && !omissionShown_) PutOmissionLine();
}

// In fit order the well fitting middle of a long list is left out.
bool MeasureTable::IsLeftOut(int n, int entry) const {
  const int count = static_cast<int>(list_.entries.size());
  if (!fitOrder_ || n <= kLetters || count - n <= kLetters - 1) return false;
  const float limit = std::fabs(persons_ ? settings_.FITP : settings_.FITI);
  return std::fabs(arrays_.infitZ[entry]) < limit && std::fabs(arrays_.outfitZ[entry]) < limit;
}

bool MeasureTable::IsBetterThanExpected(int entry) const {
  return (!settings_.OUTFIT ? arrays_.infitZ[entry] : arrays_.outfitZ[entry]) < 0;
}

void MeasureTable::PutOmissionLine() {
  omissionShown_ = true;
  if (!fitOrder_) return;
  BreakPage();
  ReportLine line;
  PutBar(line, 2);
  line.At(10).Text("BETTER FITTING OMITTED");
  line.At(39);
  for (const int width : {10, 10, 5}) {
    line.Repeat(Box::Cross, 1).Repeat(Box::Horizontal, width);
  }
  const int end = line.Column();
  PutTail(line, {});
  line.At(end).Repeat(Box::RightTee, 1);
  PutReportLine(run_, line);
}

void MeasureTable::PutScore(ReportLine& line, float value) const {
  if (fractionalScores_) {
    line.Fixed(value, 7, 1);
  } else {
    line.Integer(std::llround(std::clamp(value, -1e9F, 1e9F)), 7);
  }
}

void MeasureTable::PutNumbers(ReportLine& line, const EntryValues& values) const {
  PutScore(line, values.score);
  PutScore(line, values.count);
  PutMeasure(line, settings_, values.measure);
  const int errorColumn = line.Column();
  PutMeasure(line, settings_, values.error);
  if (IsAnchored(values.status)) line.At(errorColumn).Text("A");
}

void MeasureTable::PutStatistics(ReportLine& line, const EntryValues& values, char letter) const {
  PutFit(line.At(40), values.infit, values.infitZ);
  PutFit(line.At(51), values.outfit, values.outfitZ);
  line.At(kLetterColumn).Fixed(values.correlation, 5, 2);
  // The letter would read as part of a negative correlation.
  const bool room =
      line.CharacterAt(kLetterColumn) == ' ' && line.CharacterAt(kLetterColumn + 1) != '-';
  if (room) line.At(kLetterColumn).Repeat(letter, 1);
}

void MeasureTable::PutEntryTail(ReportLine& line, int entry, const EntryValues& values) const {
  ReportLine displacement;
  if (IsMeasured(values.status)) PutMeasure(displacement, settings_, values.displacement);
  const std::string weight = WeightText(values.weight);
  const std::string label = LabelOfEntry(run_, facet_, entry);
  Tail tail{weight, displacement.View(), label};
  if (!persons_) {
    const Model model = run_.arrays.GroupModel[run_.arrays.ItemGroup[entry]];
    tail.model = model == Model::Rating ? ' ' : LetterOf(model);
    tail.group = GroupCodeOf(settings_, entry);
  }
  PutTail(line, tail);
}

void MeasureTable::PutRow(int n, int entry) {
  const EntryValues values = ReadShownValues(run_, facet_, entry);
  ReportLine line;
  PutBar(line, 2);
  line.Integer(entry, 6);
  if (IsMeasured(values.status)) PutNumbers(line, values);
  if (IsActive(values.status)) {
    PutFitBars(line);
    const int count = static_cast<int>(list_.entries.size());
    PutStatistics(line, values, fitOrder_ ? LetterOfPlace(n, count) : ' ');
  } else if (IsMeasured(values.status)) {
    PutBar(line, 39);
    line.At(41).Text(StatusText(values.status)).Text(" ESTIMATED MEASURE");
  } else {
    line.Skip(5).Text(StatusText(values.status));
    PutFitBars(line);
  }
  PutEntryTail(line, entry, values);
  PutReportLine(run_, line);
  SendToScreenSummary(line);
}

void MeasureTable::SendToScreenSummary(const ReportLine& line) {
  int& sent = persons_ ? context_.personSummaryLines : context_.itemSummaryLines;
  const int wanted = std::min(kScreenRows, static_cast<int>(list_.entries.size()));
  if (!fitOrder_ || run_.complete || sent >= wanted) return;
  if (sent == 0) PutSummaryLine(run_, SecondHeadLine(), kScreenWidth);
  PutSummaryLine(run_, line, kScreenWidth);
  ++sent;
}

void MeasureTable::PutClose() {
  PutReportLine(run_, Rule(Box::LeftTee, Box::Cross, Box::RightTee));
  PutSummaryRow("MEAN", &Statistic::mean);
  PutSummaryRow("S.D.", &Statistic::sd);
  PutReportLine(run_, Rule(Box::BottomLeft, Box::BottomTee, Box::BottomRight));
}

void MeasureTable::PutSummaryRow(std::string_view word, float Statistic::*value) {
  const Summary& summary = run_.results.summary;
  const FacetSummary& facet = persons_ ? summary.persons : summary.items;
  const Statistic& error = settings_.REALSE ? facet.realError : facet.error;
  ReportLine line;
  PutBar(line, 2);
  line.At(4).Text(word).Fixed(facet.score.*value, 8, 0).Fixed(facet.count.*value, 7, 0);
  PutMeasure(line, settings_, facet.measure.*value);
  PutMeasure(line, settings_, error.*value);
  PutFitBars(line);
  PutFit(line.At(40), facet.infit.*value, facet.infitZ.*value);
  PutFit(line.At(51), facet.outfit.*value, facet.outfitZ.*value);
  PutTail(line, {});
  PutReportLine(run_, line);
}

}  // namespace vardento
