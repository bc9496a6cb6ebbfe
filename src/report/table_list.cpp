#include "report/table_list.h"

#include <algorithm>
#include <string>

#include "measure/variable_map.h"
#include "report/bias_table.h"
#include "report/category_pages.h"
#include "report/components_table.h"
#include "report/fit_plots.h"
#include "report/measure_table.h"
#include "report/misfit_listings.h"
#include "report/sample_norms.h"
#include "report/score_table.h"
#include "report/summary_table.h"
#include "report/variable_maps.h"

namespace vardento {
namespace {

// Which numbers behind the point mean a row.

bool Any(const Subtable&) { return true; }
bool AtMost1(const Subtable& s) { return s.whole || s.number <= 1; }
bool AtMost2(const Subtable& s) { return s.whole || s.number <= 2; }
bool Above1(const Subtable& s) { return s.whole || s.number > 1; }
bool Above2(const Subtable& s) { return s.whole || s.number > 2; }
bool Not1(const Subtable& s) { return s.whole || s.number != 1; }
bool AtLeast3IfAsked(const Subtable& s) { return !s.whole && s.number >= 3; }
template <int N>
bool Is(const Subtable& s) {
  return s.whole || s.number == N;
}
template <int N>
bool IsZeroOr(const Subtable& s) {
  return s.whole || s.number == 0 || s.number == N;
}

// What the settings must say.

bool Always(const Run&, const Subtable&) { return true; }
bool Categories(const Run& run, const Subtable& s) { return !s.whole || run.settings.STEPT3; }
bool Chart(const Run& run, const Subtable&) { return run.settings.CHART; }
bool Frequencies(const Run& run, const Subtable&) { return run.settings.DISTRT; }
bool SeveralSteps(const Run& run, const Subtable&) { return HasSeveralSteps(run); }
// Without item labels the alphabetical order is the entry order, which another Table may print
// already.
template <std::size_t OtherTable>
bool AlphabeticalUnless(const Run& run, const Subtable&) {
  const std::string& tables = run.inForce.TABLES;
  return !run.settings.INUMB || tables.size() < OtherTable || tables[OtherTable - 1] != '1';
}
constexpr auto Alphabetical = AlphabeticalUnless<14>;
bool AlphabeticalChart(const Run& run, const Subtable& s) {
  return Chart(run, s) && Alphabetical(run, s);
}
bool AlphabeticalFrequencies(const Run& run, const Subtable& s) {
  return Frequencies(run, s) && Alphabetical(run, s);
}

constexpr auto Later = nullptr;

// What the rows need.

constexpr TableNeeds kItems{};
constexpr TableNeeds kPersons{.subject = Facet::Persons};
constexpr TableNeeds kFreshItems{.freshLists = true};
constexpr TableNeeds kItemCategories{.lowestBoundary = 0};
constexpr TableNeeds kPersonsByCategories{.subject = Facet::Persons, .lowestBoundary = 0};
constexpr TableNeeds kMap{.lowestBoundary = 1, .labelsOnOneLine = true, .barUnits = true};
constexpr TableNeeds kMirroredMap{
    .lowestBoundary = 1, .labelsOnOneLine = true, .mirrored = true, .barUnits = true};
constexpr TableNeeds kItemMap{.lowestBoundary = 1, .barUnits = true};
constexpr TableNeeds kMirroredItemMap{.lowestBoundary = 1, .mirrored = true, .barUnits = true};
constexpr TableNeeds kPersonMap{.subject = Facet::Persons, .lowestBoundary = 1, .barUnits = true};
constexpr TableNeeds kCurves{.lowestBoundary = 0, .centred = true};
constexpr TableNeeds kItemResiduals{.rangeOfPersons = false, .freshLists = true, .residuals = true};
constexpr TableNeeds kPersonResiduals{
    .subject = Facet::Persons, .rangeOfItems = false, .freshLists = true, .residuals = true};

constexpr TableRow kTables[] = {
    {1, 0, Is<0>, Always, PrintCombinedMap, kMap},
    {1, 1, Is<1>, Always, PrintHistogramMap, kMap},
    {1, 2, Is<2>, Always, PrintItemLabelMap, kMap},
    {1, 3, Is<3>, Always, PrintPersonLabelMap, kMap},
    {1, 4, Is<4>, SeveralSteps, PrintStepHistogramMap, kMap},
    {1, 10, Any, Always, PrintCombinedMap, kMirroredMap},
    {1, 12, Any, Always, PrintItemLabelMap, kMirroredMap},
    {2, 1, Any, Always, Later, kItemCategories},
    {3, 1, AtMost1, Always, PrintSummaryTable, kCurves},
    {3, 2, Above1, Categories, PrintCategoryStructures, kCurves},
    {4, 1, AtMost1, Always, PrintInfitPlot, kPersons},
    {5, 1, AtMost1, Always, PrintOutfitPlot, kPersons},
    {5, 2, Is<2>, Always, PrintOutfitAgainstInfit, kPersons},
    {6, 1, AtMost1, Always, PrintInFitOrder, kPersons},
    {6, 2, IsZeroOr<2>, Chart, Later, kPersons},
    {6, 4, IsZeroOr<4>, Always, PrintMisfittingStrings, kPersons},
    {6, 5, IsZeroOr<5>, Always, PrintUnexpectedResponses, kPersons},
    {7, 1, AtMost1, Always, PrintPoorFitList, kPersonsByCategories},
    {7, 2, Not1, Always, Later, kPersonsByCategories},
    {8, 1, AtMost1, Always, PrintInfitPlot, kItems},
    {9, 1, AtMost1, Always, PrintOutfitPlot, kItems},
    {9, 2, Not1, Always, PrintOutfitAgainstInfit, kItems},
    {10, 1, AtMost1, Always, PrintInFitOrder, kItems},
    {10, 2, IsZeroOr<2>, Chart, Later, kItems},
    {10, 3, IsZeroOr<3>, Frequencies, Later, kItems},
    {10, 4, IsZeroOr<4>, Always, PrintMisfittingStrings, kItems},
    {10, 5, IsZeroOr<5>, Always, PrintUnexpectedResponses, kItems},
    {11, 1, Any, Always, PrintPoorFitList, kItems},
    {12, 2, Is<2>, Always, PrintItemLabelMap, kItemMap},
    {12, 5, Is<5>, SeveralSteps, PrintScoreZoneMap, kItemMap},
    {12, 6, Is<6>, SeveralSteps, PrintThurstoneMap, kItemMap},
    {12, 12, Is<12>, Always, PrintItemLabelMap, kMirroredItemMap},
    {13, 1, AtMost1, Always, PrintInMeasureOrder, kFreshItems},
    {13, 2, IsZeroOr<2>, Chart, Later, kFreshItems},
    {13, 3, IsZeroOr<3>, Frequencies, Later, kFreshItems},
    {14, 1, AtMost1, Always, PrintInEntryOrder, kFreshItems},
    {14, 2, IsZeroOr<2>, Chart, Later, kFreshItems},
    {14, 3, IsZeroOr<3>, Frequencies, Later, kFreshItems},
    {15, 1, AtMost1, Alphabetical, PrintInAlphabeticalOrder, kFreshItems},
    {15, 2, IsZeroOr<2>, AlphabeticalChart, Later, kFreshItems},
    {15, 3, IsZeroOr<3>, AlphabeticalFrequencies, Later, kFreshItems},
    {16, 3, Is<3>, Always, PrintPersonLabelMap, kPersonMap},
    {17, 1, AtMost1, Always, PrintInMeasureOrder, kPersonsByCategories},
    {17, 2, IsZeroOr<2>, Chart, Later, kPersonsByCategories},
    {17, 3, Above2, Always, Later, kPersonsByCategories},
    {18, 1, AtMost1, Always, PrintInEntryOrder, kPersonsByCategories},
    {18, 2, IsZeroOr<2>, Chart, Later, kPersonsByCategories},
    {18, 3, Above2, Always, Later, kPersonsByCategories},
    {19, 1, AtMost1, Always, PrintInAlphabeticalOrder, kPersonsByCategories},
    {19, 2, IsZeroOr<2>, Chart, Later, kPersonsByCategories},
    {19, 3, Above2, Always, Later, kPersonsByCategories},
    {20, 1, AtMost2, Always, PrintScoreTable, kPersons},  // 20.2, the ogive, may share its page
    {20, 3, AtLeast3IfAsked, Always, PrintSampleNorms, kPersons},
    {21, 1, Any, Always, PrintCategoryCurves, kCurves},
    {22, 1, Any, Always, Later, kItems},
    {23, 2, IsZeroOr<2>, Always, PrintComponents, kItemResiduals},
    {23, 1, IsZeroOr<1>, Always, PrintLargestCorrelations, kItemResiduals},
    {24, 2, IsZeroOr<2>, Always, PrintComponents, kPersonResiduals},
    {24, 1, IsZeroOr<1>, Always, PrintLargestCorrelations, kPersonResiduals},
    {25, 1, AtMost1, Always, PrintInDisplacementOrder, kItems},
    {25, 2, IsZeroOr<2>, Chart, Later, kItems},
    {25, 3, IsZeroOr<3>, Frequencies, Later, kItems},
    {26, 1, AtMost1, Always, PrintInCorrelationOrder, kItems},
    {26, 2, IsZeroOr<2>, Chart, Later, kItems},
    {26, 3, IsZeroOr<3>, Frequencies, Later, kItems},
    {27, 1, Any, Always, Later, kItems},
    {28, 1, Any, Always, Later, kPersons},
    {29, 1, Any, Always, Later, kItems},
    {30, 1, Any, Always, PrintBias, kItems},
    {31, 1, Any, Always, PrintBias, kPersons},
};
static_assert(std::ranges::is_sorted(kTables, {}, &TableRow::table), "RowsOf searches it");
static_assert(std::ranges::adjacent_find(kTables,
                                         [](const TableRow& a, const TableRow& b) {
                                           return a.table == b.table &&
                                                  a.needs.freshLists != b.needs.freshLists;
                                         }) == std::end(kTables),
              "lists are made anew once for a Table, by its first row");

}  // namespace

std::span<const TableRow> RowsOf(int table) {
  return {std::ranges::lower_bound(kTables, table, {}, &TableRow::table),
          std::ranges::upper_bound(kTables, table, {}, &TableRow::table)};
}

}  // namespace vardento
