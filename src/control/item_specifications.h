// What is said item by item: groups, models, rescoring, keys and value tables, and the one routine
// that turns a response's category number into a score.
#pragma once

#include <string>
#include <string_view>

#include "run/run.h"

namespace vardento {

inline constexpr int kMissingScore = 255;

// Reads the sub-lists or files of GROUPS=, MODELS=, IREFER=, RESCORE= that are in state List.
void ReadPerItemLists(Run& run);
// Upper case and one character per item for the four texts; RESCORE= then holds "1" and "0".
void NormalisePerItemTexts(Run& run);
// Groups the items by GROUPS=: fills `itemGroup` (1..NGROUPS, in the order of the sorted group
// characters, single items behind them) and run.NGROUPS.
void AssignGroups(Run& run, Array1<std::int32_t> itemGroup);
// Sets each group's model letter from MODELS=; needs the group block.
void AssignModels(Run& run);
// MODELS= per item without GROUPS= groups each item by itself; checks a single model letter.
void DefaultModels(Run& run);
// The keys, IREFER= and rescoring that are in force once all texts are known.
ScoringInForce DecideRescoring(const ControlSettings& settings);

// The score, 0 to 254, or 255 for missing, of category number c (0: a code not in CODES=) on an
// item.
int ScoreResponse(const ControlSettings& settings, const ScoringInForce& scoring,
                  int categoryNumber, int item);

}  // namespace vardento
