// What the Table writers share: the run, its summary, and what survives from Table to Table.
#pragma once

#include "measure/estimation.h"
#include "report/sorted_lists.h"
#include "run/run.h"

namespace vardento {

struct ReportContext {
  Run& run;
  FitSummary summary;
  SelectedList persons, items;
  float rangeLow = 0, rangeHigh = 0, rangeUnit = 1;  // left by MeasureRange
  int rangeSpan = 0;
  int personSummaryLines = 0, itemSummaryLines = 0;  // rows sent to the screen's summary so far
};

}  // namespace vardento
