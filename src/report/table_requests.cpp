#include "report/table_requests.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>

#include "platform/io_status.h"
#include "platform/text_file.h"
#include "report/dispatch.h"
#include "report/table_list.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {
namespace {

constexpr int kLastTable = 40;
constexpr int kRequestLength = 80;
constexpr std::size_t kSlots = 8;

std::optional<float> NumberOf(std::string_view token) {
  float value = 0;
  const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
  if (error != std::errc() || end != token.data() + token.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

void GiveSlot(TableRequest& request, std::size_t slot, float value) {
  request.TableArgument[slot - 1] = value;
  request.TableArgumentSet[slot - 1] = 'U';
}

bool HasSubtableZero(int table) {
  const std::span<const TableRow> rows = RowsOf(table);
  return !rows.empty() && rows.front().subtable == 0;
}

// "6", "6.1", "1.0": the Table and, behind the point, its subtable.
void ParseTableNumber(TableRequest& request, std::string_view token) {
  const std::size_t point = token.find('.');
  const std::string_view whole = token.substr(0, point);
  int table = 0;
  const auto [end, error] = std::from_chars(whole.data(), whole.data() + whole.size(), table);
  if (error != std::errc() || end != whole.data() + whole.size()) table = 0;
  request.CurrentTable = table;
  if (point == std::string_view::npos) return;
  const std::optional<float> subtable = NumberOf(token.substr(point + 1));
  if (subtable && (*subtable > 0 || (*subtable == 0 && HasSubtableZero(table)))) {
    GiveSlot(request, 1, *subtable);
  }
}

// Takes the next token off the text; empty at its end.
std::string_view NextToken(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const std::string_view token = text.substr(0, text.find(' '));
  text.remove_prefix(token.size());
  return token;
}

void DispatchIfPrintable(ReportContext& context) {
  const int table = context.run.request.CurrentTable;
  if (table >= 1 && table <= kLastTable) DispatchTable(context);
}

bool StopWanted(const Run& run) { return run.StopRequest != 0; }

void RunTables(ReportContext& context) {
  const std::string& tables = context.run.inForce.TABLES;
  for (int table = 1; table <= kLastTable && !StopWanted(context.run); ++table) {
    const std::size_t place = static_cast<std::size_t>(table - 1);
    if (place >= tables.size() || tables[place] != '1') continue;
    context.run.request.CurrentTable = table;
    DispatchTable(context);
  }
}

void RunTableList(ReportContext& context) {
  Run& run = context.run;
  const std::string name = run.settings.TFILE;
  TextReader reader;
  // Every Table would lengthen a list that is the report itself: it would never end.
  const bool isReport = run.files.Find(name, FileUse::Report) != nullptr;
  int status = isReport ? kIoEndOfFile : reader.Open(name);
  if (status != kIoOk) {
    run.outputFailed = true;
    ReportMessage(run, "PROBLEM OPENING TABLE FILE: " + name);
    return;
  }
  std::string line;
  while ((status = reader.ReadLine(line, kRequestLength)) == kIoOk && !StopWanted(run)) {
    const std::string_view text = Trim(std::string_view(line).substr(0, line.find_first_of(";\"")));
    if (text.empty()) continue;
    ParseTableRequest(run.request, text);
    DispatchIfPrintable(context);
  }
  if (status == kIoOk || status == kIoEndOfFile) return;
  run.outputFailed = true;
  ReportMessage(run, " PROBLEM READING TABLE FILE: " + name);
}

}  // namespace

void ParseTableRequest(TableRequest& request, std::string_view line) {
  std::string text(line.substr(0, kRequestLength));
  for (char& c : text) {
    if (!((c >= '0' && c <= '9') || c == '-' || c == '.')) c = ' ';
  }
  request.ClearSlots();
  request.CurrentTable = 0;
  std::string_view rest = text;
  for (std::size_t slot = 1; slot <= kSlots; ++slot) {
    const std::string_view token = NextToken(rest);
    if (token.empty()) return;
    if (slot == 1) {
      ParseTableNumber(request, token);
    } else if (const std::optional<float> value = NumberOf(token)) {
      GiveSlot(request, slot, *value);  // a lone "-" is no number and leaves its slot unset
    }
  }
}

void RunRequestedTables(ReportContext& context) {
  Run& run = context.run;
  run.request = TableRequest();
  context.persons.order = ' ';
  context.items.order = ' ';
  RunTables(context);
  if (TrimRight(run.settings.TFILE).empty()) return;
  run.inForce.TABLES.clear();
  RunTableList(context);
}

}  // namespace vardento
