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

// What one half of the box shows.
struct Half {
  Facet facet;
  int input, measured;
  int firstSlot, realErrorSlot;
};

void PutHalfHead(Run& run, const Half& half) {
  ReportLine line;
  PutBar(line, 2);
  line.Text(TrimRight(PluralLabel(run.settings, half.facet))).Integer(half.input, 7);
  line.Text(" INPUT ").Integer(half.measured, 7).Text(" MEASURED");
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

void PutStatisticRow(Run& run, std::string_view word, const Half& half, const FitSummary& summary,
                     float StatSlot::*statistic) {
  const auto value = [&](int offset) { return summary[half.firstSlot + offset].*statistic; };
  ReportLine line;
  PutBar(line, 2);
  line.At(4).Text(word);
  line.At(10).Fixed(value(0), 8, 1).At(20).Fixed(value(1), 8, 1);
  line.At(32).Fixed(value(2), 8, 2).At(40).Fixed(summary[half.realErrorSlot].*statistic, 8, 2);
  PutSummaryFit(line, value(4), value(5), value(6), value(7));
  PutBar(line, kBarColumn);
  PutBoth(run, line);
}

void PutHalf(Run& run, const Half& half, const FitSummary& summary) {
  PutHalfHead(run, half);
  PutStatisticRow(run, "MEAN", half, summary, &StatSlot::mean);
  PutStatisticRow(run, "S.D.", half, summary, &StatSlot::sd);
  const StatSlot& error = summary[half.realErrorSlot];
  const SeparationValues values = Separation(error.sd, error.mean, summary[half.firstSlot + 2].sd);
  const std::string& label = SingularLabel(run.settings, half.facet);
  PutBoth(run, SeparationRow(" REAL", values, {label, 6, true, kBarColumn}));
  run.RunDigest.append(TrimRight(label)).append(": REAL SEP.: ");
  run.RunDigest.append(PlainNumber(values.SeparationIndex, 10, 2));
  run.RunDigest.append("  REL.: ").append(PlainNumber(values.Reliability, 10, 2));
}

}  // namespace

void WriteRunSummary(Run& run, const FitSummary& summary) {
  run.RunDigest.clear();
  ReportLine title;
  title.At(2).Text(TrimRight(run.settings.TITLE));
  PutBoth(run, title);
  PutBoth(run, BoxRule(Box::TopLeft, kRuleLength, Box::TopRight));
  const Half persons{Facet::Persons, run.personsRead, run.ActivePersons, kPersonSlots,
                     kPersonRealError};
  PutHalf(run, persons, summary);
  PutBoth(run, BoxRule(Box::LeftTee, kRuleLength, Box::RightTee));
  run.RunDigest.append(" ... ");
  const Half items{Facet::Items, run.settings.NI, run.ActiveItems, kItemSlots, kItemRealError};
  PutHalf(run, items, summary);
  PutBoth(run, BoxRule(Box::BottomLeft, kRuleLength, Box::BottomRight));
  run.RunDigest = std::string(CutToWidth(run.RunDigest, kDigestLength));
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
