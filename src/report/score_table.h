// Table 20: every raw score on the complete test with its measure, their ogive, persons and items
// below it.
#pragma once

#include <string_view>

#include "measure/score_conversion.h"
#include "report/report_context.h"
#include "report/report_line.h"

namespace vardento {

// Tables 20.1 and 20.2. Nothing when no score but 0 is possible.
void PrintScoreTable(ReportContext& context);

// The complete test, with a message on the console when its scores are too many for a Table.
CompleteTest TestForTable(Run& run);
// What a refused block is told as: of the scores from 0 to `top`.
void TellScoresRefused(Run& run, long long top);

// A score with its measure, standard error and, behind it, "E" when it is extreme: 22 columns and
// `gap` in front of the measure.
void PutScoreMeasure(ReportLine& line, const Run& run, const ScoreConversion& conversion, int score,
                     int gap);

}  // namespace vardento
