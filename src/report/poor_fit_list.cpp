#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "measure/entry_values.h"
#include "measure/fit_plot.h"
#include "measure/responses.h"
#include "report/misfit_listings.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "report/report_line.h"
#include "run/messages.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kLabelColumn = 10, kMeasureColumn = 34;
constexpr int kCellsColumn = 21;
constexpr int kHalfGroup = 5, kGroup = 10;  // cells that stand together
constexpr int kLargestZ = 9;

// A value or a residual of a response: 2 columns for one digit, else 3.
int CellWidth(const Run& run) { return run.MAXCAT < 10 ? 2 : 3; }

// How many responses fit a line, in whole groups of 10 and a half one.
int ResponsesInLine(const Run& run) {
  const int half = 1 + kHalfGroup * CellWidth(run);  // a blank in front of each half
  const int group = 2 * half + 1;
  const int room = std::max(run.settings.LINELEN - kCellsColumn - 1, 0);
  const int responses = room / group * kGroup + (room % group >= half ? kHalfGroup : 0);
  return std::max(responses, kHalfGroup);
}

class PoorFitList {
 public:
  explicit PoorFitList(ReportContext& context)
      : context_(context),
        run_(context.run),
        facet_(context.needs.subject),
        inLine_(ResponsesInLine(context.run)),
        width_(CellWidth(context.run)) {}

  void Print() {
    const SelectedList& list = ListInFitOrder(context_);
    PutPageHeading(run_, 1);
    WriteConsole(run_, "Processing Misfitting " + Plural(facet_) + " for Table " +
                           IntegerText(run_.request.CurrentTable));
    listed_ = static_cast<int>(list.entries.size());
    const std::vector<Misfit> misfits = FindMisfits(run_, facet_, EntriesOf(list));
    std::vector<int> entries;
    for (const Misfit& misfit : misfits) entries.push_back(misfit.fit.entry);
    EntryResponses responses(run_, facet_, std::move(entries));
    for (std::size_t place = 0; place < misfits.size(); ++place) {
      if (place == 0) {
        PutHead();
      } else {
        BreakPage(kLinesOfEntry);
      }
      PutEntry(misfits[place]);
      responses.Open(place);
      PutResponses(misfits[place], responses);
    }
  }

 private:
  static constexpr int kLinesOfEntry = 8, kLinesOfBlock = 7;

  std::string Plural(Facet facet) const {
    return std::string(TrimRight(PluralLabel(run_.settings, facet)));
  }

  // True when a new sheet began, with its head.
  bool BreakPage(int lines) {
    if (!CheckPageBreak(run_, run_.report.LinesOnPage + lines)) return false;
    PutHead();
    return true;
  }

  void PutHead() {
    ReportLine line;
    line.Text(" TABLE OF POORLY FITTING ").Text(Plural(facet_));
    line.Text("   (").Text(Plural(OtherFacet(facet_))).Text(" IN ENTRY ORDER)");
    PutReportLine(run_, line);
    line.Clear();
    line.Text(" NUMBER ").Repeat(Box::Horizontal, 1).Text(" NAME ");
    line.Repeat(Box::Horizontal, 2).Text(" POSITION ").Repeat(Box::Horizontal, 6);
    line.Text(" MEASURE ").Repeat(Box::Horizontal, 1).Text(" INFIT (");
    line.Text(FitWord(run_.settings)).Text(") OUTFIT");
    PutReportLine(run_, line);
    PutBlankLine(run_);
  }

  void PutEntry(const Misfit& misfit) {
    ReportLine line;
    line.At(2).Integer(misfit.fit.entry, 6).Text(misfit.anchored ? "*" : " ");
    line.At(kLabelColumn)
        .Text(CutToWidth(LabelOfEntry(run_, facet_, misfit.fit.entry),
                         kMeasureColumn - kLabelColumn));
    PutMeasure(line.At(kMeasureColumn), run_.settings, misfit.fit.measure);
    line.At(45).Fixed(misfit.fit.infit, 5, 1);
    line.At(53).Repeat(LetterOfPlace(misfit.place, listed_), 1);
    line.At(56).Fixed(misfit.fit.outfit, 5, 1);
    PutReportLine(run_, line);
  }

  // On a further sheet the entry's line tells again whose they are.
  void PutResponses(const Misfit& misfit, EntryResponses& responses) {
    const int others = ArraysOf(run_, OtherFacet(facet_)).Count();
    for (int first = 1; first <= others; first += inLine_) {
      if (BreakPage(kLinesOfBlock)) PutEntry(misfit);
      PutBlock(responses, first, std::min(inLine_, others - first + 1));
    }
  }

  // Two lines, one under the other: what was scored, and its residual where that is unexpected.
  void PutBlock(EntryResponses& responses, int first, int count) {
    ReportLine values, residuals;
    values.Text("   RESPONSE:").Integer(first, 7).Text(":");
    residuals.Text(" Z-RESIDUAL:");
    for (int n = 0; n < count; ++n) {
      const Response response = responses.With(first + n);
      const int column = kCellsColumn + n * width_ + n / kHalfGroup + n / kGroup + 1;
      PutCell(values.At(column), response.missing ? "M" : "", response.value);
      const auto z =
          static_cast<int>(std::lround(std::clamp<double>(response.z, -kLargestZ, kLargestZ)));
      if (!response.missing && !response.used) {
        PutCell(residuals.At(column), "X", 0);
      } else if (std::abs(z) >= 2) {
        PutCell(residuals.At(column), "", z);
      }
    }
    PutReportLine(run_, values);
    PutReportLine(run_, residuals);
    PutBlankLine(run_);
  }

  // A mark in the place of the number's last digit, or the number.
  void PutCell(ReportLine& line, std::string_view mark, int number) const {
    if (mark.empty()) {
      line.Integer(number, width_);
    } else {
      line.Skip(width_ - TextWidth(mark)).Text(mark);
    }
  }

  ReportContext& context_;
  Run& run_;
  Facet facet_;
  int inLine_;  // responses in a line
  int width_;   // of a cell
  int listed_ = 0;
};

}  // namespace

void PrintPoorFitList(ReportContext& context) { PoorFitList(context).Print(); }

}  // namespace vardento
