#include "report/sample_norms.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "report/page.h"
#include "report/report_columns.h"
#include "report/score_table.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::string_view kHeads[] = {" SCORE   MEASURE    S.E.", "NORMED S.E.  FREQUENCY %",
                                       "   CUM.FREQ. %  PERCENTILE"};
constexpr int kLinesBelow = 2;  // a row and the closing rule

void PutWhole(ReportLine& line, double value, int width) {
  constexpr double kWidest = 1e9;  // far wider than any field
  line.Integer(std::llround(std::clamp(value, -kWidest, kWidest)), width);
}

class NormTable {
 public:
  NormTable(Run& run, const ScoreConversion& conversion, const SampleNorms& norms)
      : run_(run), conversion_(conversion), norms_(norms) {}

  void Print() {
    ReportLine line;
    line.At(2).Text("TABLE OF SAMPLE NORMS (500/100) AND FREQUENCIES ");
    line.Text("CORRESPONDING TO COMPLETE TEST");
    PutReportLine(run_, line);
    PutHead();
    for (int score = 0; score <= conversion_.Top(); ++score) {
      if (score > 0 && CheckPageBreak(run_, run_.report.LinesOnPage + kLinesBelow)) PutHead();
      PutRow(score);
    }
    PutRule(Box::BottomLeft, Box::BottomTee, Box::BottomRight);
  }

 private:
  void PutRule(Box left, Box joint, Box right) {
    ReportLine line;
    line.At(2).Repeat(left, 1);
    for (const std::string_view& head : kHeads) {
      line.Repeat(Box::Horizontal, static_cast<int>(head.size()));
      line.Repeat(&head == std::end(kHeads) - 1 ? right : joint, 1);
    }
    PutReportLine(run_, line);
  }

  void PutHead() {
    PutRule(Box::TopLeft, Box::TopTee, Box::TopRight);
    ReportLine line;
    PutBar(line, 2);
    for (const std::string_view head : kHeads) line.Text(head).Repeat(Box::Vertical, 1);
    PutReportLine(run_, line);
    PutRule(Box::LeftTee, Box::Cross, Box::RightTee);
  }

  void PutRow(int score) {
    const ScoreNorm norm = norms_.At(score);
    ReportLine line;
    PutBar(line, 2);
    PutScoreMeasure(line, run_, conversion_, score, 2);
    PutBar(line, 27);
    if (norm.normed) {
      PutWhole(line.At(28), norm.measure, 4);
      PutWhole(line.At(33), norm.error, 4);
    }
    line.At(39).Integer(norm.frequency, 6).Skip(1).Fixed(norm.percent, 5, 1);
    PutBar(line, 52);
    line.At(54).Integer(norm.cumulative, 6).Skip(1).Fixed(norm.cumulativePercent, 5, 1);
    PutWhole(line.At(72), norm.percentile, 3);
    PutBar(line, 79);
    PutReportLine(run_, line);
  }

  Run& run_;
  const ScoreConversion& conversion_;
  const SampleNorms& norms_;
};

}  // namespace

void PrintSampleNorms(ReportContext& context) {
  Run& run = context.run;
  const CompleteTest test = TestForTable(run);
  if (test.top < 1 || !test.IsWithinReach()) return;
  const std::string table = IntegerText(run.request.CurrentTable);
  WriteConsole(run, "  Calculating Scores for Table " + table);
  const ScoreConversion conversion = ConvertScores(run, test, SolvingOrder::InThirds);
  if (conversion.scores.empty()) return;
  WriteConsole(run, "  Calculating Frequencies for Table " + table);
  SampleNorms norms;
  switch (norms.Make(run, conversion)) {
    case SampleNorms::Outcome::NoMemory:
      return TellScoresRefused(run, test.top);
    case SampleNorms::Outcome::OutOfOrder:
      return TellUser(
          run, "SORT SEQUENCE ERROR: PLEASE SEND THIS FILE TO " + std::string(kSupportAddress));
    case SampleNorms::Outcome::Made:
      PutPageHeading(run, 1);
      NormTable(run, conversion, norms).Print();
  }
}

}  // namespace vardento
