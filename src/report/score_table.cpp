#include "report/score_table.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "report/character_plot.h"
#include "report/distribution_strip.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "run/messages.h"
#include "run/user_scale.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kParts = 3;       // scores stand in three parts side by side
constexpr int kPartWidth = 23;  // between the bars
constexpr int kLinesBelow = 2;  // a row and the closing rule
constexpr std::string_view kHead = " SCORE  MEASURE    S.E.";

constexpr int kPlotColumns = 60;
constexpr int kPlotRows = 62;
constexpr int kFewestPlotRows = 10, kLinesBesidePlot = 10;  // on a sheet
constexpr int kLinesAroundPlot = 7;                         // of the ogive beside its rows
constexpr float kFarthestUnits = 1e6F;  // whole units beyond this have no meaning on a scale

constexpr std::size_t kBytesPerScore = 12, kBytesOfTable = 32;

class ScoreTable {
 public:
  ScoreTable(Run& run, const ScoreConversion& conversion)
      : run_(run), conversion_(conversion), rows_(ScoresInThird(conversion.Top())) {}

  void Print() {
    PutTitle();
    PutHead();
    for (int row = 0; row < rows_; ++row) {
      if (row > 0 && CheckPageBreak(run_, run_.report.LinesOnPage + kLinesBelow)) PutHead();
      PutRow(row);
    }
    PutRule(Box::BottomLeft, Box::BottomTee, Box::BottomRight);
    PutTips();
  }

 private:
  void PutTitle() {
    ReportLine line;
    line.At(2).Text("TABLE OF MEASURES ON COMPLETE TEST");
    if (conversion_.test.approximated) line.Text(" (APPROXIMATED FOR 'S' AND 'F' MODELS)");
    PutReportLine(run_, line);
  }

  void PutRule(Box left, Box joint, Box right) {
    ReportLine line;
    line.At(2);
    for (int part = 0; part < kParts; ++part) {
      line.Repeat(part == 0 ? left : joint, 1).Repeat(Box::Horizontal, kPartWidth);
    }
    line.Repeat(right, 1);
    PutReportLine(run_, line);
  }

  void PutHead() {
    PutRule(Box::TopLeft, Box::TopTee, Box::TopRight);
    ReportLine line;
    line.At(2);
    for (int part = 0; part < kParts; ++part) line.Repeat(Box::Vertical, 1).Text(kHead);
    line.Repeat(Box::Vertical, 1);
    PutReportLine(run_, line);
    PutRule(Box::LeftTee, Box::Cross, Box::RightTee);
  }

  void PutRow(int row) {
    ReportLine line;
    for (int part = 0; part < kParts; ++part) {
      PutBar(line, 2 + part * (kPartWidth + 1));
      const int score = row + part * rows_;
      if (score <= conversion_.Top()) PutScoreMeasure(line, run_, conversion_, score, 1);
    }
    PutBar(line, 2 + kParts * (kPartWidth + 1));
    PutReportLine(run_, line);
  }

  // The UMEAN= and USCALE= that turn `low` and `high`, logits, into measures of `from` and `to`.
  void PutTip(std::string_view range, double low, double high, double from, double to) {
    const double scale = (to - from) / (high - low);
    const double mean = (from + to) / 2 - (high + low) * scale / 2;
    ReportLine line;
    line.At(2).Text("TO SET MEASURE RANGE ").Text(range);
    line.Text(" UMEAN=").Text(PlainNumber(mean, 8, 3));
    line.Text(" USCALE=").Text(PlainNumber(scale, 8, 3));
    PutReportLine(run_, line);
  }

  void PutTips() {
    const UserScale scale(run_.settings);
    const double low = scale.ToLogits(conversion_.Lowest().measure);
    const double high = scale.ToLogits(conversion_.Highest().measure);
    if (high == low) return;
    const double bottom = static_cast<double>(conversion_.test.bottom);
    PutTip("AS 0-100,", low, high, 0, 100);
    PutTip("TO MATCH RAW SCORE RANGE,", low, high, bottom, bottom + conversion_.Top());
  }

  Run& run_;
  const ScoreConversion& conversion_;
  int rows_;
};

// The measure axis of the ogive: from the lowest to the highest measure, in whole units.
class OgiveScale {
 public:
  OgiveScale(const Run& run, const ScoreConversion& conversion) {
    const ControlSettings& settings = run.settings;
    const float first = conversion.Lowest().measure, last = conversion.Highest().measure;
    float low = std::min(first, last), high = std::max(first, last);
    if (settings.MRANGE != 0) {
      low = settings.UMEAN - std::fabs(settings.MRANGE);
      high = settings.UMEAN + std::fabs(settings.MRANGE);
    }
    const float span = high - low;
    const float unit = span <= 50 ? 1.0F : span < 500 ? 10.0F : 100.0F;
    const float floor = std::clamp(std::floor(low / unit), -kFarthestUnits, kFarthestUnits);
    const float ceiling = std::clamp(std::ceil(high / unit), -kFarthestUnits, kFarthestUnits);
    low_ = floor * unit;
    axis_.columns = kPlotColumns;
    ScalePlotAxis(run.request, axis_, unit, low_, std::max(ceiling, floor + 1) * unit);
  }
  const PlotAxis& Axis() const { return axis_; }
  float Low() const { return low_; }
  int ColumnOf(float measure) const {
    const float place = (measure - low_) * axis_.columnsPerMeasure;
    return std::clamp(NearestPlace(place, axis_.columns), 0, axis_.columns);
  }

 private:
  PlotAxis axis_;
  float low_ = 0;
};

// The rows of the ogive above its lowest: as many as there are scores, or whole scores to a row.
int OgiveRows(const Run& run, int top) {
  int most = std::min(top, kPlotRows);
  const int page = run.settings.MAXPAGE;
  if (page > 0) most = std::min(most, std::max(kFewestPlotRows, page - kLinesBesidePlot));
  int step = 1;
  while (top / step > most) ++step;
  return top / step;
}

PlotGrid DrawOgive(const ScoreConversion& conversion, const OgiveScale& scale, int rows) {
  PlotGrid grid(scale.Axis().columns, rows);
  const int top = conversion.Top();
  const auto place = [&](int score, char mark) {
    const double row = std::round(static_cast<double>(rows) * score / top);
    const float measure = conversion.scores[static_cast<std::size_t>(score)].measure;
    grid.FillBlank(scale.ColumnOf(measure), static_cast<int>(row), mark);
  };
  // The ends stay to be seen where others come close.
  for (const int end : {0, top}) place(end, 'E');
  for (int score = 1; score < top; ++score) place(score, '*');
  return grid;
}

void PrintOgive(Run& run, const ScoreConversion& conversion) {
  const int rows = OgiveRows(run, conversion.Top());
  const int lines = run.report.LinesOnPage + kLinesAroundPlot + rows;
  if (run.settings.MAXPAGE == 0 || lines <= run.settings.MAXPAGE) {
    PutBlankLine(run);
  } else {
    PutPageHeading(run, 1);
  }
  ReportLine line;
  line.At(2).Text("RAW SCORE-MEASURE OGIVE FOR COMPLETE TEST");
  PutReportLine(run, line);
  const OgiveScale scale(run, conversion);
  PutCharacterPlot(run, DrawOgive(conversion, scale, rows),
                   {.axis = scale.Axis(),
                    .low = scale.Low(),
                    .axisLabel = "MEASURE",
                    .caption = "EXPECTED SCORE",
                    .scale = conversion.Top(),
                    .lowest = static_cast<int>(conversion.test.bottom),
                    .scores = true});
  const StripForm form{.axis = scale.Axis(), .low = scale.Low(), .extremesByMeasure = true};
  PutDistributionStrip(run, Facet::Persons, form);
  PutDistributionStrip(run, Facet::Items, form);
}

}  // namespace

void TellScoresRefused(Run& run, long long top) {
  const auto scores = static_cast<std::size_t>(top) + 1;
  TellUser(run, std::to_string(kBytesPerScore * scores + kBytesOfTable) +
                    " bytes of memory not available. Frequency Table not produced.");
}

CompleteTest TestForTable(Run& run) {
  const CompleteTest test = FindCompleteTest(run);
  if (!test.IsWithinReach()) TellScoresRefused(run, test.top);
  return test;
}

void PutScoreMeasure(ReportLine& line, const Run& run, const ScoreConversion& conversion, int score,
                     int gap) {
  const ScoreMeasure& solved = conversion.scores[static_cast<std::size_t>(score)];
  line.Integer(conversion.Shown(score), 6).Skip(gap);
  PutMeasure(line, run.settings, solved.measure);
  line.Fixed(solved.error, 7, run.settings.UDECIM);
  line.Text(conversion.IsExtreme(score) ? "E" : " ");
}

void PrintScoreTable(ReportContext& context) {
  Run& run = context.run;
  const CompleteTest test = TestForTable(run);
  if (test.top < 1 || !test.IsWithinReach()) return;
  WriteConsole(run, "  Calculating Scores for Table " + IntegerText(run.request.CurrentTable));
  const ScoreConversion conversion = ConvertScores(run, test, SolvingOrder::InThirds);
  if (conversion.scores.empty()) return;  // the user has seen enough
  PutPageHeading(run, 1);
  ScoreTable(run, conversion).Print();
  PrintOgive(run, conversion);
}

}  // namespace vardento
