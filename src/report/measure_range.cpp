#include "report/measure_range.h"

#include <algorithm>
#include <cmath>

#include "measure/entry_values.h"
#include "run/user_scale.h"
#include "text/text_width.h"

namespace vardento {
namespace {

// Requests can name any number; whole units beyond this have no meaning on a scale.
constexpr float kFarthest = 1e6F;

struct Range {
  bool any = false;
  float low = 0, high = 0;
  void Take(float value) {
    low = any ? std::min(low, value) : value;
    high = any ? std::max(high, value) : value;
    any = true;
  }
};

void TakeItems(const Run& run, const Array1<double>& boundaries, const TableNeeds& needs,
               Range& range) {
  const RunArrays& arrays = run.arrays;
  const UserScale distance(run.settings);
  const int lowest = needs.lowestBoundary;
  for (int i = 1; i <= arrays.ItemStatus.Size(); ++i) {
    if (!IsActive(arrays.ItemStatus[i])) continue;
    const int group = arrays.ItemGroup[i];
    const int top = arrays.GroupTop[group];
    float measure = MeasureOf(run, Facet::Items, i);
    if (needs.mirrored) measure = 2 * run.settings.UMEAN - measure;
    if (top < 2 || lowest < 0) {
      range.Take(measure);
    } else {
      const int start = arrays.GroupStart[group];
      range.Take(measure + distance.Distance(boundaries[start + lowest]));
      range.Take(measure + distance.Distance(boundaries[start + top]));
    }
  }
}

void TakePersons(const Run& run, Range& range) {
  const RunArrays& arrays = run.arrays;
  for (int n = 1; n <= arrays.PersonStatus.Size(); ++n) {
    if (IsActive(arrays.PersonStatus[n])) range.Take(MeasureOf(run, Facet::Persons, n));
  }
}

Range RangeOfData(const Run& run, const TableNeeds& needs, const Array1<double>& boundaries) {
  const ControlSettings& settings = run.settings;
  Range range;
  if (settings.MRANGE != 0) {
    range.Take(settings.UMEAN - settings.MRANGE);
    range.Take(settings.UMEAN + settings.MRANGE);
    return range;
  }
  if (needs.rangeOfItems) TakeItems(run, boundaries, needs, range);
  if (needs.rangeOfPersons) TakePersons(run, range);
  if (!range.any) range.Take(settings.UMEAN);
  return range;
}

void ApplyRequest(const TableRequest& request, Range& range) {
  if (request.Set(2) != ' ') range.low = request.Value(2);
  if (request.Set(3) != ' ') range.high = request.Value(3);
  if (range.low > range.high) std::swap(range.low, range.high);
}

float UnitOf(float span) { return span < 50 ? 1.0F : span < 500 ? 10.0F : 100.0F; }

// Lays the ends that the request leaves outward to whole units.
void SetRange(ReportContext& context, Range range) {
  ApplyRequest(context.run.request, range);
  const float unit = UnitOf(range.high - range.low);
  float low = std::clamp(std::floor(range.low / unit), -kFarthest, kFarthest);
  float high = std::clamp(std::ceil(range.high / unit), -kFarthest, kFarthest);
  if (low == high) {
    low -= 1;
    high += 1;
  }
  context.rangeUnit = unit;
  context.rangeLow = low * unit;
  context.rangeHigh = high * unit;
  context.rangeSpan = static_cast<int>(high - low);
}

}  // namespace

void MeasureRange(ReportContext& context, const Array1<double>& boundaries) {
  const Run& run = context.run;
  Range range = RangeOfData(run, context.needs, boundaries);
  if (context.needs.centred) {
    const float centre = run.settings.UMEAN;
    const float side = std::max(range.high - centre, centre - range.low);
    range.low = centre - side;
    range.high = centre + side;
  }
  SetRange(context, range);
}

void SetMeasureRange(ReportContext& context, float low, float high) {
  SetRange(context, {.any = true, .low = low, .high = high});
}

void ScalePlotAxis(const TableRequest& request, PlotAxis& axis, float unit, float low, float high) {
  const float range = std::max((high - low) / unit, 1.0F);
  if (request.Set(4) != ' ' && request.Value(4) > 0) {
    // A tick is at least 1 and at most all of the columns wide.
    const float wide = std::clamp(std::round(request.Value(4)), 1.0F, 1e6F);
    axis.tickWidth = std::min(static_cast<int>(wide), axis.columns);
  }
  const int fitting = std::max(axis.columns / std::max(axis.tickWidth, 1), 1);
  const float units = std::ceil(std::max(range / static_cast<float>(fitting), 1.0F));
  const int ticks = static_cast<int>(std::round(std::max((range + units - 1) / units, 1.0F)));
  axis.ticks = std::min(ticks, axis.columns);
  axis.tickWidth = std::max(axis.columns / axis.ticks, 1);
  axis.columns = axis.tickWidth * axis.ticks;
  axis.unit = units * unit;
  const float span = static_cast<float>(axis.ticks) * axis.unit;
  axis.high = low + span;
  axis.columnsPerMeasure = static_cast<float>(axis.columns) / span;
  axis.measuresPerColumn = 1 / axis.columnsPerMeasure;
}

CaptionField CentreCaption(std::string_view text, int rows) {
  CaptionField field;
  field.fill(' ');
  const int places = std::clamp(rows + 1, 0, static_cast<int>(field.size()));
  text = CutToWidth(text, places);
  std::copy(text.begin(), text.end(), field.begin() + (places - TextWidth(text)) / 2);
  return field;
}

}  // namespace vardento
