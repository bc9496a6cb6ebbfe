#include "report/convergence_table.h"

#include <algorithm>
#include <string>

#include "report/page.h"
#include "report/report_columns.h"
#include "run/messages.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kRuleLength = 76;  // between the corners at columns 2 and 79
constexpr int kBarColumn = 79;
constexpr int kLinesBelow = 2;  // a row and the closing rule

void PutConsoleLine(Run& run, const ReportLine& line) { WriteConsole(run, line.Plain()); }

void PutBoth(Run& run, const ReportLine& line) {
  PutReportLine(run, line);
  PutConsoleLine(run, line);
}

ReportLine TopRule() { return BoxRule(Box::TopLeft, kRuleLength, Box::TopRight); }

// On the screen the top rule names the two files, by the ends of their names.
void PutConsoleTopRule(Run& run) {
  constexpr int kNameLength = 28;
  ReportLine line = TopRule();
  const auto lay = [&line](int column, std::string_view caption, std::string_view name) {
    line.At(column).Text(caption).Text(" ").Text(CutToLast(TrimRight(name), kNameLength));
  };
  lay(4, "Control:", run.startUp.ControlFileName);
  lay(42, "Output:", run.startUp.ReportFileName);
  PutConsoleLine(run, line);
}

// The two lines of a head, closed by the bars of the box.
struct Head {
  ReportLine first, second;
};

Head ProxHead(const ControlSettings& settings) {
  Head head;
  PutBar(head.first, 2);
  head.first.Text(PadLeft("PROX", 8)).Skip(10).Text("ACTIVE COUNT").Skip(7);
  head.first.Text("EXTREME 5 RANGE").Skip(6).Text("MAX LOGIT CHANGE");
  PutBar(head.first, kBarColumn);
  PutBar(head.second, 2);
  head.second.Text(" ITERATION").Skip(3).Text(settings.PERSONS_LABEL, 7).Skip(1);
  head.second.Text(settings.ITEMS_LABEL, 7).Skip(1).Text("CATS").Skip(5);
  head.second.Text(settings.PERSONS_LABEL, 7).Skip(1).Text(settings.ITEMS_LABEL, 7).Skip(4);
  head.second.Text("MEASURES").Skip(5).Text("STEPS");
  PutBar(head.second, kBarColumn);
  return head;
}

Head UconHead(const ControlSettings& settings) {
  Head head;
  PutBar(head.first, 2);
  // 5 blanks, so that the captions stand above the columns of the second line and the box keeps
  // its width.
  head.first.Text(PadLeft("UCON", 8)).Skip(5).Text("MAX SCORE").Skip(3).Text("MAX LOGIT").Skip(4);
  head.first.Text("LEAST CONVERGED").Skip(5).Text("CATEGORY").Skip(4).Text("STEP");
  PutBar(head.first, kBarColumn);
  PutBar(head.second, 2);
  head.second.Text(" ITERATION").Skip(3).Text("RESIDUAL*").Skip(4).Text("CHANGE").Skip(4);
  head.second.Text(settings.PERSONS_LABEL, 6).Skip(1).Text(settings.ITEMS_LABEL, 6).Skip(3);
  head.second.Text("CAT").Skip(3).Text("RESIDUAL").Skip(3).Text("CHANGE");
  PutBar(head.second, kBarColumn);
  return head;
}

void PutHeadOnReport(Run& run, const Head& head) {
  PutReportLine(run, head.first);
  PutReportLine(run, head.second);
}

void PutHeadOnConsole(Run& run, const Head& head) {
  PutConsoleLine(run, head.first);
  PutConsoleLine(run, head.second);
}

// Begins a new sheet under the same head when one is due.
void BreakPage(Run& run, Head (*head)(const ControlSettings&)) {
  if (!CheckPageBreak(run, run.report.LinesOnPage + kLinesBelow)) return;
  PutReportLine(run, TopRule());
  PutHeadOnReport(run, head(run.settings));
}

ReportLine ProxRow(const ProxRecord& record) {
  ReportLine line;
  PutBar(line, 2);
  line.Integer(record.iteration, 9).Integer(record.activePersons, 9).Integer(record.activeItems, 8);
  line.Integer(record.activeCategories, 6).Skip(3);
  line.Fixed(record.personRange, 8, 2).Fixed(record.itemRange, 8, 2);
  line.Fixed(record.measureChange, 14, 4);
  if (record.stepChange != 0) {
    // The field begins on the last digit of the one before it, which its blanks must spare.
    const std::string change = fixed_field(record.stepChange, 10, 4);
    const std::size_t blanks = std::min(change.find_first_not_of(' '), change.size());
    line.At(67 + static_cast<int>(blanks)).Text(std::string_view(change).substr(blanks));
  }
  PutBar(line, kBarColumn);
  return line;
}

ReportLine UconRow(const UconRecord& record) {
  ReportLine line;
  PutBar(line, 2);
  line.Integer(record.iteration, 8).Fixed(record.scoreResidual, 13, 2);
  line.Fixed(record.measureChange, 12, 4);
  line.Integer(record.person, 8).Text(record.personIsWorse ? "*" : " ");
  line.Integer(record.item, 6).Text(record.personIsWorse ? " " : "*");
  if (record.stepChange != 0) {
    line.Integer(record.categoryCode, 7).Fixed(record.categoryResidual, 11, 2);
    line.Fixed(record.stepChange, 9, 4);
  }
  PutBar(line, kBarColumn);
  return line;
}

}  // namespace

void ConvergenceTable::BeginProx() {
  run_.request.CurrentTable = 0;
  run_.request.SubtableCounter = 1;
  run_.request.HeadingPending = true;
  PutPageHeading(run_, 1);
  ReportLine title;
  title.At(31).Text("CONVERGENCE TABLE");
  PutBoth(run_, title);
  PutReportLine(run_, TopRule());
  PutConsoleTopRule(run_);
  const Head head = ProxHead(run_.settings);
  PutHeadOnReport(run_, head);
  PutHeadOnConsole(run_, head);
}

void ConvergenceTable::MissBiserial(std::size_t bytes) {
  ReportMessage(run_, std::to_string(bytes) +
                          " bytes of memory not available. Point-biserial computation failed.");
}

void ConvergenceTable::BeginProxPass() { BreakPage(run_, ProxHead); }

void ConvergenceTable::EndProxPass(const ProxRecord& record) { PutBoth(run_, ProxRow(record)); }

void ConvergenceTable::BeginRangeCut(float low, float high) {
  ReportLine line;
  PutBar(line, 2);
  line.At(4).Text("DROPPING OUT OF RANGE OBSERVATIONS.  CUTLOW=").Fixed(low, 6, 2);
  line.Text("  CUTHIGH=").Fixed(high, 6, 2);
  PutBar(line, kBarColumn);
  PutBoth(run_, line);
}

void ConvergenceTable::EndRangeCut(long long dropped) {
  ReportLine line;
  PutBar(line, 2);
  line.At(4);
  if (dropped == 0) {
    line.Text("THERE WERE NO OUT OF RANGE OBSERVATIONS");
  } else {
    line.Integer(dropped, 10).Text(" OBSERVATIONS DROPPED");
  }
  PutBar(line, kBarColumn);
  PutBoth(run_, line);
}

void ConvergenceTable::BeginUcon() {
  PutBoth(run_, BoxRule(Box::LeftTee, kRuleLength, Box::RightTee));
  const Head head = UconHead(run_.settings);
  PutHeadOnReport(run_, head);
  PutHeadOnConsole(run_, head);
}

void ConvergenceTable::BeginUconIteration() { BreakPage(run_, UconHead); }

void ConvergenceTable::EndUconIteration(const UconRecord& record) {
  PutBoth(run_, UconRow(record));
}

void ConvergenceTable::EndTable() {
  PutBoth(run_, BoxRule(Box::BottomLeft, kRuleLength, Box::BottomRight));
}

}  // namespace vardento
