// Lists of entry numbers in the order in which a Table prints them. All orders are made by one
// Shell sort; what stands among equal keys is fixed by the comparison, so a list is the same on
// every machine.
#pragma once

#include <vector>

#include "measure/entry_values.h"
#include "run/run.h"

namespace vardento {

// Entry numbers in an order, with the tag of that order; negated numbers are entries that a Table
// left out.
struct SelectedList {
  std::vector<int> entries;
  char order = ' ';
};

// The list's entries without the marks of what a Table left out.
std::vector<int> EntriesOf(const SelectedList& list);

// Every entry, 1 to `count`; tag "E".
void ListInEntryOrder(SelectedList& list, int count);

// Entries of status above 0, the worst fitting first: by INFIT standardised with OUTFIT=N, else by
// the larger of INFIT and OUTFIT standardised. Keys closer than 0.0001 go by entry number. Tag "F".
void SortByFit(Run& run, const FacetArrays& arrays, SelectedList& list);

// By a value of each entry in the user's units, largest first: "M" the measure, "D" the
// displacement; "P" the correlation, smallest first. "P" takes entries of status above 0; "M" and
// "D" those of status above -2, so that extreme scores are listed. A small letter takes the same
// value; keys closer than 0.0001 go by ascending entry number for a capital letter, descending for
// a small one. The tag is the letter.
void SortByValue(Run& run, Facet facet, char letter, SelectedList& list);

// Entries of status above -2 by their labels from a start column on: slot 5 of the request when
// given, else ISORT= or PSORT=; stored back in slot 5. Tag "A".
void SortAlphabetically(Run& run, Facet facet, SelectedList& list);

// The character that marks an entry in plots: its digit when the list has fewer than 10 entries and
// none of them is above 9, else its letter by its place in the list, ' ' in the middle of a long
// list or when it isn't there.
char PlotLetter(const SelectedList& list, int entry);

}  // namespace vardento
