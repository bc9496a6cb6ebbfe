// The reported values of one person or one item, whichever way they are stored: what the measure
// Tables and the measure files print. Everything is on the user's scale once the fit pass is over.
#pragma once

#include <string>

#include "run/run.h"

namespace vardento {

enum class Facet { Persons, Items };

// The arrays of one side of the data that lists and Tables walk over.
struct FacetArrays {
  Array1<StatusByte> status;
  Array1<float> measure;
  Array1<float> infitZ, outfitZ;
  Array1<float> weight;       // empty without weights
  Array1<float> otherWeight;  // of the other side, which weighs this side's scores and counts
  int Count() const { return status.Size(); }
};

FacetArrays ArraysOf(const Run& run, Facet facet);

// "PERSON" or "ITEM", and the words for several of them, as the user has set them.
const std::string& SingularLabel(const ControlSettings& settings, Facet facet);
const std::string& PluralLabel(const ControlSettings& settings, Facet facet);

struct EntryValues {
  StatusByte status = 0;
  float measure = 0;
  float score = 0, count = 0;  // with extreme scores included when TOTAL=Y asks for it
  float error = 0;             // model standard error; the real one when REALSE=Y asks for it
  float infit = 0, infitZ = 0, outfit = 0, outfitZ = 0;
  float correlation = 0;
  float displacement = 0;
  float weight = 1;
};

// The values of entry 1..count; a person's record is read from the work file. Ends the run in the
// words of that file when it can't be read.
EntryValues ReadEntryValues(Run& run, Facet facet, int entry);

// The label of an entry, without trailing blanks.
std::string LabelOfEntry(Run& run, Facet facet, int entry);

// The character of GROUPS= that puts the item into its group.
char GroupCodeOf(const ControlSettings& settings, int item);

}  // namespace vardento
