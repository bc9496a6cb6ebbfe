// The column set of the measure Tables, their rules and heads.
#include <algorithm>
#include <cmath>
#include <string>

#include "report/measure_table.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kTailColumn = 67;  // the bar in front of the optional columns
constexpr int kWeighWidth = 5;
constexpr int kDisplaceWidth = 8;

bool HasFraction(const Array1<float>& weights) {
  return std::any_of(weights.begin(), weights.end(),
                     [](float weight) { return weight != std::floor(weight); });
}

}  // namespace

MeasureTable::MeasureTable(ReportContext& context, Facet facet, std::string_view orderWord)
    : context_(context),
      run_(context.run),
      settings_(context.run.settings),
      facet_(facet),
      persons_(facet == Facet::Persons),
      list_(persons_ ? context.persons : context.items),
      arrays_(ArraysOf(context.run, facet)),
      orderWord_(orderWord),
      fitOrder_(orderWord.find("FIT") != std::string_view::npos),
      weighColumn_(arrays_.weight.Size() > 0),
      displaceColumn_(
          (persons_ ? run_.results.fit.PersonDisplaced : run_.results.fit.ItemDisplaced) ||
          orderWord == "DISPLACEMENT"),
      fractionalScores_(HasFraction(arrays_.otherWeight)),
      field_(DecideLabelField()) {}

void MeasureTable::Print() {
  PutPageHeading(run_, 0);
  ReportLine line;
  line.At(2).Text(run_.results.RunDigest, 100);
  PutReportLine(run_, line);
  PutBlankLine(run_);
  PutTitle();
  PutHead();
  PutRows();
  PutClose();
}

MeasureTable::LabelField MeasureTable::DecideLabelField() const {
  LabelField field;
  if (persons_) {
    field.labelWidth = run_.LongestLabel;
    field.width = field.labelWidth + 1;
    return field;
  }
  field.labelWidth = run_.inForce.ITLEN;
  field.width = field.labelWidth + 1;
  const Array1<Model>& models = run_.arrays.GroupModel;
  const bool modelColumn =
      std::any_of(models.begin(), models.end(), [](Model model) { return model != Model::Rating; });
  const bool groupColumn = run_.NGROUPS > 1;
  if (modelColumn || groupColumn) ++field.width;
  if (modelColumn) {
    field.modelPlace = field.width + 1;
    field.width += 2;
  }
  if (groupColumn) {
    field.groupPlace = field.width + 1;
    field.width += 2;
  }
  return field;
}

void MeasureTable::PutTail(ReportLine& line, const Tail& tail) const {
  PutBar(line, kTailColumn);
  if (weighColumn_) {
    line.Text(tail.weight, kWeighWidth);
    PutBar(line, line.Column());
  }
  if (displaceColumn_) {
    line.Text(tail.displacement, kDisplaceWidth);
    PutBar(line, line.Column());
  }
  const int before = line.Column() - 1;
  line.Skip(1).Text(tail.label, field_.labelWidth);
  if (field_.modelPlace > 0) line.At(before + field_.modelPlace).Repeat(tail.model, 1);
  if (field_.groupPlace > 0) line.At(before + field_.groupPlace).Repeat(tail.group, 1);
  PutBar(line, before + field_.width + 1);
}

ReportLine MeasureTable::Rule(Box left, Box joint, Box right) const {
  ReportLine line;
  line.At(2).Repeat(left, 1).Repeat(Box::Horizontal, 36);
  const auto column = [&](int width) { line.Repeat(joint, 1).Repeat(Box::Horizontal, width); };
  column(10);
  column(10);
  column(5);
  if (weighColumn_) column(kWeighWidth);
  if (displaceColumn_) column(kDisplaceWidth);
  column(field_.width);
  line.Repeat(right, 1);
  return line;
}

void MeasureTable::PutTitle() {
  ReportLine line;
  line.At(11).Text(TrimRight(SingularLabel(settings_, facet_)));
  line.Text(" STATISTICS:  ").Text(orderWord_).Text(" ORDER");
  if (orderWord_ == "ALPHA") {
    line.Text(" ON COLUMN: ").Text(Trim(FixedText(run_.request.Value(5), "(F5.0)", 5)));
  }
  PutReportLine(run_, line);
  PutBlankLine(run_);
}

void MeasureTable::PutHead() {
  PutReportLine(run_, Rule(Box::TopLeft, Box::TopTee, Box::TopRight));
  ReportLine line;
  PutBar(line, 2);
  line.Text("ENTRY").At(12).Text(settings_.TOTAL ? "TOTAL" : "RAW");
  PutBar(line, 39);
  line.Text("   INFIT  ");
  PutBar(line, 50);
  line.Text("  OUTFIT  ");
  PutBar(line, 61);
  line.Text(run_.inForce.pointBiserial ? "PTBIS" : "SCORE");
  PutTail(line, {});
  PutReportLine(run_, line);
  PutReportLine(run_, SecondHeadLine());
  PutReportLine(run_, Rule(Box::LeftTee, Box::Cross, Box::RightTee));
}

ReportLine MeasureTable::SecondHeadLine() const {
  ReportLine line;
  PutBar(line, 2);
  line.Text("NUMBER  SCORE  COUNT  MEASURE");
  line.At(33).Text(settings_.REALSE ? "REALSE" : " ERROR");
  for (const int column : {39, 50}) {
    PutBar(line, column);
    line.Text("MNSQ  ").Text(settings_.fitName, 4);
  }
  PutBar(line, 61);
  line.Text("CORR.");
  PutTail(line, {"WEIGH", "DISPLACE", TrimRight(SingularLabel(settings_, facet_)), 'M', 'G'});
  return line;
}

void MeasureTable::BreakPage() {
  // A row, the rule below the last one, and the two closing rows or their rule.
  constexpr int kLinesNeeded = 4;
  if (!CheckPageBreak(run_, run_.report.LinesOnPage + kLinesNeeded)) return;
  PutTitle();
  PutHead();
}

}  // namespace vardento
