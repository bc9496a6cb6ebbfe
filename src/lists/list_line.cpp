#include "lists/list_line.h"

#include <algorithm>

#include "control/parse_number.h"
#include "text/number_text.h"

namespace vardento {
namespace {

// The "-" of a range: right behind the first number, or set apart on both sides.
bool TakeRangeSign(std::string_view& text) {
  const std::size_t sign = text.find_first_not_of(' ');
  if (sign == std::string_view::npos || text[sign] != '-') return false;
  const bool isSign = sign > 0 && sign + 1 < text.size() && text[sign + 1] != ' ';
  if (isSign) return false;
  text.remove_prefix(sign + 1);
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return true;
}

// Double quotes, commas and control characters are no part of a value.
void BlankSeparators(std::string& text) {
  BlankControlCharacters(text);
  std::replace(text.begin(), text.end(), '"', ' ');
  std::replace(text.begin(), text.end(), ',', ' ');
}

// The text between the first and the last double quote of a line that is nothing else (but for a
// comment); empty when there is none or the quotes stand around several fields.
std::string TakeQuoted(std::string_view line) {
  const auto isQuoted = [](std::string_view t) {
    return t.size() > 2 && t.front() == '"' && t.back() == '"';
  };
  const std::string_view beforeComment = Trim(line.substr(0, line.find(';')));
  line = isQuoted(beforeComment) ? beforeComment : Trim(line);
  if (!isQuoted(line)) return {};
  const auto separates = [](char c) { return c == ',' || c == '\t'; };
  for (std::size_t i = 1; i + 1 < line.size(); ++i) {
    if (line[i] == '"' && (separates(line[i - 1]) || separates(line[i + 1]))) return {};
  }
  return std::string(line.substr(1, line.size() - 2));
}

// One text in double quotes that is more than an entry or a range and the numbers of its row.
bool IsTitle(std::string_view line, int rowNumbers) {
  std::string quoted = TakeQuoted(line);
  if (quoted.empty()) return false;
  BlankSeparators(quoted);
  std::string_view text = quoted;
  text.remove_prefix(std::min(text.find_first_not_of(" +-"), text.size()));
  int first = 0, last = 0;
  TakeEntryRange(text, first, last);
  bool failed = first == 0 && last == 0;
  for (int number = 2; number <= rowNumbers && !failed; ++number) {
    const std::string_view word = TakeListWord(text);
    float value = 0;
    if (!word.empty()) ParseListValue(word, value, failed);
  }
  return failed || !Trim(text).empty();
}

}  // namespace

bool IsFileHead(std::string_view line) {
  return line.starts_with('"') && line.find(" FILE ") != line.npos &&
         TrimRight(line).ends_with(" FOR\"");
}

void PartFixedColumns(std::string& line) {
  constexpr std::size_t kMeasure = 6, kStatus = 14;  // where these columns begin
  if (line.size() <= kStatus || line[0] != ' ' || line[kMeasure] == ' ' || line[kStatus] != ' ') {
    return;
  }
  const std::string_view entry = Trim(std::string_view(line).substr(0, kMeasure));
  const std::string_view measure = std::string_view(line).substr(kMeasure, kStatus - kMeasure);
  float value = 0;
  bool failed = false;
  ParseListValue(measure, value, failed);
  const bool isRow = !failed && measure.find('.') != std::string_view::npos &&
                     line[kMeasure - 1] != ' ' && ParseCount(entry) > 0;
  if (isRow) line.insert(kMeasure, 1, ' ');
}

bool CleanListLine(std::string& line, int rowNumbers) {
  if (rowNumbers > 0 && IsTitle(line, rowNumbers)) return false;
  line.resize(std::min(line.find(';'), std::min<std::size_t>(line.size(), kListLineLength)));
  BlankSeparators(line);
  return !Trim(line).empty();
}

bool IsColumnHead(std::string_view line) {
  for (line = Trim(line); !line.empty();) {
    const std::size_t end = line.front() == '"' ? line.find('"', 1) : line.npos;
    if (end == line.npos) return false;
    float value = 0;
    bool failed = false;
    ParseListValue(Trim(line.substr(1, end - 1)), value, failed);
    if (!failed) return false;
    line.remove_prefix(end + 1);
    line.remove_prefix(std::min(line.find_first_not_of(",\t "), line.size()));
  }
  return true;
}

std::string_view TakeListWord(std::string_view& text) {
  text = Trim(text);
  const std::string_view word = text.substr(0, text.find(' '));
  text.remove_prefix(word.size());
  return word;
}

void TakeEntryRange(std::string_view& text, int& first, int& last) {
  first = last = 0;
  text = Trim(text);
  const std::string_view from = TakeDigits(text);
  std::string_view rest = text;
  std::string_view to;
  const bool isRange = !from.empty() && TakeRangeSign(rest);
  if (isRange) to = TakeDigits(rest);
  // A word that goes on behind its digits is no number.
  if (from.empty() || (isRange && to.empty()) || (!rest.empty() && rest.front() != ' ')) return;
  first = ParseCount(from);
  if (isRange) last = ParseCount(to);
  text = rest;
}

void ParseListLine(std::string_view text, int& first, float& value, bool& failed, int& last) {
  value = 0;
  failed = true;
  TakeEntryRange(text, first, last);
  if (first > 0) ParseListValue(TakeListWord(text), value, failed);
}

void ParseListValue(std::string_view word, float& value, bool& failed) {
  if (word.starts_with('+')) word.remove_prefix(1);
  value = 0;
  ParseNumber(word, value, failed);
}

}  // namespace vardento
