// The arrays of a run, cut from its memory blocks, by what they run over. Every phase, Table and
// output file finds its numbers here. Real values are 32-bit; measures are internal logits until
// the fit pass is over and on the user's scale from then on.
#pragma once

#include <cstdint>

#include "platform/memory.h"
#include "run/status.h"

namespace vardento {

struct RunArrays {
  // Items, 1..NI.
  Array1<float> ItemMeasure;     // difficulty D
  Array1<float> ItemScore;       // raw score over active persons
  Array1<float> ItemCount;       // weighted count of responses by active persons
  Array1<float> ItemRawMax;      // largest raw score possible over those responses
  Array1<float> ItemModelScore;  // score and maximum as the item's model letter counts them
  Array1<float> ItemModelMax;
  Array1<float> ItemTotalScore;  // score and count with extreme persons included
  Array1<float> ItemTotalCount;
  Array1<float> ItemExpected;        // expected score at d
  Array1<float> ItemExpectedOffset;  // expected score at d less an offset
  Array1<float> ItemError;           // model standard error
  Array1<float> ItemInfit;           // mean-squares
  Array1<float> ItemOutfit;
  Array1<float> ItemInfitZ;  // standardised
  Array1<float> ItemOutfitZ;
  Array1<float> ItemCorrelation;  // point-measure, or point-biserial
  Array1<float> ItemDisplacement;
  Array1<std::int32_t> ItemGroup;  // 1..NGROUPS
  Array1<StatusByte> ItemStatus;
  Array1<std::uint8_t> ScoredRow;  // the scores of the person in hand, 255 missing

  // Groups, 1..NGROUPS. Category k of group g stands at position GroupStart[g] + k, k = 0..top.
  Array1<std::int32_t> GroupStart;
  Array1<std::int32_t> GroupTop;      // highest ordered category; -1: the group has been dropped
  Array1<float> GroupPivot;           // score point at which the item difficulty shall stand
  Array1<float> GroupMissingCount;    // missing responses of active persons on active items
  Array1<float> GroupMissingMeasure;  // their mean measure difference, USCALE units
  Array1<char> GroupModel;            // "R", "S" or "F"
  Array1<char> GroupPivotFlag;        // "Y" or "N"

  // Category positions, 1..NCATS.
  Array1<std::int32_t> CodeToCategory;
  Array1<std::int32_t> CategoryToCode;
  Array1<std::int32_t> StepStatus;
  Array1<float> StepCalibration;
  Array1<float> CategoryCount;
  Array1<float> CategoryExpectedCount;
  Array1<float> CategoryInformation;
  Array1<float> CategoryObservedZ;
  Array1<float> CategoryObservedY;
  Array1<float> CategoryVariance;
  Array1<float> CategoryZVariance;
  Array1<float> CategoryObservedMeasure;
  Array1<float> CategoryExpectedMeasure;
  Array1<std::int32_t> CategoryExpectedHits;
  Array1<std::int32_t> CategoryMatches;
  Array1<float> CategoryHalfPoint;
  Array1<float> CategoryMeasurePoint;
  Array1<float> CategoryThurstone;

  // Persons, 1..NPERS. What else belongs to a person stands in the person work record.
  Array1<float> PersonMeasure;
  Array1<float> PersonTotalScore;
  Array1<float> PersonTotalCount;
  Array1<float> PersonError;
  Array1<float> PersonInfit;
  Array1<float> PersonOutfit;
  Array1<float> PersonInfitZ;
  Array1<float> PersonOutfitZ;
  Array1<StatusByte> PersonStatus;

  // Weights; empty arrays when no weights are in use.
  Array1<float> PersonWeight;
  Array1<float> ItemWeight;
  Array1<float> GroupMaxWeight;
};

}  // namespace vardento
