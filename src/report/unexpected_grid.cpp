#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "measure/entry_values.h"
#include "measure/unexpected.h"
#include "report/misfit_listings.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "report/report_line.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kLabelColumn = 9;
constexpr std::size_t kWorstRows = 26;
constexpr int kHeadLines = 12, kLaterHeadLines = 10;  // what a sheet holds beside rows and numbers

// A response takes the digits of the highest score.
int CellWidth(const Run& run) { return run.MAXCAT < 10 ? 1 : run.MAXCAT < 100 ? 2 : 3; }

class UnexpectedGrid {
 public:
  // `showsFit`: rows are told by their OUTFIT, else by their measure.
  UnexpectedGrid(ReportContext& context, UnexpectedResponses grid, bool showsFit)
      : context_(context),
        run_(context.run),
        facet_(context.needs.subject),
        grid_(std::move(grid)),
        showsFit_(showsFit),
        cell_(CellWidth(context.run)) {
    DecideLabelWidth();
    for (const int entry : grid_.columns) {
      digits_ = std::max(digits_, TextWidth(IntegerText(entry)));
    }
  }

  void Print() {
    // Title, heads, some rows and the lines below them.
    const int rows = std::min(static_cast<int>(grid_.rows.size()), 10);
    PutPartHeading(run_, 1, 4 + rows + 2 * digits_);
    std::size_t row = 0;
    int headLines = kHeadLines;
    while (true) {
      PutHead();
      const std::size_t end = std::min(grid_.rows.size(), row + RowsOnSheet(headLines));
      for (; row < end; ++row) PutRow(grid_.rows[row]);
      PutClose();
      if (row >= grid_.rows.size()) return;
      CheckPageBreak(run_, std::numeric_limits<int>::max());
      headLines = kLaterHeadLines;
    }
  }

 private:
  void DecideLabelWidth() {
    int longest = 1;
    for (const UnexpectedRow& row : grid_.rows) {
      longest = std::max(longest, TextWidth(LabelOfEntry(run_, facet_, row.entry)));
    }
    // With the cells no more than 50 of them take with labels of 13.
    const int columns = static_cast<int>(grid_.columns.size());
    label_ = std::min(longest, (50 - columns) * cell_ + 13);
    bar_ = kLabelColumn + label_ + 10;
  }

  std::size_t RowsOnSheet(int headLines) const {
    const int maximum = run_.settings.MAXPAGE;
    if (maximum == 0) return grid_.rows.size();
    // What stands above the heads may leave less.
    const int left = maximum - run_.report.LinesOnPage - digits_ - 1;
    return static_cast<std::size_t>(std::max(std::min(maximum - 2 * digits_ - headLines, left), 1));
  }

  void PutHead() {
    ReportLine line;
    line.Text(showsFit_ ? " MOST MISFITTING RESPONSE STRINGS" : " MOST UNEXPECTED RESPONSES");
    PutReportLine(run_, line);
    line.Clear();
    const Facet other = OtherFacet(facet_);
    line.At(kLabelColumn).Text(TrimRight(SingularLabel(run_.settings, facet_)), label_);
    line.Skip(1).Text(showsFit_ ? "OUTMNSQ" : "MEASURE");
    PutBar(line, bar_);
    line.Text(TrimRight(SingularLabel(run_.settings, other)));
    PutReportLine(run_, line);
    PutNumbers([&](int entry) { return PadLeft(IntegerText(entry), digits_); });
    line.Clear();
    line.At(bar_ - 3).Text("high").Repeat(Box::Horizontal, CellsWidth());
    PutReportLine(run_, line);
  }

  void PutClose() {
    ReportLine line;
    line.At(bar_ + 1).Repeat(Box::Horizontal, CellsWidth()).Text("low");
    PutReportLine(run_, line);
    PutNumbers([&](int entry) { return PadRight(IntegerText(entry), digits_); });
  }

  int CellsWidth() const { return static_cast<int>(grid_.columns.size()) * cell_; }

  // The entry numbers of the columns, downward: `textOf` gives each the height of the longest.
  template <class Text>
  void PutNumbers(Text textOf) {
    std::vector<std::string> numbers;
    for (const int entry : grid_.columns) numbers.push_back(textOf(entry));
    for (std::size_t digit = 0; digit < static_cast<std::size_t>(digits_); ++digit) {
      ReportLine line;
      PutBar(line, bar_);
      for (const std::string& number : numbers) line.Skip(cell_ - 1).Repeat(number[digit], 1);
      PutReportLine(run_, line);
    }
  }

  void PutRow(const UnexpectedRow& row) {
    ReportLine line;
    line.At(2).Integer(row.entry, 6);
    const std::string label = LabelOfEntry(run_, facet_, row.entry);
    line.At(kLabelColumn).Text(label, label_);
    const int value = line.Column();
    if (showsFit_) {
      line.Fixed(row.outfit, 8, 2);
    } else {
      PutMeasure(line, run_.settings, row.measure);
    }
    if (line.CharacterAt(value) != ' ') line.At(value - 1).Text(" ").Skip(8);  // a long measure
    line.Skip(1).Repeat(PlotLetter(context_.SubjectList(), row.entry), 1);
    PutBar(line, bar_);
    for (const Response& response : row.cells) line.Text(CellText(response));
    PutReportLine(run_, line);
  }

  std::string CellText(const Response& response) const {
    if (response.missing) return PadLeft("", cell_);
    if (!response.used) return PadLeft("-", cell_);
    return PadLeft(IsUnexpected(response) ? IntegerText(response.value) : ".", cell_);
  }

  ReportContext& context_;
  Run& run_;
  Facet facet_;
  UnexpectedResponses grid_;
  bool showsFit_;
  int cell_;        // columns of a response
  int label_ = 1;   // columns of a row's label
  int bar_ = 0;     // column of the bar in front of the responses
  int digits_ = 0;  // lines that the columns' numbers take
};

}  // namespace

void PrintMisfittingStrings(ReportContext& context) {
  std::vector<int> entries = EntriesOf(ListInFitOrder(context));
  entries.resize(std::min(entries.size(), kWorstRows));
  UnexpectedGrid(context, CollectUnexpected(context.run, context.needs.subject, entries), true)
      .Print();
}

void PrintUnexpectedResponses(ReportContext& context) {
  ListInFitOrder(context);
  UnexpectedGrid(context, CollectMostUnexpected(context.run, context.needs.subject), false).Print();
}

}  // namespace vardento
