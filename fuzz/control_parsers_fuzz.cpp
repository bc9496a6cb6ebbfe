// The parsers of single texts: data formats and records through them, lines of per-item lists,
// numbers, control lines.
#include <stdlib.h>

#include <cstdint>
#include <string>

#include "control/control_line.h"
#include "control/data_format.h"
#include "control/item_lists.h"
#include "control/parse_number.h"
#include "support/temp_directory.h"

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

void ReadListLine(const std::string& text) {
  ItemListEntry entry;
  if (ParseItemListLine(text, 100, entry) != ItemListLine::Entry) return;
  if (entry.first < 1 || entry.last > 100) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const int xwide = data[0] % 4 + 1;
  std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  ReadThroughFormat(text, xwide);
  ReadListLine(text);
  float value = 0;
  bool failed = false;
  ParseNumber(LeadingNumber(text), value, failed);
  CleanControlLine(text);
  const ControlLineParts parts = SplitControlLine(text);
  if (parts.kind == ControlLineParts::Kind::Assignment && parts.value.empty()) abort();
  return 0;
}
