// The vocabulary of the Control File: every keyword in the order in which the reader tries them.
// The order is part of the design, since a short prefix hides a longer word behind it. The user's
// reference page is printed from the same rows.
#pragma once

#include <limits>
#include <span>
#include <string_view>
#include <variant>

#include "run/control_settings.h"

namespace vardento {

struct KeywordCall;

enum class KeywordStage {
  Files,     // both passes: a file name, or "*" and a sub-list
  Words,     // first pass: texts, flags, counts
  Reals,     // first pass: a number
  Integers,  // first pass: a number from -32000 to 32000, rounded
  PerItem,   // second pass, in the place of all stages but the first
};

enum class KeywordKind {
  ListFile,
  File,
  Flag,       // true for "Y", "y" and "1"
  Flags,      // a text of "1" and "0", a flag in each place
  Choice,     // a flag or one of the row's letters
  Character,  // one character as given
  Text,
  PerItem,  // how a per-item variable is given; the text itself is stored in the second pass
  Count,    // lines of this keyword are counted
  Real,
  Integer,
  Ignored,
};

// What must hold besides the prefix.
enum class KeywordCondition { None, ValueIsList, NotItem1, IsKeyLine, NotSpecification };

using KeywordTarget =
    std::variant<std::monostate, std::string ControlSettings::*, bool ControlSettings::*,
                 char ControlSettings::*, int ControlSettings::*, float ControlSettings::*>;

inline constexpr float kAnyNumber = std::numeric_limits<float>::max();

struct KeywordRow {
  std::string_view name;      // as users write it, without "="
  std::string_view prefixes;  // alternatives, separated by blanks
  KeywordStage stage = KeywordStage::Words;
  KeywordKind kind = KeywordKind::Text;
  KeywordTarget target{};
  std::string_view description{};
  // What is done with the value; null: it is stored as its kind tells.
  void (*treatment)(KeywordCall& call) = nullptr;
  KeywordCondition condition = KeywordCondition::None;
  int length = 0;                             // characters kept of a text
  std::string_view letters{};                 // of a choice: what it may be besides a flag
  float lowest = -kAnyNumber;                 // of a number: smaller ones count as this,
  float highest = kAnyNumber;                 // larger ones as that
  std::string_view listTag{};                 // two letters of a sub-list's work file
  int ControlSettings::*listState = nullptr;  // set to List by a sub-list or file
};

inline constexpr int kFileNameLength = 260;

// All rows, in order.
std::span<const KeywordRow> KeywordTable();

// The first row of the stage whose prefix begins `keyword` and whose condition holds; null if none.
const KeywordRow* FindKeyword(KeywordStage stage, std::string_view keyword, std::string_view value,
                              int pass);

// The number in a keyword such as "KEY12", 1 when there is none; -1 when something else stands
// there.
int KeyNumber(std::string_view keyword);

}  // namespace vardento
