#include "report/components_table.h"

#include <algorithm>
#include <string>

#include "report/component_pages.h"
#include "report/measure_range.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "run/messages.h"
#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kRatioColumn = 9;

}  // namespace

std::string_view ResidualWord(char kind) {
  switch (kind) {
    case 'R':
      return "RESIDUAL";
    case 'L':
      return "LOGIT RESIDUAL";
    case 'O':
      return "OBSERVATION";
    case 'K':
      return "LIKELIHOOD";
    case 'H':
      return "LOG-LIKELIHOOD";
    case 'G':
      return "LOGIT-LIKELIHOOD";
    default:
      return "STANDARDIZED RESIDUAL";
  }
}

Vector1<char> MarkEntries(const ResidualComponents& found) {
  constexpr int kDigits = 9;
  const std::vector<int>& order = found.order;
  Vector1<char> marks(found.entries.back(), ' ');
  if (found.entries.back() <= kDigits) {
    for (const int entry : order) marks[entry] = static_cast<char>('0' + entry);
    return marks;
  }
  const std::size_t ends = std::min<std::size_t>(order.size(), kLetters);
  for (std::size_t n = 0; n < ends; ++n) {
    marks[order[order.size() - 1 - n]] = static_cast<char>('a' + n);
  }
  for (std::size_t n = 0; n < ends; ++n) marks[order[n]] = static_cast<char>('A' + n);
  return marks;
}

int WidthOfEntries(int largest) {
  constexpr int kLeast = 5;
  return std::max(kLeast, TextWidth(IntegerText(largest)));
}

void PutSqueezedLine(Run& run, int column, std::string_view text) {
  std::string squeezed;
  for (const char c : text) {
    if (c != ' ' || squeezed.empty() || squeezed.back() != ' ') squeezed.push_back(c);
  }
  ReportLine line;
  line.At(column).Text(squeezed);
  PutReportLine(run, line);
}

void PutVarianceRatios(Run& run, const ResidualComponents& found, const Component& component) {
  if (run.inForce.PRCOMP == 'O') return;  // observations hold what the measures explain, too
  const auto ratio = [](double value) { return PlainNumber(value, 8, 1); };
  std::string text = "Yardstick/This Factor ratio: ";
  text += ratio(found.FactorRatio(component)) + "/1   Yardstick/Total Noise ratio: ";
  text += ratio(found.NoiseRatio()) + "/1";
  PutSqueezedLine(run, kRatioColumn, text);
}

void PutGap(Run& run, int lines) {
  if (!CheckPageBreak(run, run.report.LinesOnPage + 1 + lines)) PutBlankLine(run);
}

void PrintComponents(ReportContext& context) {
  Run& run = context.run;
  const ResidualComponents found = FindComponents(run, context.needs.subject);
  const bool stopped = run.StopRequest != 0;
  if (found.components.empty()) return;
  MeasureRange(context, run.arrays.CategoryHalfPoint);
  LoadingLists lists(context, found);
  for (const Component& component : found.components) {
    PutLoadingPlot(context, found, component);
    lists.PutByLoading(component);
    PutContrasts(run, found.facet, component);
    lists.PutByMeasure(component);
    lists.PutByEntry(component);
  }
  if (stopped) WriteReportText(run, " STOPPED: FURTHER COMPONENTS WERE NOT LOOKED FOR");
}

void PrintLargestCorrelations(ReportContext& context) {
  Run& run = context.run;
  const Facet facet = context.needs.subject;
  // Behind the components they have been tried already: what went wrong is told once.
  const bool alone = run.request.Set(1) != ' ' && run.request.Value(1) != 0;
  const bool made =
      alone ? CorrelateResiduals(run, facet) : run.stores.CorrelationsOf(facet).complete;
  if (made) PutCorrelations(run, facet, LargestCorrelations(run, facet));
}

}  // namespace vardento
