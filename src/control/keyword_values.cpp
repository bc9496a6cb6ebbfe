#include "control/keyword_values.h"

#include <algorithm>
#include <cmath>

#include "control/doubtful_values.h"
#include "control/parse_number.h"
#include "control/sub_lists.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kMaxCodesLength = 1000;
constexpr std::size_t kMaxIvalueTables = 256;

std::string CutText(std::string_view text, int length) {
  return std::string(TrimRight(text.substr(0, static_cast<std::size_t>(length))));
}

template <class T>
T& Target(const KeywordCall& call) {
  return call.Settings().*std::get<T ControlSettings::*>(call.row.target);
}

std::string FileNameOf(std::string_view value) {
  value = Trim(value);
  if (value.starts_with('*')) value.remove_prefix(1);
  return CutText(Trim(value), kFileNameLength);
}

// In a batch run, which ends at the first file that fails, the files of category and code labels
// are left to the checks, which name the variable too.
bool IsPreparedLater(const KeywordCall& call) {
  const std::string* target = &Target<std::string>(call);
  const bool labels = target == &call.Settings().CFILE || target == &call.Settings().CLFILE;
  return labels && call.run.batch;
}

void StoreListFile(KeywordCall& call) {
  const bool isList = Trim(call.value) == "*";
  if (call.state.ControlPass == kSecondPass) {
    if (isList) SkipSubList(call.run, call.state);
    return;
  }
  std::string& target = Target<std::string>(call);
  if (isList) {
    ReadSubList(call.run, call.state, target, call.row.listTag);
  } else {
    target = FileNameOf(call.value);
    if (!target.empty() && !HoldsFieldSpecification(target) && !IsPreparedLater(call)) {
      PrepareFile(call.run, target, std::string(call.row.name) + "=");
    }
    call.run.RunIoStatus = 0;
  }
  if (call.row.listState == nullptr) return;
  call.Settings().*call.row.listState = PerItem::List;
  if (call.row.listState == &ControlSettings::MODELS) call.Settings().MODEL_LETTER = ' ';
}

std::string FlagsOf(const KeywordCall& call) { return YesNoString(call.value, call.row.length); }

void StoreNumber(const KeywordCall& call, float number) {
  number = std::clamp(number, call.row.lowest, call.row.highest);
  if (call.row.kind == KeywordKind::Integer) {
    Target<int>(call) = static_cast<int>(number);
  } else {
    Target<float>(call) = number;
  }
}

// Characters of one text with a place for each item.
std::size_t PerItemWidth(const ControlSettings& settings) {
  return static_cast<std::size_t>(settings.NI) * static_cast<std::size_t>(settings.XWIDE);
}

}  // namespace

ControlSettings& KeywordCall::Settings() const { return run.DraftSettings(); }
bool KeywordCall::IsBlank() const { return Trim(value).empty(); }

void ApplyKeyword(KeywordCall& call) {
  if (call.row.treatment != nullptr) return call.row.treatment(call);
  switch (call.row.kind) {
    case KeywordKind::ListFile:
      return StoreListFile(call);
    case KeywordKind::File:
      Target<std::string>(call) = CutText(Trim(call.value), call.row.length);
      return;
    case KeywordKind::Text:
      Target<std::string>(call) = CutText(call.value, call.row.length);
      return;
    case KeywordKind::Flags:
      Target<std::string>(call) = call.IsBlank() ? "" : FlagsOf(call);
      return;
    case KeywordKind::Flag:
      Target<bool>(call) = YesNo(call.value.front()) == 'Y';
      return;
    case KeywordKind::Choice:
    case KeywordKind::Character:
      Target<char>(call) = call.value.front();
      return;
    case KeywordKind::Real:
    case KeywordKind::Integer:
      return StoreNumber(call, call.number);
    case KeywordKind::PerItem:
    case KeywordKind::Count:
    case KeywordKind::Ignored:
      return;  // their rows name a treatment
  }
}

void OpenSupplementFile(KeywordCall& call) {
  const std::string name = FileNameOf(call.value);
  call.Settings().SPFILE = name;
  if (!name.empty()) OpenSupplement(call.run, call.state, name);
}

void CountKey(KeywordCall& call) {
  const int key = KeyNumber(call.keyword);
  if (key < 1) return NoteUnusedLine(call, "NO KEY NUMBER");
  int& count = call.Settings().NKEY;
  count = std::max(count, key);
}

void CountIvalue(KeywordCall& call) {
  if (!call.IsBlank()) ++call.Settings().NIVALUE;
}

// Followed at once, so that a fault behind it is told where a batch run's faults are told. What the
// command line asked for at the start is not undone by the Control File.
void StoreBatch(KeywordCall& call) {
  const bool asked = YesNo(call.value.front()) == 'Y';
  call.Settings().BATCH = asked;
  if (asked != call.run.batch && (asked || call.state.enteredBatch)) {
    call.state.enteredBatch = asked;
    call.run.SetBatchMode(asked);
  }
}

void StoreCodes(KeywordCall& call) {
  call.Settings().CODES = call.value.substr(0, kMaxCodesLength);
  call.Settings().CODES_LENGTH = static_cast<int>(call.value.size());
}

// At least one curve is drawn.
void StoreCurves(KeywordCall& call) {
  const std::string curves = FlagsOf(call);
  Target<std::string>(call) = curves == "000" ? "100" : curves;
}

void StoreUpperCase(KeywordCall& call) { Target<char>(call) = UpperCase(call.value.front()); }

void StoreGroupsState(KeywordCall& call) {
  const std::string_view value = Trim(call.value);
  int& state = call.Settings().GROUPS;
  if (value.empty() || value == "*") {
    state = PerItem::None;
  } else {
    state = value == "0" ? PerItem::Single : PerItem::Text;
  }
}

void StoreIreferState(KeywordCall& call) {
  call.Settings().IREFER = call.IsBlank() ? PerItem::None : PerItem::Text;
}

void StoreModelsState(KeywordCall& call) {
  ControlSettings& settings = call.Settings();
  const bool single = TrimRight(call.value).size() <= 1;
  settings.MODELS = single ? PerItem::Single : PerItem::Text;
  settings.MODEL_LETTER = single ? call.value.front() : ' ';
}

void StoreRescoreState(KeywordCall& call) {
  int& state = call.Settings().RESCORE;
  if (call.IsBlank()) {
    state = PerItem::None;
  } else {
    state = call.value.front() == '2' ? PerItem::Single : PerItem::Text;
  }
}

void StoreLocal(KeywordCall& call) {
  const char value = call.value.front();
  call.Settings().LOCAL = value == 'L' || value == 'l' || value == '2' ? 'L' : value;
}

void StoreMask(KeywordCall& call) {
  std::string mask = call.IsBlank() ? "*" : call.value + "*";
  mask.resize(mask.find('*') + 1);
  Target<std::string>(call) = CutText(mask, call.row.length);
}

void StoreAbsolute(KeywordCall& call) { StoreNumber(call, std::fabs(call.number)); }

void StoreItemMean(KeywordCall& call) {
  call.Settings().UMEAN = call.number;
  call.Settings().UMEAN_IS_ITEM = true;
}

void StorePersonMean(KeywordCall& call) {
  call.Settings().UMEAN = call.number;
  call.Settings().UMEAN_IS_ITEM = false;
}

void StoreScale(KeywordCall& call) {
  Target<float>(call) = call.number == 0.0F ? 1.0F : call.number;
}

void AcceptOnly(KeywordCall&) {}

void StoreKey(KeywordCall& call) {
  ControlSettings& settings = call.Settings();
  const int key = KeyNumber(call.keyword);
  // A file that changed between the passes may hold more keys than were counted.
  if (key < 1 || key > settings.NKEY) return;
  const auto place = static_cast<std::size_t>(key) - 1;
  settings.keyStrings[place] = call.value.substr(0, PerItemWidth(settings));
  settings.keyScores[place] = key;
}

void StoreIvalue(KeywordCall& call) {
  ControlSettings& settings = call.Settings();
  if (call.IsBlank()) return;
  const auto length =
      static_cast<std::size_t>(settings.CATEGS) * static_cast<std::size_t>(settings.XWIDE);
  std::string codes = call.value;
  if (codes.size() > length) {
    FailRun(call.run, " IVALUE= LENGTH DOES NOT MATCH CODES= " + call.run.input.ControlLine);
  }
  codes.resize(length, '*');
  const char tag = call.keyword.back();
  std::vector<IvalueRow>& rows = settings.ivalueTables;
  const auto row =
      std::find_if(rows.begin(), rows.end(), [tag](const IvalueRow& r) { return r.tag == tag; });
  if (row != rows.end()) {
    row->codes = codes;
  } else if (rows.size() < kMaxIvalueTables) {
    rows.push_back({tag, codes});
  }
  settings.NIVALUE = static_cast<int>(rows.size());
}

void StorePerItemText(KeywordCall& call) {
  ControlSettings& settings = call.Settings();
  const std::string_view name = call.row.name;
  const auto store = [&](int state, std::string& text) {
    if (state != PerItem::Text) return;
    text = call.value.substr(0, PerItemWidth(settings));
    text.resize(PerItemWidth(settings), ' ');
  };
  if (name == "GROUPS") store(settings.GROUPS, settings.groupsText);
  if (name == "MODELS") store(settings.MODELS, settings.modelsText);
  if (name == "IREFER") store(settings.IREFER, settings.ireferText);
  if (name == "RESCORE") store(settings.RESCORE, settings.rescoreText);
}

}  // namespace vardento
