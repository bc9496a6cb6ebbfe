#include "control/control_reader.h"

#include <algorithm>

#include "control/check_settings.h"
#include "control/control_pass.h"
#include "control/data_format_lines.h"
#include "control/parse_number.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kUnusableKeyScore = 255;

void RewindControlFile(Run& run) {
  run.RunIoStatus = run.input.control.Rewind();
  if (run.RunIoStatus == kIoOk) return;
  const std::string& name = run.startUp.ControlFileName;
  ReportMessage(run, " FILE FAILURE ON REWIND FOR " + name);
  FatalFileFailure(run, name, 'R');
}

void ClearPerItemValues(ControlSettings& settings) {
  const auto keys = static_cast<std::size_t>(settings.NKEY);
  settings.keyScores.assign(keys, -1);
  settings.keyStrings.assign(keys, {});
  settings.NIVALUE = 0;
  settings.ivalueTables.clear();
}

int ScoreField(std::string_view field) {
  float value = 0;
  bool failed = false;
  ParseNumber(Trim(field), value, failed);
  if (failed || field.find('.') != std::string_view::npos || value < 0 ||
      value > kUnusableKeyScore) {
    return kUnusableKeyScore;
  }
  return static_cast<int>(value);
}

// The scores that KEYSCR= gives to the keys that were given.
void SetKeyScores(ControlSettings& settings) {
  if (Trim(settings.KEYSCR).empty()) return;
  const std::string_view scores = settings.KEYSCR;
  const auto xwide = static_cast<std::size_t>(settings.XWIDE);
  for (std::size_t key = 0; key < settings.keyScores.size(); ++key) {
    if (settings.keyScores[key] < 0) continue;
    const std::size_t place = std::min(key * xwide, scores.size());
    settings.keyScores[key] = ScoreField(scores.substr(place, xwide));
  }
}

}  // namespace

void ReadControlVariables(Run& run) {
  WriteConsole(run, " Reading Control Variables ..");
  run.DraftSettings() = ControlSettings();
  run.DraftSettings().BATCH = run.batch;
  ReadControlPass(run, kFirstPass);
  CheckSettings(run);
}

bool NeedsSecondPass(const ControlSettings& settings) {
  return settings.NKEY > 0 || settings.NIVALUE > 0 || settings.GROUPS == PerItem::Text ||
         settings.MODELS == PerItem::Text || settings.RESCORE == PerItem::Text ||
         settings.IREFER == PerItem::Text;
}

void ReadPerItemVariables(Run& run) {
  WriteConsole(run, " Reading KEYnn=, GROUPS= etc..");
  RewindControlFile(run);
  ClearPerItemValues(run.DraftSettings());
  ReadControlPass(run, kSecondPass);
  ReadDataFormatLines(run);
  SetKeyScores(run.DraftSettings());
}

}  // namespace vardento
