// What the Table writers share: the run, and what survives from Table to Table.
#pragma once

#include <set>
#include <string>

#include "report/sorted_lists.h"
#include "run/run.h"

namespace vardento {

// What the Table in hand needs, as its row of the list of Tables says.
struct TableNeeds {
  Facet subject = Facet::Items;
  bool rangeOfItems = true, rangeOfPersons = true;  // whom the range of measures covers
  // Below 0: the range takes items by their measures alone. Else it covers their categories, from
  // the boundary at this position on.
  int lowestBoundary = -1;
  bool labelsOnOneLine = false;  // maps cut labels so that those of a row fit on one line
  bool mirrored = false;         // items are shown reflected in UMEAN=
  bool centred = false;          // the range reaches as far below UMEAN= as above it
  bool freshLists = false;       // the lists are made anew, whatever came before
  bool residuals = false;        // nothing is printed with PRCOMP=N
  // Slots 6 and 7 of a request are units of bars; else they replace HIADJ= and LOWADJ= in the
  // category points for the Table.
  bool barUnits = false;
};

struct ReportContext {
  Run& run;
  SelectedList persons, items;
  TableNeeds needs = {};
  std::set<std::string> missingTables = {};          // those the user has been told of
  float rangeLow = 0, rangeHigh = 0, rangeUnit = 1;  // left by MeasureRange
  int rangeSpan = 0;
  int personSummaryLines = 0, itemSummaryLines = 0;  // rows sent to the screen's summary so far

  SelectedList& SubjectList() { return needs.subject == Facet::Persons ? persons : items; }
};

// The list of the Table's subject in fit order: as it is when it holds that order, else made anew.
SelectedList& ListInFitOrder(ReportContext& context);

}  // namespace vardento
