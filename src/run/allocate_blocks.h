// The large memory of a run: how much each block takes, what is cut from it, and what is said when
// it can't be had.
#pragma once

#include <functional>
#include <string_view>

#include "run/run.h"

namespace vardento {

// Ends the run: so many bytes for `count` things, named by `word`, can't be had.
[[noreturn]] void FailForMemory(Run& run, std::size_t bytes, int count, std::string_view word);

// NI items.
void AllocateItemBlock(Run& run);
// Room for the per-item texts, keys and value tables. They live in the settings; their size is
// taken from the run's memory, and a refusal ends the run.
void ReserveItemTexts(Run& run);
// NGROUPS groups.
void AllocateGroupBlock(Run& run);
// One status byte for each of 1,000,000 persons, or of as many as can be had.
void AllocatePersonStatusTrial(Run& run);
// Frees the status bytes and keeps those that differ from the default in the work file "ZUU".
void HoldPersonStatus(Run& run);
// NCATS category positions and the MAXCAT + 1 categories of one person-item pair.
void AllocateCategoryBlock(Run& run);
// Bytes that the phases to come can't do without for so many persons.
using NeededBytes = std::function<std::size_t(int persons)>;
// NPERS persons; when memory does not reach for them and for what they need later, as many as can
// be kept, with NPERS reduced.
void AllocatePersonBlock(Run& run, const NeededBytes& neededLater);
// Takes the status bytes back from "ZUU"; persons behind them get the default.
void RestorePersonStatus(Run& run);
// Weights of persons (PWEIGHT=) and of items and groups (IWEIGHT=), when in use.
void AllocateWeightBlock(Run& run);

}  // namespace vardento
