// Lines of a Table list, of any bytes, through the parser, the measure scale, a plot axis and the
// dispatcher; and the same bytes as a line of an output file.
#include <stdlib.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "files/file_form.h"
#include "report/dispatch.h"
#include "report/measure_range.h"
#include "report/small_run.h"
#include "report/table_requests.h"

using namespace vardento;

namespace {

void ScaleRequest(ReportContext& context, const Array1<double>& boundaries) {
  MeasureRange(context, boundaries);
  if (context.rangeSpan < 1 || !(context.rangeLow < context.rangeHigh)) abort();
  PlotAxis axis;
  ScalePlotAxis(context.run.request, axis, context.rangeUnit, context.rangeLow, context.rangeHigh);
  if (axis.columns < 1 || axis.columns > 70 || axis.tickWidth < 1) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static test::SmallRun small(3, 3);
  static const Array1<double> boundaries = small.Doubles(4);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  ParseTableRequest(small.run.request, text);
  ScaleRequest(small.context, boundaries);
  DispatchTable(small.context);
  for (int slot = 1; slot <= 8; ++slot) {
    if (small.run.request.Set(slot) != ' ') abort();
  }
  small.console.lines.clear();
  small.context.missingTables.clear();
  small.OpenReport();
  if (clean_csv_line(text, 'T').size() > size) abort();
  return 0;
}
