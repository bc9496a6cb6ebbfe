// Weights of items and persons (IWEIGHT=, PWEIGHT=) and the points that items are centred at
// (PIVOT=).
#include <algorithm>

#include "lists/entry_lists.h"
#include "lists/entry_words.h"
#include "lists/list_file.h"
#include "lists/list_line.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

[[noreturn]] void FailPivot(Run& run, std::string_view line) {
  FailRun(run, " PROBLEM WITH \"PIVOT=\": " + std::string(Trim(line)));
}

// False for a line that is no item and point. A point below 0 ends the run.
bool ApplyPivotLine(Run& run, std::string& line) {
  const std::string shown = line;
  std::replace(line.begin(), line.end(), '+', ' ');
  int first = 0, last = 0;
  float pivot = 0;
  bool failed = false;
  ParseListLine(line, first, pivot, failed, last);
  if (first == 0 || failed) return false;
  if (pivot < 0) FailPivot(run, shown);
  const EntryRange items = OrderRange(first, last, run.settings.NI);
  for (int i = items.first; i <= items.last; ++i) {
    const int group = run.arrays.ItemGroup[i];
    if (run.given.GroupPivotFlag[group]) continue;
    run.given.GroupPivot[group] = pivot;
    run.given.GroupPivotFlag[group] = true;
  }
  return true;
}

// True when the list changes any weight.
bool ReadWeightList(Run& run, Array1<float> weights, std::string fileName, const EntryWords& words,
                    std::string_view variable) {
  std::fill(weights.begin(), weights.end(), 1.0F);
  ListFile list(run, variable);
  list.OpenOrEnd(fileName, "Edit " + words.pluralLabel + " Anchor " + std::string(variable) + "=",
                 " Processing " + words.pluralLabel + " Weights from: ");
  bool changed = false;
  std::string line;
  while (list.Next(line, kEntryRow)) {
    int first = 0, last = 0;
    float weight = 0;
    bool failed = false;
    ParseListLine(line, first, weight, failed, last);
    if (first == 0 || failed || weight < 0) {
      list.Refuse();
      continue;
    }
    const EntryRange range = OrderRange(first, last, weights.Size());
    for (int entry = range.first; entry <= range.last; ++entry) weights[entry] = weight;
    changed = changed || (weight != 1.0F && range.first <= range.last);
  }
  return changed;
}

}  // namespace

void ReadPivots(Run& run) {
  std::fill(run.given.GroupPivotFlag.begin(), run.given.GroupPivotFlag.end(), false);
  std::string name = run.settings.PIVOT;
  if (TrimRight(name).empty()) return;
  ListFile list(run, "PIVOT");
  list.OpenOrEnd(name, "Edit pivot file PIVOT =", " Processing Pivots from: ");
  std::string line;
  while (list.Next(line, kEntryRow)) {
    if (!ApplyPivotLine(run, line)) list.Refuse();
  }
}

void ReadWeights(Run& run) {
  GivenEntries& given = run.given;
  if (given.HasPersonWeights() &&
      !ReadWeightList(run, given.PersonWeight, run.inForce.PWEIGHT, PersonWords(run), "PWEIGHT")) {
    given.PersonWeight = {};
  }
  if (given.HasItemWeights() &&
      !ReadWeightList(run, given.ItemWeight, run.inForce.IWEIGHT, ItemWords(run), "IWEIGHT")) {
    given.ItemWeight = {};
  }
}

}  // namespace vardento
