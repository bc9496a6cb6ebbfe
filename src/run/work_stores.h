// The work files of a run, the two most used of them mirrored in memory when there is room. Plain
// holders: the routines that read and write them are in data/work_files.h.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/direct_file.h"
#include "platform/memory.h"
#include "platform/mirrored_file.h"
#include "run/facet.h"

namespace vardento {

// What the start values leave of a person for the joint iteration and the fit pass.
struct PersonScores {
  float modelScore = 0, modelMax = 0;  // as the model letters count them, held inside EXTRSC=
  float correlation = 0;               // point-biserial, PTBIS=Y
};

// What the fit pass leaves of a person, who is reported by it.
struct PersonWorkRecord {
  double error = 0;             // model S.E., logits
  double displacement = 0;      // logits
  float count = 0;              // weighted count of responses
  float score = 0;              // raw score in the scale of the data
  float infit = 0, outfit = 0;  // mean-squares
  float correlation = 0;        // point-biserial or point-measure
};

// A correlation of the residuals of two entries of one side.
struct ResidualCorrelation {
  int first = 0, second = 0;  // entry numbers, first < second
  double r = 0;
};

// The correlations of one side's residuals. They stand until persons and items are measured anew,
// for the entries that they were made of.
struct CorrelationStore {
  DirectFile file;           // 8-byte reals: the pairs (i, j), i < j, of `entries` in that order
  bool complete = false;     // every pair is there
  std::vector<int> entries;  // whose residuals were correlated, ascending
  std::vector<int> others;   // the entries of the other side that they were correlated over
  std::vector<ResidualCorrelation> largest;  // by |r|, largest first, at most 10
};

struct WorkStores {
  static constexpr std::size_t kPersonRecord =
      std::max(sizeof(PersonScores), sizeof(PersonWorkRecord));

  DirectFile itemLabels;   // ZJJ
  DirectFile codedRows;    // ZNN
  DirectFile personNames;  // ZPP
  // ZUU: NI 2-byte residuals of each active person, made when the first Table needs them.
  DirectFile residuals;
  bool residualsMade = false;
  CorrelationStore itemCorrelations, personCorrelations;  // ZTT, ZWW
  CorrelationStore& CorrelationsOf(Facet facet) {
    return facet == Facet::Persons ? personCorrelations : itemCorrelations;
  }
  // Persons and items are measured anew.
  void ForgetResiduals() {
    residualsMade = itemCorrelations.complete = personCorrelations.complete = false;
  }

  // ZMM: NI scores of each person; mirrored, it is the response matrix.
  MirroredFile scoredRows{MirroredFile::Writes::Both};
  // ZQQ: PersonScores, from the fit pass on PersonWorkRecord; mirrored, it is the person work
  // store.
  MirroredFile personWork{MirroredFile::Writes::MirrorAlone};
};

}  // namespace vardento
