// What each keyword does with its value: the treatments that the rows of the keyword table name.
#pragma once

#include <string>

#include "control/control_source.h"
#include "control/keyword_table.h"

namespace vardento {

// One keyword being applied.
struct KeywordCall {
  Run& run;
  ControlState& state;
  const KeywordRow& row;
  const std::string& keyword;
  const std::string& value;
  float number = 0;  // of the stages of numbers; rounded for integers

  ControlSettings& Settings() const;
  bool IsBlank() const;
};

// Applies the row: its treatment or, without one, what its kind tells.
void ApplyKeyword(KeywordCall& call);

// Treatments of texts and states.
void OpenSupplementFile(KeywordCall& call);
void CountKey(KeywordCall& call);
void CountIvalue(KeywordCall& call);
void StoreBatch(KeywordCall& call);
void StoreCodes(KeywordCall& call);
void StoreCurves(KeywordCall& call);
void StoreUpperCase(KeywordCall& call);
void StoreGroupsState(KeywordCall& call);
void StoreIreferState(KeywordCall& call);
void StoreModelsState(KeywordCall& call);
void StoreRescoreState(KeywordCall& call);
void StoreLocal(KeywordCall& call);
void StoreMask(KeywordCall& call);

// Treatments of numbers.
void StoreAbsolute(KeywordCall& call);
void StoreItemMean(KeywordCall& call);
void StorePersonMean(KeywordCall& call);
void StoreScale(KeywordCall& call);
void AcceptOnly(KeywordCall& call);

// Treatments of the second pass.
void StoreKey(KeywordCall& call);
void StoreIvalue(KeywordCall& call);
void StorePerItemText(KeywordCall& call);

}  // namespace vardento
