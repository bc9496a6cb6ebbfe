// The orders of the measure Tables: each routine makes its list of the row's subject, then prints.
#include "measure/entry_values.h"
#include "report/measure_table.h"

namespace vardento {

void PrintInFitOrder(ReportContext& context) {
  ListInFitOrder(context);
  MeasureTable(context, context.needs.subject, !context.run.settings.OUTFIT ? "INFIT" : "MISFIT")
      .Print();
}

void PrintInMeasureOrder(ReportContext& context) {
  SortByValue(context.run, context.needs.subject, 'M', context.SubjectList());
  MeasureTable(context, context.needs.subject, "MEASURE").Print();
}

void PrintInEntryOrder(ReportContext& context) {
  ListInEntryOrder(context.SubjectList(), ArraysOf(context.run, context.needs.subject).Count());
  MeasureTable(context, context.needs.subject, "ENTRY").Print();
}

void PrintInAlphabeticalOrder(ReportContext& context) {
  const Facet facet = context.needs.subject;
  if (facet == Facet::Items && context.run.settings.INUMB) {
    PrintInEntryOrder(context);
    return;
  }
  SortAlphabetically(context.run, facet, context.SubjectList());
  MeasureTable(context, context.needs.subject, "ALPHA").Print();
}

void PrintInDisplacementOrder(ReportContext& context) {
  SortByValue(context.run, context.needs.subject, 'D', context.SubjectList());
  MeasureTable(context, context.needs.subject, "DISPLACEMENT").Print();
}

void PrintInCorrelationOrder(ReportContext& context) {
  SortByValue(context.run, context.needs.subject, 'P', context.SubjectList());
  MeasureTable(context, context.needs.subject, "CORRELATION").Print();
}

}  // namespace vardento
