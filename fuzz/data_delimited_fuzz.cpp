// Splits any bytes at any delimiter: fields stay inside the record and inside their places; field
// specifications of any bytes take what stands in the record, or nothing.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "data/delimited_record.h"
#include "data/field_specification.h"

namespace {

// The specification stands up to the first line end, the record behind it.
void ExtractFields(std::string_view text, char delimiter) {
  using namespace vardento;
  static SilentConsole console;
  static Run run(console);
  const std::size_t end = std::min(text.find('\n'), text.size());
  const FieldSpecification fields = ParseFieldSpecification(run, "PWEIGHT", text.substr(0, end));
  for (const std::string& value : {ExtractField(fields, text.substr(end)),
                                   ExtractDelimitedField(fields, text.substr(end), delimiter)}) {
    if (fields.IsEmpty() && !value.empty()) std::abort();
    if (!value.empty() && (value.front() == ' ' || value.back() == ' ')) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace vardento;
  if (size < 6) return 0;
  ControlSettings settings;
  settings.DELIM = static_cast<char>(bytes[0]);
  settings.NAME1 = 1 + bytes[1];
  settings.ITEM1 = 1 + bytes[2];
  settings.NI = 1 + bytes[3];
  settings.XWIDE = 1 + bytes[4] % 8;
  settings.NAMLEN = bytes[5] % 32;
  const std::string_view record(reinterpret_cast<const char*>(bytes) + 6, size - 6);
  ExtractFields(record, DelimiterOf(settings.DELIM));
  std::string label, codes;
  SplitDelimited(record, settings, label, codes);
  if (label.size() != static_cast<std::size_t>(settings.NAMLEN)) std::abort();
  if (codes.size() != static_cast<std::size_t>(settings.NI * settings.XWIDE)) std::abort();
  FieldCursor cursor(record, DelimiterOf(settings.DELIM));
  std::string_view field;
  std::size_t fields = 0, last = 0;
  while (cursor.Next(field)) {
    if (++fields > record.size() + 1 || cursor.FieldStart() < last) std::abort();
    last = cursor.FieldStart();
  }
  return 0;
}
