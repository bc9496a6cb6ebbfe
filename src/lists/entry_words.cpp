#include "lists/entry_words.h"

#include <algorithm>

#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

EntryWords ItemWords(const Run& run) {
  return {std::string(TrimRight(run.settings.ITEM_LABEL)),
          std::string(TrimRight(run.settings.ITEMS_LABEL))};
}

EntryWords PersonWords(const Run& run) {
  return {std::string(TrimRight(run.settings.PERSON_LABEL)),
          std::string(TrimRight(run.settings.PERSONS_LABEL))};
}

bool AskYes(Run& run, std::string_view prompt) {
  const std::string answer = AskLine(run, prompt);
  return !answer.empty() && UpperCase(answer.front()) == 'Y';
}

std::string AskName(Run& run, std::string_view prompt) {
  return std::string(Trim(AskLine(run, prompt)));
}

EntryRange OrderRange(int first, int last, int count) {
  if (last == 0) last = first;
  if (last < first) std::swap(first, last);
  return {std::max(first, 1), std::min(last, count)};
}

}  // namespace vardento
