#include "report/category_table.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <string_view>

#include "report/group_identity.h"
#include "report/page.h"
#include "report/report_columns.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kHeadLines = 9;  // of a table beside its categories

// Sections of the tables, in columns between bars, from column 3 on. The last one of each table is
// ruled with hyphens where it stands for itself: the residuals, the category's measure.
constexpr int kUse = 19, kAverages = 12, kMeanSquares = 12, kCoherence = 10, kStepText = 9,
              kResidual = 9;
constexpr int kTwoCategories[] = {kUse, kAverages, kMeanSquares, kCoherence, kResidual};
constexpr int kSteps[] = {kUse, kAverages, kMeanSquares, 0, kStepText, 8};
constexpr int kMeasures[] = {24, 21, 9, kCoherence, kResidual};

// The columns of the sections' bars.
constexpr int kUseBar = 22, kAveragesBar = 35, kMeanSquaresBar = 48, kSingleCoherenceBar = 59,
              kSingleEnd = 69, kStepBar = 59, kStepsEnd = 68, kScaleBar = 27, kZoneBar = 49,
              kThresholdBar = 59;

constexpr int kZoneDecimals = 2;

// A measure in fewer columns than measures have: decimals go before the number does.
std::string MeasureField(double value, int width, int decimals) {
  for (; decimals >= 0; --decimals) {
    const std::string field = fixed_field(value, width, decimals);
    if (field.find('*') == field.npos) return field;
  }
  return std::fabs(value) < 1e9 ? integer_field(std::lround(value), width)
                                : fixed_field(value, width, 0);
}
std::string MeasureField(const Run& run, double value, int width) {
  return MeasureField(value, width, run.settings.UDECIM);
}

// The measure at an end of the scale, where the expected score is never reached: in brackets.
std::string BracketedMeasure(const Run& run, double value) {
  const std::string field = MeasureField(run, value, 6);
  // Rather a decimal less than no bracket, and rather no bracket than no number.
  return field.find('*') == field.npos ? "(" + field : MeasureField(run, value, 7);
}

// Why a category has no statistics.
std::string_view WordOfStatus(int status) {
  static constexpr std::string_view kWords[] = {"INESTIMABLE", "DELETED", "DROPPED", "NULL"};
  const bool known = status >= -4 && status <= -1;
  return known ? kWords[status + 4] : std::string_view();
}

// In the place of a step that can't be estimated, as nobody is in the category: everybody who came
// to it passed it, or nobody did.
std::string_view WordOfMissingStep(Model model) {
  switch (model) {
    case Model::Failures:
      return "  HARD";
    case Model::Successes:
      return "  EASY";
    default:
      return "  NULL";
  }
}

char AnchorFlag(const CategoryRow& row) { return row.status == StepStatus::Anchored ? 'A' : ' '; }

// Composes the tables of one group.
class CategoryTable {
 public:
  CategoryTable(Run& run, const CategoryStructure& structure)
      : run_(run),
        structure_(structure),
        rows_(structure.rows),
        withResiduals_(structure.HasResiduals()) {}

  void Put() {
    PutBlankLine(run_);
    CheckPageBreak(run_, run_.report.LinesOnPage + structure_.Top() + kHeadLines);
    PutText("SUMMARY OF MEASURED STEPS");
    PutGroupIdentity(run_, structure_);
    PutRemarks();
    if (structure_.Top() < 2) {
      PutTwoCategories();
    } else {
      PutSteps();
      PutMeasures();
    }
  }

 private:
  void PutText(std::string_view text) {
    ReportLine line;
    line.At(2).Text(text);
    PutReportLine(run_, line);
  }

  void PutRemarks() {
    if (structure_.items.size() == 1) {
      PutText(std::string(TrimRight(run_.settings.ITEM_LABEL)) + " DIFFICULTY OF " +
              PlainNumber(structure_.difficulty, 7, 2) + " ADDED TO MEASURES");
    }
    if (!structure_.pivot) return;
    PutText("RATING SCALE PIVOTED AT " + PlainNumber(*structure_.pivot, 7, 2));
  }

  // The sections of a table that ends with the residuals: without them when none is worth showing.
  std::span<const int> Shown(std::span<const int> sections) const {
    return withResiduals_ ? sections : sections.first(sections.size() - 1);
  }

  void PutRule(std::span<const int> sections, Box left, Box joint, Box right, bool hyphens) {
    ReportLine line;
    line.At(2).Repeat(left, 1);
    for (const int& width : sections) {
      const bool last = &width == &sections.back();
      if (last && hyphens) {
        line.Repeat('-', width);
      } else {
        line.Repeat(Box::Horizontal, width);
      }
      line.Repeat(last ? right : joint, 1);
    }
    PutReportLine(run_, line);
  }
  void PutTopRule(std::span<const int> sections, bool hyphens) {
    PutRule(sections, Box::TopLeft, Box::TopTee, Box::TopRight, hyphens);
  }
  void PutMiddleRule(std::span<const int> sections, bool hyphens) {
    PutRule(sections, Box::LeftTee, Box::Cross, Box::RightTee, hyphens);
  }
  void PutBottomRule(std::span<const int> sections, bool hyphens) {
    PutRule(sections, Box::BottomLeft, Box::BottomTee, Box::BottomRight, hyphens);
  }

  // One line of heads, a text for each section.
  void PutHeads(std::span<const int> sections, std::span<const std::string_view> heads) {
    ReportLine line;
    PutBar(line, 2);
    for (std::size_t i = 0; i < sections.size(); ++i) {
      line.Text(heads[i], sections[i]).Repeat(Box::Vertical, 1);
    }
    PutReportLine(run_, line);
  }

  // Response code and words behind the closing bar.
  void PutRow(ReportLine& line, const CategoryRow& row) {
    line.Skip(1).Text(row.code, run_.settings.XWIDE).Skip(1).Text(row.words);
    PutReportLine(run_, line);
  }

  // Columns 2 to 48: value, score, count, averages, mean-squares.
  void PutUse(ReportLine& line, const CategoryRow& row) const {
    PutBar(line, 2);
    line.Integer(row.value, 3).Integer(row.score, 4);
    PutCount(line, row.count, row.percent);
    if (row.count > 0) {
      line.Text(MeasureField(run_, row.average, 6)).Text(row.disordered ? "*" : " ");
      line.Text(MeasureField(run_, row.expected, 5));
    }
    PutBar(line, kAveragesBar);
    line.Fixed(row.infit, 6, 2).Fixed(row.outfit, 6, 2);
    PutBar(line, kMeanSquaresBar);
  }
  static void PutCount(ReportLine& line, double count, double percent) {
    constexpr double kWidest = 1e15;  // far beyond the columns there are: asterisks
    line.At(10).Integer(std::llround(std::min(count, kWidest)), 8);
    line.Integer(std::lround(percent), 4);
    PutBar(line, kUseBar);
  }
  void PutMissing(ReportLine& line) const {
    PutBar(line, 2);
    line.Text("MISSING");
    PutCount(line, structure_.missingCount, structure_.missingPercent);
    line.Text(MeasureField(run_, structure_.missingAverage, 6));
    PutBar(line, kAveragesBar);
    PutBar(line, kMeanSquaresBar);
  }

  // Coherence and residual, each with its bar.
  void PutCoherence(ReportLine& line, const CategoryRow& row) const {
    line.Integer(row.MeasureToCategory(), 4).Text("%").Integer(row.CategoryToMeasure(), 4);
    line.Text("%").Repeat(Box::Vertical, 1);
    if (!withResiduals_) return;
    // Of a category that nobody is in, a share says nothing: the count that is expected does.
    const bool used = row.count > 0;
    line.Fixed(used ? row.ResidualPercent() : -row.residual, 7, 1).Text(used ? "% " : "  ");
    line.Repeat(Box::Vertical, 1);
  }

  void PutTwoCategories();
  void PutStatusRow(const CategoryRow& row);

  void PutStepHead();
  void PutSteps();
  void PutStepRow(int k);

  void PutMeasureHead(bool turned);
  void PutMeasures();
  void PutMeasureRow(int k);
  void PutStepValue(ReportLine& line, const CategoryRow& row) const;
  void PutZone(ReportLine& line, int k) const;

  // True when a new sheet was begun, whose heads the caller puts.
  bool BreaksBeforeRow() { return CheckPageBreak(run_, run_.report.LinesOnPage + 2); }
  const CategoryRow& RowAt(int k) const { return rows_[static_cast<std::size_t>(k)]; }

  Run& run_;
  const CategoryStructure& structure_;
  const std::vector<CategoryRow>& rows_;
  bool withResiduals_;
};

// Two categories.

void CategoryTable::PutTwoCategories() {
  static constexpr std::string_view kFirst[] = {"CATEGORY   OBSERVED", "OBSVD SAMPLE",
                                                "INFIT OUTFIT", " COHERENCE", " OBS-EXP "};
  static constexpr std::string_view kSecond[] = {"LABEL SCORE COUNT %", "AVRGE EXPECT",
                                                 "  MNSQ  MNSQ", " M->C C->M", "RESIDUAL%"};
  const std::span<const int> sections = Shown(kTwoCategories);
  PutTopRule(sections, false);
  PutHeads(sections, kFirst);
  PutHeads(sections, kSecond);
  PutMiddleRule(sections, false);
  for (const CategoryRow& row : rows_) {
    if (row.status < StepStatus::Kept) {
      PutStatusRow(row);
      continue;
    }
    ReportLine line;
    PutUse(line, row);
    PutCoherence(line, row);
    PutRow(line, row);
  }
  if (structure_.missingCount > 0) {
    PutMiddleRule(sections, false);
    ReportLine line;
    PutMissing(line);
    PutBar(line, kSingleCoherenceBar);
    if (withResiduals_) PutBar(line, kSingleEnd);
    PutReportLine(run_, line);
  }
  PutBottomRule(sections, false);
  PutText("AVERAGE MEASURE is mean of measures in category.");
  PutText("M->C = Does Measure imply Category?");
  PutText("C->M = Does Category imply Measure?");
}

void CategoryTable::PutStatusRow(const CategoryRow& row) {
  ReportLine line;
  PutBar(line, 2);
  line.Integer(row.value, 3).Skip(3).Text(WordOfStatus(row.status));
  for (const int bar : {kUseBar, kAveragesBar, kMeanSquaresBar, kSingleCoherenceBar}) {
    PutBar(line, bar);
  }
  if (withResiduals_) PutBar(line, kSingleEnd);
  PutRow(line, row);
}

// More categories: how they were used, and the steps.

void CategoryTable::PutStepHead() {
  static constexpr std::string_view kFirst[] = {
      "CATEGORY   OBSERVED", "OBSVD SAMPLE", "INFIT OUTFIT", "", "  STEP   ", "CATEGORY"};
  static constexpr std::string_view kSecond[] = {
      "LABEL SCORE COUNT %", "AVRGE EXPECT", "  MNSQ  MNSQ", "", "CALIBRATN", " MEASURE"};
  PutTopRule(kSteps, true);
  PutHeads(kSteps, kFirst);
  PutHeads(kSteps, kSecond);
  PutMiddleRule(kSteps, true);
}

void CategoryTable::PutSteps() {
  PutStepHead();
  for (int k = 0; k <= structure_.Top(); ++k) {
    if (k > 0 && BreaksBeforeRow()) PutStepHead();
    PutStepRow(k);
  }
  if (structure_.missingCount > 0) {
    PutMiddleRule(kSteps, true);
    ReportLine line;
    PutMissing(line);
    for (const int bar : {kMeanSquaresBar + 1, kStepBar, kStepsEnd}) PutBar(line, bar);
    PutReportLine(run_, line);
  }
  PutBottomRule(kSteps, true);
  PutText("AVERAGE MEASURE is mean of measures in category.");
  PutBlankLine(run_);
}

void CategoryTable::PutStepRow(int k) {
  const CategoryRow& row = RowAt(k);
  const bool end = k == 0 || k == structure_.Top();
  ReportLine line;
  PutUse(line, row);
  line.Repeat(Box::Vertical, 1);
  if (k == 0) {
    line.Text("  NONE ").Repeat(AnchorFlag(row), 1);
  } else if (row.HasStep()) {
    line.Fixed(row.step, 8, 2).Repeat(AnchorFlag(row), 1);
  } else {
    line.Text(WordOfMissingStep(structure_.model));
  }
  PutBar(line, kStepBar);
  line.Text(end ? BracketedMeasure(run_, row.measurePoint)
                : MeasureField(run_, row.measurePoint, 7));
  line.Text(end ? ")" : " ").Repeat(Box::Vertical, 1);
  PutRow(line, row);
}

// More categories: where they lie.

// On a continued sheet the words over the steps change places: settled form.
void CategoryTable::PutMeasureHead(bool turned) {
  static constexpr std::string_view kFirst[] = {"CATEGORY   STEP    STEP ", "  SCORE-TO-MEASURE   ",
                                                "THURSTONE", " COHERENCE", " OBS-EXP "};
  const bool plain = (structure_.difficulty == 0) != turned;
  const std::string_view second[] = {
      plain ? " LABEL  CALIBRATN  S.E. " : " LABEL   MEASURE   S.E. ", " AT CAT. ----ZONE----",
      "THRESHOLD", " M->C C->M", "RESIDUAL "};
  const std::span<const int> sections = Shown(kMeasures);
  PutTopRule(sections, withResiduals_);
  PutHeads(sections, kFirst);
  PutHeads(sections, second);
  PutMiddleRule(sections, withResiduals_);
}

void CategoryTable::PutMeasures() {
  PutMeasureHead(false);
  for (int k = 0; k <= structure_.Top(); ++k) {
    if (k > 0 && BreaksBeforeRow()) PutMeasureHead(true);
    PutMeasureRow(k);
  }
  PutBottomRule(Shown(kMeasures), withResiduals_);
  PutText("M->C = Does Measure imply Category?");
  PutText("C->M = Does Category imply Measure?");
}

void CategoryTable::PutMeasureRow(int k) {
  const CategoryRow& row = RowAt(k);
  ReportLine line;
  PutBar(line, 2);
  line.Integer(row.value, 4);
  if (k == 0) {
    line.At(13).Text("NONE ").Repeat(AnchorFlag(row), 1);
  } else {
    PutStepValue(line.At(11), row);
  }
  PutBar(line, kScaleBar);
  PutZone(line, k);
  PutBar(line, kZoneBar);
  if (k > 0) line.Fixed(row.thurstone, 8, 2);
  PutBar(line, kThresholdBar);
  PutCoherence(line, row);
  PutRow(line, row);
}

void CategoryTable::PutStepValue(ReportLine& line, const CategoryRow& row) const {
  if (!row.HasStep()) {
    line.Text(WordOfMissingStep(structure_.model));
    return;
  }
  line.Fixed(row.step + structure_.difficulty, 8, 2);
  line.Repeat(structure_.difficulty == 0 ? AnchorFlag(row) : ' ', 1).Fixed(row.stepError, 6, 2);
}

// The measure of category k and the ends of its zone.
void CategoryTable::PutZone(ReportLine& line, int k) const {
  const CategoryRow& row = RowAt(k);
  if (k == 0) {
    line.Text(BracketedMeasure(run_, row.measurePoint)).Text(") -INF");
    line.Text(MeasureField(RowAt(1).halfPoint, 8, kZoneDecimals));
  } else if (k == structure_.Top()) {
    line.Text(BracketedMeasure(run_, row.measurePoint)).Text(")");
    line.Text(MeasureField(row.halfPoint, 6, kZoneDecimals)).Text("  +INF ");
  } else {
    line.Text(MeasureField(run_, row.measurePoint, 7));
    line.Text(MeasureField(row.halfPoint, 7, kZoneDecimals));
    line.Text(MeasureField(RowAt(k + 1).halfPoint, 7, kZoneDecimals));
  }
}

}  // namespace

void PutCategoryTables(Run& run, const CategoryStructure& structure) {
  if (structure.items.empty()) return;
  CategoryTable(run, structure).Put();
}

}  // namespace vardento
