// Who answers the two ends of a component differently.
#include <string>

#include "measure/entry_values.h"
#include "report/component_pages.h"
#include "report/page.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr std::string_view kRule = " +---------------------------------+";
constexpr int kMiddleBar = 19, kLastBar = 36;
constexpr int kEnoughRows = 9;  // no further score is listed behind more of them
constexpr int kHeadLines = 5;

// A bar behind the text of a head line, where that leaves room.
void PutLastBar(ReportLine& line) {
  if (line.Column() <= kLastBar) line.At(kLastBar).Text("|");
}

// One of the two tables of a component: those who favour its top, or its bottom.
class ContrastTable {
 public:
  ContrastTable(Run& run, Facet facet, const Contrast& contrast, bool top)
      : run_(run), facet_(facet), contrast_(contrast), top_(top) {}

  void Put() {
    PutHead();
    int rows = 0;
    for (int score = contrast_.LargestScore(); score > 0 && rows <= kEnoughRows; --score) {
      rows += PutLevel(score);
    }
    PutText(kRule);
  }

 private:
  void PutText(std::string_view text) {
    ReportLine line;
    line.Text(text);
    PutReportLine(run_, line);
  }

  void PutHead() {
    const ControlSettings& settings = run_.settings;
    PutText(kRule);
    ReportLine line;
    line.Text(" |        ").Text(TrimRight(SingularLabel(settings, OtherFacet(facet_))));
    line.Text(top_ ? " FAVORS TOP" : " FAVORS BOTTOM");
    PutLastBar(line);
    PutReportLine(run_, line);

    const std::string count = std::to_string(contrast_.top.size());
    const std::string ends = " " + count + " " + PluralLabel(settings, facet_);
    line.Clear();
    line.Text(CutToWidth(" | TOP" + ends, kMiddleBar - 2)).At(kMiddleBar - 1);
    line.Text(TrimRight(" | BOTTOM" + ends));
    PutLastBar(line);
    PutReportLine(run_, line);
    PutText(" | HIGH  EXP. LOW | HIGH  EXP. LOW |");
    PutText(kRule);
  }

  // The entries of one score; gives their number.
  int PutLevel(int score) {
    int rows = 0;
    for (const ContrastingEntry& other : contrast_.others) {
      if ((top_ ? other.Score() : -other.Score()) != score) continue;
      if (CheckPageBreak(run_, run_.report.LinesOnPage + 2)) PutHead();
      PutRow(other);
      ++rows;
    }
    return rows;
  }

  void PutRow(const ContrastingEntry& other) {
    ReportLine line;
    for (const ContrastCounts& counts : {other.top, other.bottom}) {
      line.Text(" |");
      for (const int n : {counts.high, counts.expected, counts.low}) line.Integer(n, 5);
    }
    line.Text(" | ").Integer(other.entry, WidthOfEntries(contrast_.others.back().entry)).Text("  ");
    line.Text(LabelOfEntry(run_, OtherFacet(facet_), other.entry));
    PutReportLine(run_, line);
  }

  Run& run_;
  Facet facet_;  // of the component
  const Contrast& contrast_;
  bool top_;
};

}  // namespace

void PutContrasts(Run& run, Facet facet, const Component& component) {
  const Contrast& contrast = component.contrast;
  if (contrast.top.empty()) return;
  PutGap(run, 1 + kHeadLines + 2);
  ReportLine line;
  if (contrast.LargestScore() == 0) {
    line.Text(" *** NO REPORTABLE CONTRAST FOUND ***");
    return PutReportLine(run, line);
  }
  line.Text(" FACTOR  ").Text(std::to_string(component.number));
  line.Text(" CONTRASTING RESPONSES BY ").Text(PluralLabel(run.settings, OtherFacet(facet)));
  PutReportLine(run, line);
  ContrastTable(run, facet, contrast, true).Put();
  PutGap(run, kHeadLines + 2);
  ContrastTable(run, facet, contrast, false).Put();
}

}  // namespace vardento
