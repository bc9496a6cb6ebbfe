#include "report/summary_table.h"

#include <algorithm>
#include <cmath>
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

// The entries of one side by how they ended.
struct StatusCounts {
  int maximum = 0, minimum = 0, lacking = 0, deleted = 0;
  int Extreme() const { return maximum + minimum; }
};

StatusCounts CountStatus(const Array1<StatusByte>& status) {
  StatusCounts counts;
  for (const StatusByte s : status) {
    if (s == Status::ExtremeHigh) ++counts.maximum;
    if (s == Status::ExtremeLow) ++counts.minimum;
    if (s == Status::NoResponses) ++counts.lacking;
    if (s < Status::NoResponses) ++counts.deleted;
  }
  return counts;
}

// One of the two sections of the Table: persons or items.
class Section {
 public:
  Section(ReportContext& context, Facet facet)
      : run_(context.run),
        settings_(context.run.settings),
        summary_(context.summary),
        persons_(facet == Facet::Persons),
        counts_(CountStatus(ArraysOf(context.run, facet).status)),
        analysed_(persons_ ? context.run.ActivePersons : context.run.ActiveItems),
        singular_(TrimRight(SingularLabel(settings_, facet))),
        plural_(TrimRight(PluralLabel(settings_, facet))) {}

  void Print() {
    PutTitle();
    PutReportLine(run_, BoxRule(Box::TopLeft, kRuleLength, Box::TopRight));
    PutHead();
    PutReportLine(run_, BoxRule(Box::LeftTee, kRuleLength, Box::RightTee));
    PutRow("MEAN", &StatSlot::mean);
    PutRow("S.D.", &StatSlot::sd);
    PutRow("MAX.", &StatSlot::maximum);
    PutRow("MIN.", &StatSlot::minimum);
    PutReportLine(run_, BoxRule(Box::LeftTee, kRuleLength, Box::RightTee));
    PutSeparations(RealError(), ModelError(), Slot(2));
    PutErrorOfMean();
    if (counts_.Extreme() > 0) PutWithExtremes();
    PutReportLine(run_, BoxRule(Box::BottomLeft, kRuleLength, Box::BottomRight));
    PutCounts();
    if (persons_) PutValidResponses();
  }

 private:
  const StatSlot& Slot(int offset) const {
    return summary_[(persons_ ? kPersonSlots : kItemSlots) + offset];
  }
  const StatSlot& ModelError() const { return Slot(3); }
  const StatSlot& RealError() const {
    return summary_[persons_ ? kPersonRealError : kItemRealError];
  }

  void PutTitle() {
    ReportLine line;
    line.At(7).Text("SUMMARY OF").Integer(analysed_, 7).Text(" MEASURED");
    line.Text(counts_.Extreme() > 0 ? " (NON-EXTREME) " : " ").Text(plural_);
    PutReportLine(run_, line);
  }

  void PutHead() {
    ReportLine line;
    PutBar(line, 2);
    line.At(14).Text("RAW").At(43).Text(settings_.REALSE == 'Y' ? " REAL" : "MODEL");
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

  void PutRow(std::string_view word, float StatSlot::*statistic) {
    const StatSlot& error = settings_.REALSE == 'Y' ? RealError() : ModelError();
    ReportLine line;
    PutBar(line, 2);
    line.At(4).Text(word).Fixed(Slot(0).*statistic, 10, 1).Fixed(Slot(1).*statistic, 10, 1);
    line.Fixed(Slot(2).*statistic, 12, 2).Fixed(error.*statistic, 8, 2);
    PutSummaryFit(line, Slot(4).*statistic, Slot(5).*statistic, Slot(6).*statistic,
                  Slot(7).*statistic);
    PutBar(line, kBarColumn);
    PutReportLine(run_, line);
  }

  void PutSeparations(const StatSlot& real, const StatSlot& model, const StatSlot& measures) {
    const SeparationForm form{singular_, kLabelWidth, false, kBarColumn};
    PutReportLine(run_, SeparationRow(" REAL", Separation(real.sd, real.mean, measures.sd), form));
    PutReportLine(run_,
                  SeparationRow("MODEL", Separation(model.sd, model.mean, measures.sd), form));
  }

  void PutErrorOfMean() {
    ReportLine line;
    PutBar(line, 2);
    const double error = Slot(2).sd / std::sqrt(std::max(1.0, analysed_ - 1.0));
    line.Text(" S.E. OF ").Text(singular_).Text(" MEAN = ").Text(PlainNumber(error, 7, 2));
    PutBar(line, kBarColumn);
    PutReportLine(run_, line);
  }

  void PutWithExtremes() {
    const int firstSlot = persons_ ? kAllPersonMeasures : kAllItemMeasures;
    const StatSlot& measures = summary_[firstSlot];
    ReportLine line;
    PutBar(line, 2);
    line.Text(" WITH ").Text(IntegerText(counts_.Extreme())).Text(" EXTREME = ");
    line.Text(IntegerText(analysed_ + counts_.Extreme())).Text(" ").Text(plural_);
    line.Text("  MEAN = ").Text(PlainNumber(measures.mean, 7, 2));
    line.Text(",  S.D. = ").Text(PlainNumber(measures.sd, 7, 2));
    PutBar(line, kBarColumn);
    PutReportLine(run_, line);
    PutSeparations(summary_[firstSlot + 2], summary_[firstSlot + 1], measures);
  }

  void PutCount(int column, std::string_view caption, int count) {
    if (count <= 0) return;
    ReportLine line;
    line.At(column).Text(caption).Integer(count, 7).Skip(1).Text(plural_);
    PutReportLine(run_, line);
  }

  void PutCounts() {
    PutCount(4, "MAXIMUM EXTREME SCORE:", counts_.maximum);
    PutCount(4, "MINIMUM EXTREME SCORE:", counts_.minimum);
    PutCount(8, "LACKING RESPONSES:", counts_.lacking);
    if (persons_) PutCount(10, "BEYOND CAPACITY:", run_.personsRead - run_.NPERS);
    PutCount(18, "DELETED:", counts_.deleted);
  }

  void PutValidResponses() {
    const double meanCount = Slot(1).mean;
    const double items = run_.ActiveItems;
    if (run_.personWeights || run_.itemWeights || meanCount <= 0 || meanCount == items) return;
    ReportLine line;
    line.At(10).Text("VALID RESPONSES: ");
    line.Fixed(std::min(99.9, 100 * meanCount / std::max(1.0, items)), 5, 1).Text("%");
    if (settings_.CUTLO != 0 || settings_.CUTHI != 0) {
      line.Text("CUTLO=").Fixed(settings_.USCALE * settings_.CUTLO, 5, 1);
      line.Text(" CUTHI=").Fixed(settings_.USCALE * settings_.CUTHI, 5, 1);
    }
    PutReportLine(run_, line);
  }

  Run& run_;
  const ControlSettings& settings_;
  const FitSummary& summary_;
  bool persons_;
  StatusCounts counts_;
  int analysed_;
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
