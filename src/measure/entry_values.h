// The reported values of one person or one item, whichever way they are stored, in the user's
// units: the rows of the measure Tables and of the measure files.
#pragma once

#include <string>

#include "run/facet.h"
#include "run/run.h"

namespace vardento {

// The arrays of one side of the data that lists and Tables walk over: 1..NPERS or 1..NI.
struct FacetArrays {
  Array1<StatusByte> status;
  Array1<float> measure;  // logits
  Array1<float> infitZ, outfitZ;
  Array1<float> weight;       // empty without weights
  Array1<float> otherWeight;  // of the other side, which weighs this side's scores and counts
  int Count() const { return status.Size(); }
  float WeightOf(int entry) const { return weight.Size() > 0 ? weight[entry] : 1.0F; }
};

FacetArrays ArraysOf(const Run& run, Facet facet);

// The summary of one side of the data.
inline const FacetSummary& SummaryOf(const Results& results, Facet facet) {
  return facet == Facet::Persons ? results.summary.persons : results.summary.items;
}

// The measure of an entry in the user's units; 0 for one that has none.
float MeasureOf(const Run& run, Facet facet, int entry);

struct EntryValues {
  StatusByte status = 0;
  float measure = 0;
  float score = 0, count = 0;                            // in the scale of the data, weighted
  float error = 0;                                       // model standard error
  float infit = 0, infitZ = 0, outfit = 0, outfitZ = 0;  // mean-squares, and standardised
  float correlation = 0;                                 // point-measure, or point-biserial
  float displacement = 0;
  float weight = 1;
  // The error when misfit counts as noise: error x sqrt(max(1, INFIT)), as errors of overdispersed
  // data are inflated (Wedderburn 1974), yet never below the model's.
  float realError = 0;
};

// The values of entry 1..count; a person's record is read from the work file. Ends the run in the
// words of that file when it can't be read.
EntryValues ReadEntryValues(Run& run, Facet facet, int entry);
// As they are to be shown: score and count with extreme responses included when TOTAL=Y asks for
// it, the real error in the place of the model's when REALSE=Y does.
EntryValues ReadShownValues(Run& run, Facet facet, int entry);

// The label of an entry, without trailing blanks.
std::string LabelOfEntry(Run& run, Facet facet, int entry);

// The character of GROUPS= that puts the item into its group.
char GroupCodeOf(const ControlSettings& settings, int item);

}  // namespace vardento
