// The maps that lay persons and items on one vertical measure scale. Each routine prints one
// subtable of its Table, over the range of measures that its own content needs.
#pragma once

#include "report/report_context.h"

namespace vardento {

// Labels of persons and items on both sides of the scale; nothing when they don't fit side by side.
void PrintCombinedMap(ReportContext& context);
// Bars on both sides.
void PrintHistogramMap(ReportContext& context);
// Bars of persons, and of the items' lowest steps, measures and highest steps.
void PrintStepHistogramMap(ReportContext& context);

// Labels of one side against bars of the other.
void PrintItemLabelMap(ReportContext& context);
void PrintPersonLabelMap(ReportContext& context);
// Items where each of their categories begins, a column for each category.
void PrintScoreZoneMap(ReportContext& context);
void PrintThurstoneMap(ReportContext& context);

}  // namespace vardento
