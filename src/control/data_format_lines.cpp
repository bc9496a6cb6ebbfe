#include "control/data_format_lines.h"

#include <algorithm>

#include "control/data_format.h"
#include "platform/io_status.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

[[noreturn]] void FailRecord(Run& run, std::string_view name, int status) {
  ReportMessage(run, " FAILURE TO READ CORRECTLY A \"" + std::string(name) + "\" RECORD.");
  ReportMessage(run, " CHECK FOR CORRECT SEQUENCE IN CONTROL FILE:");
  ReportMessage(run, "   SEE APPENDIX 2 IN USER'S GUIDE");
  run.RunIoStatus = status;
  FatalFileFailure(run, run.startUp.ControlFileName, 'R');
}

// Reads the whole record, so that what follows begins where the next record does.
IoStatus ReadThroughFormat(Run& run, std::string& record) {
  const ControlSettings& settings = run.settings;
  DataFormat format;
  ParseDataFormat(settings.FORMAT, settings.XWIDE, format);
  std::string line;
  int linesRead = 0;
  return ReadFormattedRecord(run.input.control, format, settings.XWIDE, record, line, linesRead);
}

void ReadGroupsRecord(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  ReadDataFormatLine(run, "GROUPS", settings.groupsText);
  const std::string_view text = Trim(settings.groupsText);
  settings.GROUPS = text.empty() ? PerItem::None : text == "0" ? PerItem::Single : PerItem::Text;
}

void ReadModelsRecord(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  ReadDataFormatLine(run, "MODELS", settings.modelsText);
  const bool single = TrimRight(settings.modelsText).size() <= 1;
  settings.MODELS = single ? PerItem::Single : PerItem::Text;
  settings.MODEL_LETTER =
      single && !settings.modelsText.empty() ? settings.modelsText.front() : ' ';
}

void ReadRescoreRecord(Run& run) {
  ControlSettings& settings = run.DraftSettings();
  ReadDataFormatLine(run, "RESCOR", settings.rescoreText);
  const std::string_view text = Trim(settings.rescoreText);
  settings.RESCORE = text.empty() ? PerItem::None : text == "2" ? PerItem::Single : PerItem::Text;
}

void ReadKeyRecord(Run& run, int key) {
  const auto place = static_cast<std::size_t>(key) - 1;
  const std::string number = IntegerText(key);
  ControlSettings& settings = run.DraftSettings();
  ReadDataFormatLine(run, "KEY" + number, settings.keyStrings[place]);
  settings.keyScores[place] = key;
  WriteConsole(run, " KEY" + number + " processed in data format");
}

}  // namespace

void ReadDataFormatLine(Run& run, std::string_view name, std::string& destination) {
  const ControlSettings& settings = run.settings;
  const bool formatted = settings.formatFields > 0;
  std::string& record = run.input.ControlLine;
  record.clear();
  const int status =
      formatted ? ReadThroughFormat(run, record) : run.input.control.ReadLine(record);
  if (status != kIoOk) FailRecord(run, name, status);
  const auto xwide = static_cast<std::size_t>(settings.XWIDE);
  const auto before = static_cast<std::size_t>(settings.ITEM1 - 1) * (formatted ? xwide : 1);
  const std::size_t width = static_cast<std::size_t>(settings.NI) * xwide;
  destination = record.substr(std::min(before, record.size()), width);
  destination.resize(width, ' ');
}

void ReadDataFormatLines(Run& run) {
  if (run.settings.GRPFROM) ReadGroupsRecord(run);
  if (run.settings.MODFROM) ReadModelsRecord(run);
  if (run.settings.RESFROM) ReadRescoreRecord(run);
  for (int key = 1; key <= run.settings.KEYFROM; ++key) ReadKeyRecord(run, key);
}

}  // namespace vardento
