#include "report/distribution_strip.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "measure/entry_values.h"
#include "report/page.h"
#include "report/plot_grid.h"
#include "text/text_width.h"

namespace vardento {
namespace {

constexpr int kWordWidth = 6;

struct Tally {
  std::vector<double> columns;              // weighted counts, by column of the axis
  double weight = 0, sum = 0, squares = 0;  // of the measures

  double Mean() const { return sum / weight; }
  double SD() const { return std::sqrt(std::max(squares / weight - Mean() * Mean(), 0.0)); }
};

int ColumnOf(const StripForm& form, double measure) {
  return NearestPlace((measure - form.low) * form.axis.columnsPerMeasure, form.axis.columns);
}

Tally TallyColumns(const Run& run, Facet facet, const StripForm& form) {
  const FacetArrays arrays = ArraysOf(run, facet);
  const int last = form.axis.columns;
  Tally tally;
  tally.columns.assign(static_cast<std::size_t>(last) + 1, 0);
  for (int entry = 1; entry <= arrays.Count(); ++entry) {
    const StatusByte status = arrays.status[entry];
    const double weight = arrays.WeightOf(entry);
    if (!IsMeasured(status) || weight <= 0) continue;
    int column = status == Status::ExtremeHigh ? last : 0;
    if (form.extremesByMeasure || IsActive(status)) {
      const double measure = MeasureOf(run, facet, entry);
      column = std::clamp(ColumnOf(form, measure), 0, last);
      tally.weight += weight;
      tally.sum += weight * measure;
      tally.squares += weight * measure * measure;
    }
    tally.columns[static_cast<std::size_t>(column)] += weight;
  }
  for (double& total : tally.columns) total = CountOfWeights(total);
  return tally;
}

void PutDigits(ReportLine& line, const Tally& tally, double power, int firstColumn) {
  for (std::size_t c = 0; c < tally.columns.size(); ++c) {
    const double above = std::floor(tally.columns[c] / power);
    if (above < 1) continue;
    const auto digit = static_cast<char>('0' + static_cast<int>(std::fmod(above, 10.0)));
    line.At(firstColumn + static_cast<int>(c)).Repeat(digit, 1);
  }
}

void PutMarks(ReportLine& line, const Tally& tally, const StripForm& form) {
  const auto mark = [&](double deviations, char letter) {
    const int column = ColumnOf(form, tally.Mean() + deviations * tally.SD());
    if (column < 0 || column > form.axis.columns) return;
    line.At(form.firstColumn + column).Repeat(letter, 1);
  };
  mark(-2, 'T');
  mark(2, 'T');
  mark(1, 'S');
  mark(-1, 'S');
  mark(0, 'M');
}

}  // namespace

void PutDistributionStrip(Run& run, Facet facet, const StripForm& form) {
  const Tally tally = TallyColumns(run, facet, form);
  const double largest = *std::ranges::max_element(tally.columns);
  const std::string& word =
      facet == Facet::Persons ? run.settings.PERSONS_LABEL : run.settings.ITEMS_LABEL;
  double power = 1;
  while (largest >= power * 10) power *= 10;
  for (; power >= 1; power /= 10) {
    ReportLine line;
    if (power == 1 && !form.wordBehind) line.At(2).Text(CutToWidth(word, kWordWidth));
    PutDigits(line, tally, power, form.firstColumn);
    if (power == 1 && form.wordBehind) {
      line.At(form.firstColumn + form.axis.columns + 2).Text(word);
    }
    PutReportLine(run, line);
  }
  if (tally.weight <= 0) return;
  ReportLine line;
  PutMarks(line, tally, form);
  PutReportLine(run, line);
}

}  // namespace vardento
