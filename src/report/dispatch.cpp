// The list of Tables, and the road from a request to the routines that print it. A new Table is a
// new row of the list.
#include "report/dispatch.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "platform/io_status.h"
#include "report/later_tables.h"
#include "report/measure_table.h"
#include "report/sorted_lists.h"
#include "report/summary_table.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

// The subtable that a request asks for: all of them, or one number.
struct Subtable {
  bool whole = true;
  int number = 0;
  bool IsOne(int wanted) const { return whole || number == wanted; }
  bool IsOneOf(int first, int second) const { return IsOne(first) || number == second; }
};

using Condition = bool (*)(const Run&, const Subtable&);
using Writer = void (*)(ReportContext&);

struct TableRow {
  int table;
  int subtable;
  Condition when;
  Writer print;
};

// Conditions.

bool Always(const Run&, const Subtable&) { return true; }
bool AtMost1(const Run&, const Subtable& s) { return s.whole || s.number <= 1; }
bool AtMost2(const Run&, const Subtable& s) { return s.whole || s.number <= 2; }
bool Not1(const Run&, const Subtable& s) { return s.whole || s.number != 1; }
bool AtLeast3IfAsked(const Run&, const Subtable& s) { return !s.whole && s.number >= 3; }
bool Above2(const Run&, const Subtable& s) { return s.whole || s.number > 2; }
template <int N>
bool Is(const Run&, const Subtable& s) {
  return s.IsOne(N);
}
template <int N>
bool IsZeroOr(const Run&, const Subtable& s) {
  return s.IsOneOf(0, N);
}
bool CategoriesAsked(const Run& run, const Subtable& s) {
  return s.whole ? run.settings.STEPT3 == 'Y' : s.number > 1;
}
bool ChartAsked(const Run& run, const Subtable& s) {
  return run.settings.CHART == 'Y' && s.IsOneOf(0, 2);
}
bool FrequenciesAsked(const Run& run, const Subtable& s) {
  return run.settings.DISTRT == 'Y' && s.IsOneOf(0, 3);
}
bool ResidualsKept(const Run& run) { return run.settings.PRCOMP != 'N'; }
template <int N>
bool ComponentsAsked(const Run& run, const Subtable& s) {
  return ResidualsKept(run) && s.IsOneOf(0, N);
}
// Without item labels the alphabetical order is the entry order, which Table 14 prints already.
bool IsTable14Instead(const Run& run) {
  const std::string& tables = run.settings.TABLES;
  return run.settings.INUMB == 'Y' && tables.size() >= 14 && tables[13] == '1';
}
bool AlphabeticalAsked(const Run& run, const Subtable& s) {
  return AtMost1(run, s) && !IsTable14Instead(run);
}
bool AlphabeticalChartAsked(const Run& run, const Subtable& s) {
  return ChartAsked(run, s) && !IsTable14Instead(run);
}
bool AlphabeticalFrequenciesAsked(const Run& run, const Subtable& s) {
  return FrequenciesAsked(run, s) && !IsTable14Instead(run);
}

// Writers: each makes its list, then prints.

SelectedList& ListOf(ReportContext& context, Facet facet) {
  context.run.request.TableSubjectIsPerson = facet == Facet::Persons;
  return facet == Facet::Persons ? context.persons : context.items;
}

template <Facet F>
void PrintInFitOrder(ReportContext& context) {
  SelectedList& list = ListOf(context, F);
  if (list.order != 'F') SortByFit(context.run, ArraysOf(context.run, F), list);
  MeasureTable(context, F, context.run.settings.OUTFIT == 'N' ? "INFIT" : "MISFIT").Print();
}

template <Facet F>
void PrintInMeasureOrder(ReportContext& context) {
  const FacetArrays arrays = ArraysOf(context.run, F);
  SortByValue('M', arrays, arrays.measure, ListOf(context, F));
  MeasureTable(context, F, "MEASURE").Print();
}

template <Facet F>
void PrintInEntryOrder(ReportContext& context) {
  ListInEntryOrder(ListOf(context, F), ArraysOf(context.run, F).Count());
  MeasureTable(context, F, "ENTRY").Print();
}

template <Facet F>
void PrintInAlphabeticalOrder(ReportContext& context) {
  if (F == Facet::Items && context.run.settings.INUMB == 'Y') {
    PrintInEntryOrder<F>(context);
    return;
  }
  SortAlphabetically(context.run, F, ListOf(context, F));
  MeasureTable(context, F, "ALPHA").Print();
}

void PrintInDisplacementOrder(ReportContext& context) {
  const Run& run = context.run;
  SortByValue('D', ArraysOf(run, Facet::Items), run.arrays.ItemDisplacement,
              ListOf(context, Facet::Items));
  MeasureTable(context, Facet::Items, "DISPLACEMENT").Print();
}

void PrintInCorrelationOrder(ReportContext& context) {
  const Run& run = context.run;
  SortByValue('P', ArraysOf(run, Facet::Items), run.arrays.ItemCorrelation,
              ListOf(context, Facet::Items));
  MeasureTable(context, Facet::Items, "CORRELATION").Print();
}

constexpr Facet P = Facet::Persons;
constexpr Facet I = Facet::Items;

// All Tables in the order in which a whole Table prints its subtables.
constexpr TableRow kTables[] = {
    {1, 0, Always, VariableMaps},
    {1, 10, Always, MirroredMaps},
    {2, 1, Always, GeneralKeyform},
    {3, 1, AtMost1, PrintSummaryTable},
    {3, 2, CategoriesAsked, CategoryStructure},
    {4, 1, AtMost1, FitMeasurePlot},
    {5, 1, AtMost1, FitMeasurePlot},
    {5, 2, Is<2>, OutfitInfitPlot},
    {6, 1, AtMost1, PrintInFitOrder<P>},
    {6, 2, ChartAsked, FitChart},
    {6, 4, IsZeroOr<4>, MisfittingStrings},
    {6, 5, IsZeroOr<5>, UnexpectedGrid},
    {7, 1, AtMost1, PoorFitList},
    {7, 2, Not1, PersonKeyforms},
    {8, 1, AtMost1, FitMeasurePlot},
    {9, 1, AtMost1, FitMeasurePlot},
    {9, 2, Not1, OutfitInfitPlot},
    {10, 1, AtMost1, PrintInFitOrder<I>},
    {10, 2, ChartAsked, FitChart},
    {10, 3, FrequenciesAsked, CategoryFrequencies},
    {10, 4, IsZeroOr<4>, MisfittingStrings},
    {10, 5, IsZeroOr<5>, UnexpectedGrid},
    {11, 1, Always, PoorFitList},
    {12, 2, Always, VariableMaps},
    {12, 12, Is<12>, MirroredMaps},
    {13, 1, AtMost1, PrintInMeasureOrder<I>},
    {13, 2, ChartAsked, FitChart},
    {13, 3, FrequenciesAsked, CategoryFrequencies},
    {14, 1, AtMost1, PrintInEntryOrder<I>},
    {14, 2, ChartAsked, FitChart},
    {14, 3, FrequenciesAsked, CategoryFrequencies},
    {15, 1, AlphabeticalAsked, PrintInAlphabeticalOrder<I>},
    {15, 2, AlphabeticalChartAsked, FitChart},
    {15, 3, AlphabeticalFrequenciesAsked, CategoryFrequencies},
    {16, 3, Is<3>, VariableMaps},
    {17, 1, AtMost1, PrintInMeasureOrder<P>},
    {17, 2, ChartAsked, FitChart},
    {17, 3, Above2, PersonKeyforms},
    {18, 1, AtMost1, PrintInEntryOrder<P>},
    {18, 2, ChartAsked, FitChart},
    {18, 3, Above2, PersonKeyforms},
    {19, 1, AtMost1, PrintInAlphabeticalOrder<P>},
    {19, 2, ChartAsked, FitChart},
    {19, 3, Above2, PersonKeyforms},
    {20, 1, AtMost2, ScoreTable},
    {20, 3, AtLeast3IfAsked, SampleNorms},
    {21, 1, Always, ProbabilityCurves},
    {22, 1, Always, Scalogram},
    {23, 1, ComponentsAsked<1>, ResidualCorrelations},
    {23, 2, ComponentsAsked<2>, PrincipalComponents},
    {24, 1, ComponentsAsked<1>, ResidualCorrelations},
    {24, 2, ComponentsAsked<2>, PrincipalComponents},
    {25, 1, AtMost1, PrintInDisplacementOrder},
    {25, 2, ChartAsked, FitChart},
    {25, 3, FrequenciesAsked, CategoryFrequencies},
    {26, 1, AtMost1, PrintInCorrelationOrder},
    {26, 2, ChartAsked, FitChart},
    {26, 3, FrequenciesAsked, CategoryFrequencies},
    {27, 1, Always, SubtotalTable},
    {28, 1, Always, SubtotalTable},
    {29, 1, Always, EmpiricalCurves},
    {30, 1, Always, BiasTable},
    {31, 1, Always, BiasTable},
};

Subtable SubtableOf(const TableRequest& request) {
  Subtable subtable;
  subtable.whole = request.Set(1) == ' ';
  subtable.number = static_cast<int>(std::clamp(request.Value(1), -1e6F, 1e6F));
  return subtable;
}

// The Keyform of single persons has a name of three parts: 7.2.1.
void SplitThreePartNumber(TableRequest& request) {
  if (request.CurrentTable != 721) return;
  request.CurrentTable = 7;
  request.TableArgument[0] = 2;
  request.TableArgumentSet[0] = 'Y';
  request.TableArgumentSet[7] = 'Y';
}

// Brings the work files up to date for the Table's writers. False when one of them has failed.
bool FlushWorkFiles(Run& run) {
  struct WorkFile {
    DirectFile& file;
    std::string_view name;
  };
  WorkStores& stores = run.stores;
  const WorkFile files[] = {
      {stores.itemLabels, "ITEM WORK FILE JJ"},   {stores.scoredRows, "PERSON SCORED FILE MM"},
      {stores.codedRows, "PERSON CODES FILE NN"}, {stores.personNames, "PERSON NAME FILE PP"},
      {stores.personWork, "PERSON WORK FILE QQ"},
  };
  for (const WorkFile& work : files) {
    if (!work.file.IsOpen()) continue;
    const int status = work.file.Flush();
    if (status == kIoOk) continue;
    run.RunIoStatus = status;
    ReportFileFailure(run, work.name, 'W');
    return false;
  }
  return true;
}

// These Tables take their lists anew whatever came before them.
void ForgetOrders(ReportContext& context) {
  const int table = context.run.request.CurrentTable;
  if ((table >= 13 && table <= 15) || table == 23 || table == 24) {
    context.persons.order = ' ';
    context.items.order = ' ';
  }
}

void PrintRows(ReportContext& context) {
  TableRequest& request = context.run.request;
  const Subtable subtable = SubtableOf(request);
  ForgetOrders(context);
  for (const TableRow& row : kTables) {
    if (row.table != request.CurrentTable || !row.when(context.run, subtable)) continue;
    request.SubtableCounter = row.subtable - 1;
    row.print(context);
  }
}

}  // namespace

void DispatchTable(ReportContext& context) {
  Run& run = context.run;
  TableRequest& request = run.request;
  request.HeadingPending = 'Y';
  const bool ready = FlushWorkFiles(run) && (!run.complete || BeginAfterRunRequest(context));
  SplitThreePartNumber(request);
  if (ready && request.CurrentTable > 0) {
    request.SubtableCounter = 0;
    WriteConsole(run, "  Processing Table " + IntegerText(request.CurrentTable));
    PrintRows(context);
    if (run.complete) EndAfterRunRequest(context);
  }
  request.ClearSlots();
}

}  // namespace vardento
