// The pages of Tables 23 and 24, each made from a record alone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analysis/components.h"
#include "analysis/residual_correlations.h"
#include "report/report_context.h"
#include "report/report_line.h"

namespace vardento {

// What PRCOMP= correlates, as titles name it.
std::string_view ResidualWord(char kind);

// The mark of each entry in plot and lists, by entry from 1: its digit where all numbers are
// digits; else a capital letter for the first 26 of the order of loadings, a small one for the last
// 26, seen from the end, of those that have none; ' ' for the others.
Vector1<char> MarkEntries(const ResidualComponents& found);

// A line of text from a column on, runs of blanks made one.
void PutSqueezedLine(Run& run, int column, std::string_view text);
// What the measures explain against the component and against all the noise.
void PutVarianceRatios(Run& run, const ResidualComponents& found, const Component& component);
// A blank line between parts of a page, or a new sheet where `lines` more don't fit.
void PutGap(Run& run, int lines);

// What the component extracts, and its loadings over the measures, on a page of their own. The
// context holds the range of the measures.
void PutLoadingPlot(ReportContext& context, const ResidualComponents& found,
                    const Component& component);

// The loadings of a component, entry by entry, in three orders.
class LoadingLists {
 public:
  LoadingLists(ReportContext& context, const ResidualComponents& found);
  void PutByLoading(const Component& component);  // on a new page
  void PutByMeasure(const Component& component);
  void PutByEntry(const Component& component);

 private:
  struct Row {
    int entry = 0;
    char mark = ' ';  // of the plot
    float measure = 0, infit = 0, outfit = 0, weight = 1;
    std::string label;
  };

  // Places of rows_ in an order.
  template <class Key, class Later>
  std::vector<int> Sorted(Key key, double equal, Later isLater) const;
  void Put(const Component& component, std::string_view order, const std::vector<int>& places);
  void PutTitle(const Component& component, std::string_view order);
  void PutRule(Box left, Box right);
  void PutHead();
  void PutRow(const Row& row, const Component& component);

  Run& run_;
  const ResidualComponents& found_;
  bool weighed_, grouped_;
  std::vector<Row> rows_;  // by entry
  int labelWidth_ = 1, numberWidth_ = 0;
};

// Who answers the two ends of a component differently; nothing when it has no ends.
void PutContrasts(Run& run, Facet facet, const Component& component);

// The pairs on a page of their own, by falling size of |r|.
void PutCorrelations(Run& run, Facet facet, const std::vector<ResidualCorrelation>& pairs);

inline constexpr int kWidestListedLabel = 100;
// Columns of entry numbers up to this one: 5, or as many as it has digits.
int WidthOfEntries(int largest);

}  // namespace vardento
