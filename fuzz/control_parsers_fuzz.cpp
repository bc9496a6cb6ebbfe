// The parsers of single texts: data formats and records through them, lines of per-item and entry
// lists, masks, numbers, control lines.
#include <stdlib.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "control/control_line.h"
#include "control/data_format.h"
#include "control/item_lists.h"
#include "control/parse_number.h"
#include "lists/label_mask.h"
#include "lists/list_line.h"
#include "support/temp_directory.h"
#include "text/number_text.h"

using namespace vardento;

namespace {

// The first line is a format, the rest the file that is read through it.
void ReadThroughFormat(const std::string& text, int xwide) {
  static const test::TempDirectory directory;
  const std::size_t end = std::min(text.find('\n'), text.size());
  DataFormat format;
  if (!ParseDataFormat(text.substr(0, end), xwide, format).empty()) return;
  TextReader reader;
  if (reader.Open(directory.Write("data.txt", text.substr(end))) != 0) abort();
  std::string record, line;
  int linesRead = 0;
  while (ReadFormattedRecord(reader, format, xwide, record, line, linesRead) == 0) {
    if (record.size() != static_cast<std::size_t>(format.fields * xwide)) abort();
  }
}

void ReadItemListLine(const std::string& text) {
  ItemListEntry entry;
  if (ParseItemListLine(text, 100, entry) != ItemListLine::Entry) return;
  if (entry.first < 1 || entry.last > 100) abort();
}

void ReadEntryListLine(std::string text) {
  if (IsColumnHead(text) && !Trim(text).empty() && text.find('"') == std::string::npos) abort();
  if (CleanListLine(text) && Trim(text).empty()) abort();
  int first = 0, last = 0;
  float value = 0;
  bool failed = false;
  ParseListLine(text, first, value, failed, last);
  if (first < 0 || last < 0 || (first == 0 && !failed) || !std::isfinite(value)) abort();
}

// The mask stands up to the first line end, the label behind it.
void MatchTexts(const std::string& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string mask = text.substr(0, end);
  const int result = MatchLabel(mask, text.substr(end));
  if (result == 0 || result > 2 || result < -4) abort();
  if (result > 0 && mask.find('*') == std::string::npos && result != 2) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const int xwide = data[0] % 4 + 1;
  std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  ReadThroughFormat(text, xwide);
  ReadItemListLine(text);
  ReadEntryListLine(text);
  MatchTexts(text);
  float value = 0;
  bool failed = false;
  ParseNumber(LeadingNumber(text), value, failed);
  CleanControlLine(text);
  const ControlLineParts parts = SplitControlLine(text);
  if (parts.kind == ControlLineParts::Kind::Assignment && parts.value.empty()) abort();
  return 0;
}
