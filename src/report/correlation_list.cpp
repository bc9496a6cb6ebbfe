// The pairs whose residuals correlate most.
#include <algorithm>
#include <array>
#include <string>

#include "measure/entry_values.h"
#include "report/component_pages.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kTitleColumn = 7;
constexpr int kLinesAround = 8;  // two of the title, four of the head, a rule between and below
constexpr int kCorrelationWidth = 7;

class CorrelationList {
 public:
  CorrelationList(Run& run, Facet facet, const std::vector<ResidualCorrelation>& pairs)
      : run_(run), facet_(facet) {
    for (const ResidualCorrelation& pair : pairs) {
      if (pair.r == 0) continue;
      rows_.push_back(
          {pair, {LabelOfEntry(run, facet, pair.first), LabelOfEntry(run, facet, pair.second)}});
      // The second has the larger number.
      numberWidth_ = std::max(numberWidth_, WidthOfEntries(pair.second));
      for (std::size_t n = 0; n < 2; ++n) {
        widths_[n] = std::max(widths_[n], TextWidth(rows_.back().labels[n]));
      }
    }
    for (int& width : widths_) width = std::min(width, kWidestListedLabel);
    std::stable_partition(rows_.begin(), rows_.end(),
                          [](const Row& row) { return row.pair.r > 0; });
  }

  void Put() {
    PutPartHeading(run_, 1, kLinesAround + static_cast<int>(rows_.size()));
    PutTitle();
    PutHead();
    bool before = true;  // it is negative
    for (const Row& row : rows_) {
      const bool parts = row.pair.r < 0 && !before;
      before = row.pair.r < 0;
      // The row, and a rule in front of it and below it.
      if (CheckPageBreak(run_, run_.report.LinesOnPage + (parts ? 3 : 2))) {
        PutHead();
      } else if (parts) {
        PutRule(Box::LeftTee, Box::RightTee);
      }
      PutRow(row);
    }
    PutRule(Box::BottomLeft, Box::BottomRight);
  }

 private:
  struct Row {
    ResidualCorrelation pair;
    std::array<std::string, 2> labels;
  };

  void PutTitle() {
    const char kind = run_.inForce.PRCOMP;
    std::string text = "LARGEST ";
    text.append(kind == 'R' ? "OBSERVATION RESIDUAL" : ResidualWord(kind));
    PutSqueezedLine(run_, kTitleColumn, text + " CORRELATIONS");
    PutSqueezedLine(run_, kTitleColumn,
                    "USED TO IDENTIFY DEPENDENT " + PluralLabel(run_.settings, facet_));
  }

  void PutRule(Box left, Box right) {
    const auto width = [this](int label) { return 1 + numberWidth_ + 1 + label + 1; };
    PutReportLine(run_,
                  BoxRule(left, {kCorrelationWidth, width(widths_[0]), width(widths_[1])}, right));
  }

  void PutHead() {
    PutRule(Box::TopLeft, Box::TopRight);
    for (const bool first : {true, false}) {
      ReportLine line;
      PutBar(line, 2);
      line.Text(first ? "RESIDUL" : "CORRELN", kCorrelationWidth);
      for (const int width : widths_) {
        PutBar(line, line.Column());
        line.Text(first ? " ENTRY " : "NUMBER ", 1 + numberWidth_ + 1);
        line.Text(TrimRight(SingularLabel(run_.settings, facet_)), width).Skip(1);
      }
      PutBar(line, line.Column());
      PutReportLine(run_, line);
    }
    PutRule(Box::LeftTee, Box::RightTee);
  }

  void PutRow(const Row& row) {
    ReportLine line;
    PutBar(line, 2);
    line.Skip(1).Fixed(row.pair.r, 5, 2).Skip(1);
    const int entries[] = {row.pair.first, row.pair.second};
    for (std::size_t n = 0; n < 2; ++n) {
      PutBar(line, line.Column());
      line.Skip(1).Integer(entries[n], numberWidth_).Skip(1);
      line.Text(row.labels[n], widths_[n]).Skip(1);
    }
    PutBar(line, line.Column());
    PutReportLine(run_, line);
  }

  Run& run_;
  Facet facet_;
  std::vector<Row> rows_;               // positive correlations first
  std::array<int, 2> widths_ = {1, 1};  // of the labels
  int numberWidth_ = 0;
};

}  // namespace

void PutCorrelations(Run& run, Facet facet, const std::vector<ResidualCorrelation>& pairs) {
  if (!pairs.empty()) CorrelationList(run, facet, pairs).Put();
}

}  // namespace vardento
