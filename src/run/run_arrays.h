// The arrays of a run, cut from its memory blocks, by what they run over. Every phase, Table and
// output file finds its numbers here, in logits; UserScale turns them into the user's units where
// they are read. What is estimated is 32-bit; what is only computed from it (errors, displacements,
// landmarks) is held in double precision, so that reading it in other units loses no digit.
#pragma once

#include <cstdint>

#include "platform/memory.h"
#include "run/model.h"
#include "run/status.h"

namespace vardento {

struct RunArrays {
  // Items, 1..NI.
  Array1<float> ItemMeasure;     // difficulty D
  Array1<float> ItemScore;       // raw score over active persons
  Array1<float> ItemCount;       // weighted count of responses by active persons
  Array1<float> ItemModelScore;  // score and maximum as the item's model letter counts them
  Array1<float> ItemModelMax;
  Array1<float> ItemTotalScore;  // score and count with extreme persons included
  Array1<float> ItemTotalCount;
  Array1<float> ItemInfit;  // mean-squares
  Array1<float> ItemOutfit;
  Array1<float> ItemInfitZ;  // standardised
  Array1<float> ItemOutfitZ;
  Array1<float> ItemCorrelation;  // point-measure, or point-biserial
  Array1<double> ItemError;       // model standard error
  Array1<double> ItemDisplacement;
  Array1<std::int32_t> ItemGroup;  // 1..NGROUPS
  Array1<StatusByte> ItemStatus;
  Array1<std::uint8_t> ScoredRow;  // the scores of the person in hand, 255 missing

  // Groups, 1..NGROUPS. Category k of group g stands at position GroupStart[g] + k, k = 0..top.
  Array1<std::int32_t> GroupStart;
  Array1<std::int32_t> GroupTop;      // highest ordered category; -1: the group has been dropped
  Array1<float> GroupMissingCount;    // missing responses of active persons on active items
  Array1<float> GroupMissingMeasure;  // their mean measure difference
  Array1<float> GroupMaxWeight;       // largest weight of its active items
  Array1<Model> GroupModel;
  Array1<bool> GroupPivotFlag;  // GroupPivot still sets the scale

  // Category positions, 1..NCATS. What is counted is weighted.
  Array1<std::int32_t> CodeToCategory;  // by code; negative: the code counts as missing
  Array1<std::int32_t> CategoryToCode;
  Array1<std::int32_t> StepStatus;            // of the step into the category
  Array1<float> StepCalibration;              // logits
  Array1<float> CategoryCount;                // responses in the category
  Array1<float> CategoryExpectedCount;        // from the fit pass on: observed less expected count
  Array1<float> CategoryInformation;          // about its step, per squared logit
  Array1<float> CategoryObservedZ;            // OUTFIT mean-square
  Array1<float> CategoryObservedY;            // INFIT mean-square
  Array1<float> CategoryVariance;             // their denominators: expected sums of y squared
  Array1<float> CategoryZVariance;            // and of z squared
  Array1<float> CategoryObservedMeasure;      // mean B - D of the responses, logits
  Array1<float> CategoryExpectedMeasure;      // what the model expects of that mean
  Array1<std::int32_t> CategoryExpectedHits;  // responses expected to be in the category
  Array1<std::int32_t> CategoryMatches;       // those of them that are
  // Landmarks, as distances from the item: where the expected score is k - 0.5 and k, and where
  // category k or above is as likely as not.
  Array1<double> CategoryHalfPoint;
  Array1<double> CategoryMeasurePoint;
  Array1<double> CategoryThurstone;

  // Persons, 1..NPERS. What else belongs to a person stands in the person work record.
  Array1<float> PersonMeasure;
  Array1<float> PersonTotalScore;
  Array1<float> PersonTotalCount;
  Array1<float> PersonInfit;
  Array1<float> PersonOutfit;
  Array1<float> PersonInfitZ;
  Array1<float> PersonOutfitZ;
  Array1<StatusByte> PersonStatus;
};

}  // namespace vardento
