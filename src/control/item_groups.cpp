// Items in groups that share a rating scale, and the model of each group.
#include <algorithm>

#include "control/item_specifications.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::string_view kModels = "RSF";

bool IsAlone(char c) { return c == ' ' || c == '0'; }

// The letters that name groups, each once, ascending by character value.
std::string SortedLetters(std::string_view text) {
  std::string letters;
  for (char c : text) {
    if (!IsAlone(c) && letters.find(c) == std::string::npos) letters += c;
  }
  std::sort(letters.begin(), letters.end(), [](char a, char b) {
    return static_cast<unsigned char>(a) < static_cast<unsigned char>(b);
  });
  return letters;
}

void GroupByLetters(Run& run, Array1<std::int32_t> itemGroup) {
  std::string& text = run.DraftSettings().groupsText;
  text.resize(static_cast<std::size_t>(run.settings.NI), ' ');
  const std::string letters = SortedLetters(text);
  run.NGROUPS = static_cast<int>(letters.size());
  for (int item = 1; item <= run.settings.NI; ++item) {
    char& letter = text[static_cast<std::size_t>(item) - 1];
    if (IsAlone(letter)) {
      letter = '0';
      itemGroup[item] = ++run.NGROUPS;
    } else {
      itemGroup[item] = static_cast<std::int32_t>(letters.find(letter)) + 1;
    }
  }
}

[[noreturn]] void FailModel(Run& run, char letter) {
  FailRun(run, " INVALID MODEL OF " + std::string(1, letter) + " IN MODELS");
}

void CheckModel(Run& run, char letter) {
  if (kModels.find(letter) == std::string_view::npos) FailModel(run, letter);
}

// The letter that a group has got, and the item that gave it.
struct GroupLetter {
  char letter = ' ';
  int item = 0;
};

void AssignItemModel(Run& run, int item, char letter, GroupLetter& group) {
  CheckModel(run, letter);
  if (group.letter != ' ' && group.letter != letter) {
    FailRun(run, " TWO MODEL TYPES DEFINED IN SAME GROUP: \"" + std::string(1, group.letter) +
                     "\" AT ITEM " + IntegerText(group.item) + " AND \"" + std::string(1, letter) +
                     "\" AT ITEM " + IntegerText(item));
  }
  group = {letter, item};
}

}  // namespace

void AssignGroups(Run& run, Array1<std::int32_t> itemGroup) {
  ControlSettings& settings = run.DraftSettings();
  const auto items = static_cast<std::size_t>(settings.NI);
  if (settings.GROUPS == PerItem::None) {
    std::fill(itemGroup.begin(), itemGroup.end(), 1);
    settings.groupsText.assign(items, '1');
    run.NGROUPS = 1;
  } else if (settings.GROUPS == PerItem::Single) {
    for (int item = 1; item <= settings.NI; ++item) itemGroup[item] = item;
    settings.groupsText.assign(items, '0');
    run.NGROUPS = settings.NI;
  } else {
    GroupByLetters(run, itemGroup);
  }
}

void AssignModels(Run& run) {
  const ControlSettings& settings = run.settings;
  const bool perItem = settings.MODELS == PerItem::Text;
  Vector1<GroupLetter> groups(run.NGROUPS, {perItem ? ' ' : settings.MODEL_LETTER, 0});
  if (perItem) {
    const int given = std::min(settings.NI, static_cast<int>(settings.modelsText.size()));
    for (int item = 1; item <= given; ++item) {
      const char letter = settings.modelsText[static_cast<std::size_t>(item) - 1];
      if (letter != ' ') AssignItemModel(run, item, letter, groups[run.arrays.ItemGroup[item]]);
    }
  }
  for (int g = 1; g <= run.NGROUPS; ++g) {
    const char letter = groups[g].letter;
    run.arrays.GroupModel[g] = letter == ' ' ? Model::Rating : Model{letter};
  }
}

void DefaultModels(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  if (settings.MODELS == PerItem::Text) {
    if (settings.GROUPS == PerItem::None) settings.GROUPS = PerItem::Single;
    return;
  }
  if (settings.MODEL_LETTER == ' ') settings.MODEL_LETTER = 'R';
  settings.MODEL_LETTER = UpperCase(settings.MODEL_LETTER);
  CheckModel(run, settings.MODEL_LETTER);
}

}  // namespace vardento
