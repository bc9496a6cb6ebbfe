// The settings that shape the scoring, shown on the console at the end of a good run.
#include <string>
#include <string_view>

#include "control/control_reader.h"
#include "run/messages.h"
#include "run/status.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kLineLength = 501;

void Echo(Run& run, std::string_view text) { WriteConsole(run, text.substr(0, kLineLength)); }

void EchoCodes(Run& run) {
  const std::string& codes = run.settings.CODES;
  const bool quoted = codes.find(' ') != std::string::npos;
  Echo(run, quoted ? " CODES =\"" + codes + "\"" : " CODES = " + codes);
}

// The numbers of the deleted entries, runs of neighbours as "a-b"; no line when there are none.
void EchoDeletions(Run& run, std::string text, Array1<StatusByte> status) {
  const std::size_t start = text.size();
  for (int entry = 1; entry <= status.Size() && text.size() < kLineLength; ++entry) {
    if (status[entry] != Status::Deleted) continue;
    const int first = entry;
    while (entry < status.Size() && status[entry + 1] == Status::Deleted) ++entry;
    text += " " + IntegerText(first);
    if (entry > first) text += "-" + IntegerText(entry);
  }
  if (text.size() > start) Echo(run, text);
}

}  // namespace

void EchoSettings(Run& run) {
  const ControlSettings& settings = run.settings;
  EchoCodes(run);
  if (settings.RESCORE == PerItem::Text) Echo(run, "RESCOR = " + settings.rescoreText);
  for (const IvalueRow& row : settings.ivalueTables) {
    Echo(run, "IVALUE" + std::string(1, row.tag) + "= " + row.codes);
  }
  const ScoringInForce& scoring = run.inForce.scoring;
  if (scoring.IREFER == PerItem::Text) Echo(run, "IREFER = " + scoring.ireferText);
  if (settings.GROUPS == PerItem::Single) Echo(run, "GROUPS = 0");
  if (settings.GROUPS == PerItem::Text) Echo(run, "GROUPS = " + settings.groupsText);
  EchoDeletions(run, " IDFILE=*", run.arrays.ItemStatus);
  EchoDeletions(run, " PDFILE=*", run.arrays.PersonStatus);
}

}  // namespace vardento
