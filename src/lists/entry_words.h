// What the lists of entries share: the words of their side, their ranges and their questions.
#pragma once

#include <string>
#include <string_view>

#include "run/run.h"

namespace vardento {

// The words of one side, items or persons, or of another kind of entry.
struct EntryWords {
  std::string label, pluralLabel;
};

EntryWords ItemWords(const Run& run);
EntryWords PersonWords(const Run& run);

// The entries first..last of a line, in order, held at the count; none when first is above last.
struct EntryRange {
  int first = 1, last = 0;
};
// `last` of 0: a single entry.
EntryRange OrderRange(int first, int last, int count);

bool AskYes(Run& run, std::string_view prompt);
std::string AskName(Run& run, std::string_view prompt);

// The questions behind a list of anchors or of steps: a file, as often as the user likes, or lines
// typed, which end the dialogue. `verb` is "ANCHOR" or "DELETE".
template <class ApplyFile, class ApplyTyping>
void AskForEntries(Run& run, const EntryWords& words, const std::string& verb, ApplyFile applyFile,
                   ApplyTyping applyTyping) {
  if (run.batch) return;
  while (AskYes(run, " DO YOU WANT TO " + verb + " ANY " + words.pluralLabel + "? ")) {
    if (!AskYes(run, " DO YOU WANT TO READ THE " + words.pluralLabel + " TO " + verb +
                         " FROM A FILE? ")) {
      return applyTyping();
    }
    std::string name =
        AskName(run, "WHAT IS THE NAME OF THE " + words.label + " " + verb + " FILE? ");
    if (!name.empty()) applyFile(name);
  }
}

}  // namespace vardento
