#include "control/item_specifications.h"

#include <algorithm>

#include "control/parse_number.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::string_view kValidForms =
    " Valid are \"one character per XWIDE=\" or \"one character per item\"";

// A text in hand with its form: one character, or one field of XWIDE characters, for each item.
struct PerItemText {
  std::string_view name;
  std::string& text;
  std::size_t items;
  std::size_t xwide;
};

[[noreturn]] void FailField(Run& run, const PerItemText& t, std::size_t item,
                            const std::string& field) {
  ReportMessage(run, " XWIDE=" + IntegerText(static_cast<int>(t.xwide)) +
                         "' WITH MORE THAN ONE NON-BLANK PER FIELD IN \"" + std::string(t.name) +
                         "=\" AT ITEM " + IntegerText(static_cast<int>(item)) +
                         " WITH VALUE: " + field);
  if (t.name == "GROUPS") {
    ReportMessage(run, kValidForms);
    FailRun(run, " NOTE: FOR GROUPS NUMBERED 10, 11 AND ABOVE, SPECIFY GROUPS= A  B ETC.");
  }
  FailRun(run, kValidForms);
}

// The field of an item begins at place XWIDE x item - 1, counted from 1. That is the item's own
// field for XWIDE=2; wider fields are read from the same place, their values not at the left end.
std::string ReduceFields(Run& run, const PerItemText& t) {
  std::string reduced(t.items, ' ');
  for (std::size_t item = 1; item <= t.items; ++item) {
    const std::size_t place = std::min(t.xwide * item - 2, t.text.size());
    const std::string field = t.text.substr(place, t.xwide);
    const std::string_view value = Trim(field);
    if (static_cast<std::size_t>(std::count(field.begin(), field.end(), ' ')) + 1 < field.size()) {
      FailField(run, t, item, field);
    }
    if (!value.empty()) reduced[item - 1] = value.front();
  }
  return reduced;
}

std::string CutToItems(Run& run, const PerItemText& t) {
  const std::size_t length = TrimRight(t.text).size();
  if (length > t.items) {
    ReportMessage(
        run, " " + std::string(t.name) + "= has one \"one character per item\" format, but is " +
                 IntegerText(static_cast<int>(length - t.items)) + " characters too long");
    FailRun(run, kValidForms);
  }
  return t.text.substr(0, t.items);
}

void NormalisePerItemText(Run& run, std::string_view name, int state, std::string& text) {
  if (state != PerItem::Text) return;
  const PerItemText t{name, text, static_cast<std::size_t>(run.settings.NI),
                      static_cast<std::size_t>(run.settings.XWIDE)};
  text = UpperCase(text);
  // A text with one character for each item is in its final form: it came from a list.
  if (text.size() > t.items) {
    const bool fields = std::string_view(text).substr(0, t.xwide).find(' ') != std::string::npos;
    text = fields ? ReduceFields(run, t) : CutToItems(run, t);
  }
  text.resize(t.items, ' ');
}

}  // namespace

void NormalisePerItemTexts(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  NormalisePerItemText(run, "MODELS", settings.MODELS, settings.modelsText);
  NormalisePerItemText(run, "GROUPS", settings.GROUPS, settings.groupsText);
  NormalisePerItemText(run, "RESCORE", settings.RESCORE, settings.rescoreText);
  NormalisePerItemText(run, "IREFER", settings.IREFER, settings.ireferText);
  if (settings.RESCORE == PerItem::Text) {
    settings.rescoreText = YesNoString(settings.rescoreText, settings.NI);
  }
}

ScoringInForce DecideRescoring(const ControlSettings& settings) {
  ScoringInForce scoring{settings.NKEY,   settings.keyStrings, settings.keyScores,
                         settings.IREFER, settings.ireferText, false};
  if (settings.NIVALUE == 0) {
    scoring.IREFER = PerItem::None;
  } else if (settings.IREFER != PerItem::Text && settings.GROUPS == PerItem::Text) {
    scoring.ireferText = settings.groupsText;
    const bool complete = settings.groupsText.find(' ') == std::string::npos;
    scoring.IREFER = complete ? PerItem::Text : PerItem::None;
  }
  scoring.rescoringActive =
      scoring.NKEY > 0 || settings.RESCORE > PerItem::None || scoring.IREFER > PerItem::None;
  return scoring;
}

}  // namespace vardento
