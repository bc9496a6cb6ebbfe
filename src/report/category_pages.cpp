#include "report/category_pages.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "measure/category_structure.h"
#include "report/category_table.h"
#include "report/curve_plots.h"
#include "report/group_identity.h"
#include "report/page.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kPlotColumns = 60;
constexpr int kTickWidth = 6;
constexpr int kLinesBesidePlot = 7;  // title, rules, numbers and label

// The measures that all groups are plotted over: their steps and a logit on either side, or
// MRANGE=; from the item, so UMEAN= has no part in it.
struct CurveScale {
  float low = 0;
  PlotAxis axis{.columns = kPlotColumns, .tickWidth = kTickWidth};
};

CurveScale FindScale(ReportContext& context, const StepRange& steps) {
  const ControlSettings& settings = context.run.settings;
  const float logit = std::fabs(settings.USCALE);
  float low = -settings.MRANGE;
  float high = settings.MRANGE;
  if (settings.MRANGE == 0) {
    low = std::floor(steps.low - logit);
    high = std::ceil(steps.high + logit);
  }
  SetMeasureRange(context, low, high);
  CurveScale scale;
  scale.low = context.rangeLow;
  ScalePlotAxis(context.run.request, scale.axis, context.rangeUnit, context.rangeLow,
                context.rangeHigh);
  return scale;
}

// As high as the rest of the page allows: 10 or 20 rows.
int HeightOnPage(const Run& run) {
  if (run.settings.MAXPAGE == 0) return CurvePlots::kLargestHeight;
  const int free = run.settings.MAXPAGE - run.report.LinesOnPage - kLinesBesidePlot;
  return std::clamp(free / 10, 1, 2) * 10;
}

// What a Table shows of each group.
struct PageForm {
  std::string curves;  // a switch for each of the three plots
  bool withStructure;  // else the group's identity alone
};

class CategoryPages {
 public:
  CategoryPages(ReportContext& context, const PageForm& form, const StepRange& steps)
      : run_(context.run),
        form_(form),
        structures_(run_),
        scale_(FindScale(context, steps)),
        axisLabel_(std::string(TrimRight(run_.settings.PERSON_LABEL)) + " [MINUS] " +
                   std::string(TrimRight(run_.settings.ITEM_LABEL)) + " MEASURE") {}

  void Print() {
    for (const bool several : {true, false}) {
      for (int g = 1; g <= run_.NGROUPS; ++g) {
        const bool asked = (run_.arrays.GroupTop[g] > 1) == several;
        if (asked && structures_.IsMeasured(g)) PrintGroup(g);
      }
    }
  }

 private:
  void PrintGroup(int group) {
    const CategoryStructure structure = structures_.Of(group);
    PutPageHeading(run_, 1);
    if (form_.withStructure) {
      PutCategoryTables(run_, structure);
      PutBlankLine(run_);
    } else {
      PutGroupIdentity(run_, structure);
    }
    const CategoryCurves curves(run_, group);
    const CurvePlots plots(curves, scale_.axis, scale_.low, HeightOnPage(run_));
    // Of two categories one plot shows all there is.
    const std::string switches = structure.Top() > 1 ? form_.curves : "100";
    bool any = false;
    const auto put = [&](std::size_t place, auto plot) {
      if (switches[place] != '1') return;
      if (any) PutNextHeading(structure);
      any = true;
      (plots.*plot)(run_, axisLabel_);
      PutBlankLine(run_);
      PutCategoryKey(structure);
    };
    put(0, &CurvePlots::PutProbabilities);
    put(1, &CurvePlots::PutExpectedScore);
    put(2, &CurvePlots::PutCumulative);
  }

  void PutNextHeading(const CategoryStructure& structure) {
    PutPageHeading(run_, 1);
    PutGroupIdentity(run_, structure);
  }

  // What the digits of the plots mean, in the user's words.
  void PutCategoryKey(const CategoryStructure& structure) {
    if (!structures_.Labels().HasCategories()) return;
    for (const CategoryRow& row : structure.rows) {
      if (row.words.empty()) continue;
      ReportLine line;
      line.At(2).Text(IntegerText(row.value)).Text(" = ").Text(row.words);
      PutReportLine(run_, line);
    }
  }

  Run& run_;
  PageForm form_;
  CategoryStructures structures_;
  CurveScale scale_;
  std::string axisLabel_;
};

void PrintPages(ReportContext& context, const PageForm& form) {
  const std::optional<StepRange> steps = FindStepRange(context.run);
  if (steps) CategoryPages(context, form, *steps).Print();
}

}  // namespace

void PrintCategoryStructures(ReportContext& context) {
  PrintPages(context, {"100", context.run.settings.STEPT3});
}

void PrintCategoryCurves(ReportContext& context) {
  const ControlSettings& settings = context.run.settings;
  PrintPages(context, {PadRight(settings.CURVES, 3), !settings.STEPT3});
}

}  // namespace vardento
