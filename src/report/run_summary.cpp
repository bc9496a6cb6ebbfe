#include "report/run_summary.h"

#include <string>

#include "measure/entry_values.h"
#include "platform/io_status.h"
#include "platform/text_file.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "run/messages.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr std::string_view kLinesStem = "ZRR";
constexpr int kRuleLength = 76;
constexpr int kBarColumn = 79;
constexpr int kSummaryWidth = 80;
constexpr int kScreenWidth = 79;
constexpr int kDigestLength = 100;

void TellSummaryFailure(Run& run, int status) {
  if (status == kIoOk || run.outputFailed) return;
  run.RunIoStatus = status;
  ReportFileFailure(run, run.workDirectory.NameOf(kLinesStem), 'W');
  run.RunIoStatus = 0;
}

void PutBoth(Run& run, const ReportLine& line) {
  PutSummaryLine(run, line, kSummaryWidth);
  PutReportLine(run, line);
}

void PutHalfHead(Run& run, Facet facet, int input, int measured) {
  ReportLine line;
  PutBar(line, 2);
  line.Text(TrimRight(PluralLabel(run.settings, facet))).Integer(input, 7);
  line.Text(" INPUT ").Integer(measured, 7).Text(" MEASURED");
  line.At(56).Text("INFIT").At(70).Text("OUTFIT");
  PutBar(line, kBarColumn);
  PutBoth(run, line);
  line.Clear();
  PutBar(line, 2);
  line.At(13).Text("SCORE").At(23).Text("COUNT").At(33).Text("MEASURE").At(43).Text("ERROR");
  line.At(53).Text("IMNSQ").At(61).Text(run.settings.fitName, 4);
  line.At(67).Text("OMNSQ").At(75).Text(run.settings.fitName, 4);
  PutBar(line, kBarColumn);
  PutBoth(run, line);
}

void PutStatisticRow(Run& run, std::string_view word, const FacetSummary& summary,
                     float Statistic::*value) {
  ReportLine line;
  PutBar(line, 2);
  line.At(4).Text(word);
  line.At(10).Fixed(summary.score.*value, 8, 1).At(20).Fixed(summary.count.*value, 8, 1);
  line.At(32).Fixed(summary.measure.*value, 8, 2).At(40).Fixed(summary.realError.*value, 8, 2);
  PutSummaryFit(line, summary, value);
  PutBar(line, kBarColumn);
  PutBoth(run, line);
}

// One half of the box.
void PutHalf(Run& run, Facet facet, int input) {
  const bool persons = facet == Facet::Persons;
  const Summary& both = run.results.summary;
  const FacetSummary& summary = persons ? both.persons : both.items;
  PutHalfHead(run, facet, input, summary.measured);
  PutStatisticRow(run, "MEAN", summary, &Statistic::mean);
  PutStatisticRow(run, "S.D.", summary, &Statistic::sd);
  const SeparationValues& values = summary.realSeparation;
  const std::string& label = SingularLabel(run.settings, facet);
  PutBoth(run, SeparationRow(" REAL", values, {label, 6, true, kBarColumn}));
}

std::string DigestOf(const Run& run, Facet facet, const FacetSummary& summary) {
  const SeparationValues& values = summary.realSeparation;
  return std::string(TrimRight(SingularLabel(run.settings, facet))) +
         ": REAL SEP.: " + PlainNumber(values.SeparationIndex, 10, 2) +
         "  REL.: " + PlainNumber(values.Reliability, 10, 2);
}

}  // namespace

std::string RunDigest(const Run& run) {
  const Summary& summary = run.results.summary;
  const std::string digest = DigestOf(run, Facet::Persons, summary.persons) + " ... " +
                             DigestOf(run, Facet::Items, summary.items);
  return std::string(CutToWidth(digest, kDigestLength));
}

void WriteRunSummary(Run& run) {
  ReportLine title;
  title.At(2).Text(TrimRight(run.settings.TITLE));
  PutBoth(run, title);
  PutBoth(run, BoxRule(Box::TopLeft, kRuleLength, Box::TopRight));
  PutHalf(run, Facet::Persons, run.personsRead);
  PutBoth(run, BoxRule(Box::LeftTee, kRuleLength, Box::RightTee));
  PutHalf(run, Facet::Items, run.settings.NI);
  PutBoth(run, BoxRule(Box::BottomLeft, kRuleLength, Box::BottomRight));
}

void PutSummaryLine(Run& run, const ReportLine& line, int width) {
  int status = kIoOk;
  const std::string name = run.workDirectory.NameOf(kLinesStem);
  if (!run.summaryLines.IsOpen()) status = run.summaryLines.Open(name, FileMode::ReplacePrivate);
  if (status == kIoOk) {
    status = run.summaryLines.WriteLine(CutToWidth(line.Plain(), width));
  }
  TellSummaryFailure(run, status);
}

void ShowRunSummary(Run& run) {
  if (run.summaryLines.IsOpen()) {
    TellSummaryFailure(run, run.summaryLines.Close());
    TextReader reader;
    std::string line;
    if (reader.Open(run.workDirectory.NameOf(kLinesStem)) == kIoOk) {
      while (reader.ReadLine(line, kScreenWidth) == kIoOk) {
        WriteConsole(run, line);
      }
    }
  }
  WriteConsole(run, " Output written to " + run.startUp.ReportFileName);
}

}  // namespace vardento
