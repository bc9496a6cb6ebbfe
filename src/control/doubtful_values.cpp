#include "control/doubtful_values.h"

#include <algorithm>
#include <cmath>

#include "control/parse_number.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kShownLength = 80;
constexpr int kShortFlags = 8;

// "LCONV=1e-3"
std::string Shown(const KeywordCall& call) {
  return call.keyword + "=" + call.value.substr(0, kShownLength);
}

template <class T>
T Stored(const KeywordCall& call) {
  return call.Settings().*std::get<T ControlSettings::*>(call.row.target);
}

// The number used, unless it is the one that was written. A sign means nothing where sizes are
// stored, and an integer was rounded when it was read.
std::string OtherNumber(const KeywordCall& call) {
  const float stored = call.row.kind == KeywordKind::Integer ? static_cast<float>(Stored<int>(call))
                                                             : Stored<float>(call);
  const bool isSize = call.row.treatment == StoreAbsolute;
  const std::string_view value = call.value;
  const bool textIsLeft = !Trim(value.substr(LeadingNumber(value).size())).empty();
  if (!textIsLeft && stored == (isSize ? std::fabs(call.number) : call.number)) return "";
  return ShortestText(stored);
}

bool IsFlag(const KeywordRow& row, char c) {
  return std::string_view("Yy1Nn0 ").find(c) != std::string_view::npos ||
         row.letters.find(c) != std::string_view::npos;
}

// A text of flags is used up to the length of its variable. Short ones are shown as they are
// stored, the long one of the Tables as far as it was written.
std::string OtherFlags(const KeywordCall& call) {
  const std::string value = call.value.substr(0, static_cast<std::size_t>(call.row.length));
  const auto isFlag = [&](char c) { return IsFlag(call.row, c); };
  if (std::all_of(value.begin(), value.end(), isFlag)) return "";
  const std::string& stored = Stored<std::string>(call);
  return call.row.length <= kShortFlags ? stored : stored.substr(0, value.size());
}

// What is used in the place of the value; empty when it is used as it was written.
std::string OtherValue(const KeywordCall& call) {
  switch (call.row.kind) {
    case KeywordKind::Real:
    case KeywordKind::Integer:
      return OtherNumber(call);
    case KeywordKind::Flag:
    case KeywordKind::Choice:
      return IsFlag(call.row, call.value.front()) ? "" : "N";
    case KeywordKind::Flags:
      return OtherFlags(call);
    default:
      return "";
  }
}

}  // namespace

void NoteValue(KeywordCall& call) {
  std::vector<Doubt>& doubts = call.state.doubts;
  if (call.row.target.index() == 0) return;  // nothing is stored
  std::erase_if(doubts, [&](const Doubt& doubt) { return doubt.target == call.row.target; });
  const std::string other = OtherValue(call);
  if (other.empty()) return;
  doubts.push_back({call.row.target, call.state.place, Shown(call) + " READ AS " + other});
}

void NoteUnusedLine(KeywordCall& call, std::string_view reason) {
  call.state.doubts.push_back(
      {{}, call.state.place, Shown(call).append(" NOT USED: ").append(reason)});
}

void TellDoubts(Run& run, const ControlState& state) {
  for (const Doubt& doubt : state.doubts) Warn(run, doubt.place, doubt.text);
}

}  // namespace vardento
