#include "control/item_lists.h"

#include <algorithm>

#include "control/control_line.h"
#include "control/item_specifications.h"
#include "control/parse_number.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kListLineLength = 80;

std::string CleanListLine(std::string_view line) {
  std::string text(line);
  RemoveComment(text);
  for (char& c : text) {
    if (c == '"' || c == ',' || c == '+' || static_cast<unsigned char>(c) < ' ') c = ' ';
  }
  return text;
}

// One of the four variables that a list can give.
struct PerItemVariable {
  std::string_view name;
  std::string_view problem;  // how its name stands in the message for a faulty line
  int ControlSettings::*state;
  std::string ControlSettings::*fileName;
  std::string ControlSettings::*text;
};

[[noreturn]] void FailList(Run& run, const std::string& name, int status) {
  run.RunIoStatus = status;
  FatalFileFailure(run, name, 'I');
}

void StoreListLine(Run& run, const PerItemVariable& variable, const std::string& line) {
  ItemListEntry entry;
  const ItemListLine kind = ParseItemListLine(line, run.settings.NI, entry);
  if (kind == ItemListLine::Faulty) {
    ReportMessage(run, "Value problem in " + std::string(variable.problem) + "=*: " + line);
    FailList(run, run.settings.*variable.fileName, kIoOk);
  }
  if (kind == ItemListLine::Blank) return;
  std::string& text = run.DraftSettings().*variable.text;
  for (int item = entry.first; item <= entry.last; ++item) {
    text[static_cast<std::size_t>(item) - 1] = entry.value;
  }
}

// Reads the list into one character for each item. It needs no reduction from wider fields, as
// texts of the Control File do.
void ReadPerItemList(Run& run, const PerItemVariable& variable) {
  std::string& name = run.DraftSettings().*variable.fileName;
  std::string& text = run.DraftSettings().*variable.text;
  WriteConsole(run, " Processing " + std::string(variable.name) + "= from " + name);
  text.assign(static_cast<std::size_t>(run.settings.NI), ' ');
  if (name.empty()) return;  // a sub-list without lines
  PrepareFile(run, name, std::string(variable.name) + "=");
  TextReader reader;
  int status = reader.Open(name);
  if (status != kIoOk) FailList(run, name, status);
  std::string line;
  while ((status = reader.ReadLine(line, kListLineLength)) == kIoOk) {
    StoreListLine(run, variable, line);
  }
  if (status != kIoEndOfFile) FailList(run, name, status);
  run.RunIoStatus = kIoOk;
}

// GROUPS= as a list is GROUPS=0 when no item shares a group, and no GROUPS= when it says nothing.
int GroupsStateOfList(std::string_view text) {
  if (text.find_first_not_of(' ') == std::string_view::npos) return PerItem::None;
  const bool alone = text.front() == '0' && text.find_first_not_of("0 ") == std::string_view::npos;
  return alone ? PerItem::Single : PerItem::Text;
}

}  // namespace

ItemListLine ParseItemListLine(std::string_view line, int NI, ItemListEntry& entry) {
  const std::string cleaned = CleanListLine(line);
  std::string_view text = Trim(cleaned);
  if (text.empty()) return ItemListLine::Blank;
  int first = ParseCount(TakeDigits(text));
  if (first < 0) return ItemListLine::Faulty;
  int last = first;
  std::string_view behind = Trim(text);
  if (behind.starts_with('-')) {
    text = Trim(behind.substr(1));
    last = ParseCount(TakeDigits(text));
    if (last < 0) return ItemListLine::Faulty;
  }
  if (!text.starts_with(' ')) return ItemListLine::Faulty;
  if (first > last) std::swap(first, last);
  entry.first = std::max(first, 1);
  entry.last = std::min(last, NI);
  entry.value = Trim(text).front();
  return ItemListLine::Entry;
}

void ReadPerItemLists(Run& run) {
  using Settings = ControlSettings;
  static constexpr PerItemVariable kVariables[] = {
      {"GROUPS", "Group", &Settings::GROUPS, &Settings::GROUPS_FILE, &Settings::groupsText},
      {"MODELS", "MODEL", &Settings::MODELS, &Settings::MODELS_FILE, &Settings::modelsText},
      {"IREFER", "IREFER", &Settings::IREFER, &Settings::IREFER_FILE, &Settings::ireferText},
      {"RESCORE", "RESCORE", &Settings::RESCORE, &Settings::RESCORE_FILE, &Settings::rescoreText},
  };
  Settings& settings = run.DraftSettings();
  for (const PerItemVariable& variable : kVariables) {
    if (settings.*variable.state != PerItem::List) continue;
    ReadPerItemList(run, variable);
    settings.*variable.state = PerItem::Text;
    if (variable.state == &Settings::GROUPS) {
      settings.GROUPS = GroupsStateOfList(settings.groupsText);
    }
  }
}

}  // namespace vardento
