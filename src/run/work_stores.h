// The work files of a run and the two optional stores in memory that mirror the two most used
// ones. Plain holders: the routines that read and write them are in data/work_files.h.
#pragma once

#include <cstdint>

#include "platform/direct_file.h"
#include "platform/memory.h"

namespace vardento {

// One person's record of the person work file.
struct PersonWorkRecord {
  float count = 0;  // weighted count of responses; raw score in the second field
  float score = 0;
  float error = 0;        // model S.E.; during estimation the raw maximum
  float infit = 0;        // INFIT mean-square; during estimation the model maximum
  float outfit = 0;       // OUTFIT mean-square; during estimation the model score
  float correlation = 0;  // point-biserial or point-measure
  float displacement = 0;
};
static_assert(sizeof(PersonWorkRecord) == 28);

struct WorkStores {
  DirectFile itemLabels;       // ZJJ
  DirectFile scoredRows;       // ZMM
  DirectFile codedRows;        // ZNN
  DirectFile personNames;      // ZPP
  DirectFile personWork;       // ZQQ
  DirectFile residuals;        // ZUU: NI 2-byte residuals of each active person, unless PRCOMP=N
  MemoryBlock workStore;       // NPERS person work records, or empty
  MemoryBlock responseMatrix;  // NPERS rows of NI scores, or empty
  MemoryBlock makeKeyCounts;   // MAKEKEY=Y: for each item CATEGS reals, the count of each code
};

}  // namespace vardento
