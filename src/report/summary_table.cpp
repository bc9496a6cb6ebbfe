#include "report/summary_table.h"

#include <string>

#include "measure/entry_values.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kRuleLength = 77;
constexpr int kBarColumn = 80;
constexpr int kItemSectionLines = 14;
// What stands between column 56 and "RELIABILITY" may not push the value over the bar.
constexpr int kLabelWidth = 7;

// One of the two sections of the Table: persons or items.
class Section {
 public:
  Section(ReportContext& context, Facet facet)
      : run_(context.run),
        settings_(context.run.settings),
        persons_(facet == Facet::Persons),
        summary_(persons_ ? context.run.results.summary.persons
                          : context.run.results.summary.items),
        singular_(TrimRight(SingularLabel(settings_, facet))),
        plural_(TrimRight(PluralLabel(settings_, facet))) {}

  void Print() {
    PutTitle();
    PutReportLine(run_, BoxRule(Box::TopLeft, kRuleLength, Box::TopRight));
    PutHead();
    PutReportLine(run_, BoxRule(Box::LeftTee, kRuleLength, Box::RightTee));
    PutRow("MEAN", &Statistic::mean);
    PutRow("S.D.", &Statistic::sd);
    PutRow("MAX.", &Statistic::maximum);
    PutRow("MIN.", &Statistic::minimum);
    PutReportLine(run_, BoxRule(Box::LeftTee, kRuleLength, Box::RightTee));
    PutSeparations(summary_.realSeparation, summary_.separation);
    PutErrorOfMean();
    if (summary_.Extreme() > 0) PutWithExtremes();
    PutReportLine(run_, BoxRule(Box::BottomLeft, kRuleLength, Box::BottomRight));
    PutCounts();
    if (persons_) PutValidResponses();
  }

 private:
  void PutTitle() {
    ReportLine line;
    line.At(7).Text("SUMMARY OF").Integer(summary_.measured, 7).Text(" MEASURED");
    line.Text(summary_.Extreme() > 0 ? " (NON-EXTREME) " : " ").Text(plural_);
    PutReportLine(run_, line);
  }

  void PutHead() {
    ReportLine line;
    PutBar(line, 2);
    line.At(14).Text("RAW").At(43).Text(settings_.REALSE ? " REAL" : "MODEL");
    line.At(57).Text("INFIT").At(70).Text("OUTFIT");
    PutBar(line, kBarColumn);
    PutReportLine(run_, line);
    line.Clear();
    PutBar(line, 2);
    line.At(13).Text("SCORE").At(23).Text("COUNT").At(33).Text("MEASURE").At(43).Text("ERROR");
    line.At(54).Text("MNSQ").At(61).Text(settings_.fitName, 4);
    line.At(68).Text("MNSQ").At(75).Text(settings_.fitName, 4);
    PutBar(line, kBarColumn);
    PutReportLine(run_, line);
  }

  void PutRow(std::string_view word, float Statistic::*value) {
    const Statistic& error = settings_.REALSE ? summary_.realError : summary_.error;
    ReportLine line;
    PutBar(line, 2);
    line.At(4).Text(word).Fixed(summary_.score.*value, 10, 1).Fixed(summary_.count.*value, 10, 1);
    line.Fixed(summary_.measure.*value, 12, 2).Fixed(error.*value, 8, 2);
    PutSummaryFit(line, summary_, value);
    PutBar(line, kBarColumn);
    PutReportLine(run_, line);
  }

  void PutSeparations(const SeparationValues& real, const SeparationValues& model) {
    const SeparationForm form{singular_, kLabelWidth, false, kBarColumn};
    PutReportLine(run_, SeparationRow(" REAL", real, form));
    PutReportLine(run_, SeparationRow("MODEL", model, form));
  }

  void PutErrorOfMean() {
    ReportLine line;
    PutBar(line, 2);
    line.Text(" S.E. OF ").Text(singular_).Text(" MEAN = ");
    line.Text(PlainNumber(summary_.meanError, 7, 2));
    PutBar(line, kBarColumn);
    PutReportLine(run_, line);
  }

  void PutWithExtremes() {
    ReportLine line;
    PutBar(line, 2);
    line.Text(" WITH ").Text(IntegerText(summary_.Extreme())).Text(" EXTREME = ");
    line.Text(IntegerText(summary_.measured + summary_.Extreme())).Text(" ").Text(plural_);
    line.Text("  MEAN = ").Text(PlainNumber(summary_.allMeasure.mean, 7, 2));
    line.Text(",  S.D. = ").Text(PlainNumber(summary_.allMeasure.sd, 7, 2));
    PutBar(line, kBarColumn);
    PutReportLine(run_, line);
    PutSeparations(summary_.allRealSeparation, summary_.allSeparation);
  }

  void PutCount(int column, std::string_view caption, int count) {
    if (count <= 0) return;
    ReportLine line;
    line.At(column).Text(caption).Integer(count, 7).Skip(1).Text(plural_);
    PutReportLine(run_, line);
  }

  void PutCounts() {
    PutCount(4, "MAXIMUM EXTREME SCORE:", summary_.maximum);
    PutCount(4, "MINIMUM EXTREME SCORE:", summary_.minimum);
    PutCount(8, "LACKING RESPONSES:", summary_.lacking);
    if (persons_) PutCount(10, "BEYOND CAPACITY:", run_.results.summary.beyondCapacity);
    PutCount(18, "DELETED:", summary_.deleted);
  }

  void PutValidResponses() {
    const Summary& summary = run_.results.summary;
    if (summary.validResponses == 0) return;
    ReportLine line;
    line.At(10).Text("VALID RESPONSES: ").Fixed(summary.validResponses, 5, 1).Text("%");
    if (summary.cutBelow != 0 || summary.cutAbove != 0) {
      line.Text("CUTLO=").Fixed(summary.cutBelow, 5, 1);
      line.Text(" CUTHI=").Fixed(summary.cutAbove, 5, 1);
    }
    PutReportLine(run_, line);
  }

  Run& run_;
  const ControlSettings& settings_;
  bool persons_;
  const FacetSummary& summary_;
  std::string singular_, plural_;
};

}  // namespace

void PrintSummaryTable(ReportContext& context) {
  Run& run = context.run;
  PutPageHeading(run, 1);
  Section(context, Facet::Persons).Print();
  CheckPageBreak(run, run.report.LinesOnPage + kItemSectionLines);
  PutBlankLine(run);
  Section(context, Facet::Items).Print();
  ReportLine line;
  line.Text(" UMEAN=").Text(Trim(FixedText(run.settings.UMEAN, "(F8.3)", 8)));
  line.Text(" USCALE=").Text(Trim(FixedText(run.settings.USCALE, "(F8.3)", 8)));
  PutReportLine(run, line);
}

}  // namespace vardento
