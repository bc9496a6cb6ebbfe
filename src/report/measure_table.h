// One line for each person or item with score, measure, standard error, fit and label, in the order
// of the selected list: Tables 6.1, 10.1, 13.1 to 15.1, 17.1 to 19.1, 25.1 and 26.1.
#pragma once

#include <string>
#include <string_view>

#include "measure/entry_values.h"
#include "report/report_context.h"
#include "report/report_line.h"

namespace vardento {

class MeasureTable {
 public:
  // `orderWord`: "MISFIT", "INFIT", "MEASURE", "ENTRY", "ALPHA", "DISPLACEMENT" or "CORRELATION".
  // The context's list of the facet holds the entries; what the Table leaves out is negated there.
  MeasureTable(ReportContext& context, Facet facet, std::string_view orderWord);
  void Print();

 private:
  // What follows the correlation in every line: optional columns and the label field.
  struct Tail {
    std::string_view weight, displacement;  // 5 and 8 columns
    std::string_view label;
    char model = ' ', group = ' ';
  };
  // Where the label field's parts stand, from its own first column; 0: no such column.
  struct LabelField {
    int width = 0;       // of the whole field
    int labelWidth = 0;  // of the label, which starts in the second column
    int modelPlace = 0, groupPlace = 0;
  };

  // Layout and heads.
  LabelField DecideLabelField() const;
  void PutTail(ReportLine& line, const Tail& tail) const;
  ReportLine Rule(Box left, Box joint, Box right) const;
  void PutTitle();
  void PutHead();
  ReportLine SecondHeadLine() const;
  void BreakPage();

  // Rows.
  void PutRows();
  bool IsLeftOut(int n, int entry) const;
  bool IsBetterThanExpected(int entry) const;
  void PutOmissionLine();
  void PutRow(int n, int entry);
  void PutNumbers(ReportLine& line, const EntryValues& values) const;
  void PutStatistics(ReportLine& line, const EntryValues& values, char letter) const;
  void PutScore(ReportLine& line, float value) const;
  void PutEntryTail(ReportLine& line, int entry, const EntryValues& values) const;
  void SendToScreenSummary(const ReportLine& line);

  // The closing rows.
  void PutClose();
  void PutSummaryRow(std::string_view word, float Statistic::*value);

  ReportContext& context_;
  Run& run_;
  const ControlSettings& settings_;
  Facet facet_;
  bool persons_;
  SelectedList& list_;
  FacetArrays arrays_;
  std::string orderWord_;
  bool fitOrder_;
  bool weighColumn_, displaceColumn_;
  bool fractionalScores_;  // weights of the other side make scores that are no whole numbers
  LabelField field_;
  bool omitted_ = false, omissionShown_ = false;
};

// The Tables of the row's subject in each order.
void PrintInFitOrder(ReportContext& context);
void PrintInMeasureOrder(ReportContext& context);
void PrintInEntryOrder(ReportContext& context);
void PrintInAlphabeticalOrder(ReportContext& context);
// Items only.
void PrintInDisplacementOrder(ReportContext& context);
void PrintInCorrelationOrder(ReportContext& context);

}  // namespace vardento
