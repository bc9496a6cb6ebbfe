#include "control/control_line.h"

#include <algorithm>

#include "text/number_text.h"

namespace vardento {
namespace {

constexpr std::size_t kKeywordLength = 8;

ControlLineParts::Kind KindWithoutEquals(std::string_view line) {
  if (UpperCase(line.substr(0, 4)) == "&END") return ControlLineParts::Kind::End;
  return line.front() == '&' ? ControlLineParts::Kind::Ignored : ControlLineParts::Kind::Faulty;
}

std::string ExtractQuoted(std::string_view text) {
  const char quote = text.front();
  text.remove_prefix(1);
  const std::size_t end = text.find(quote);
  if (end != std::string_view::npos) return std::string(text.substr(0, end));
  text = TrimRight(text);
  if (!text.empty() && IsQuote(text.back())) text.remove_suffix(1);
  return std::string(text);
}

}  // namespace

bool IsQuote(char c) {
  // The last six are the quotes of the Windows Western code page.
  static constexpr std::string_view kQuotes = "\"'`\x82\x84\x91\x92\x93\x94";
  return kQuotes.find(c) != std::string_view::npos;
}

void RemoveComment(std::string& line) {
  const std::size_t mark = line.find(';');
  if (mark != std::string::npos) line.resize(mark);
}

void CleanControlLine(std::string& line) {
  RemoveComment(line);
  BlankControlCharacters(line);
  line.erase(line.find_last_not_of(' ') + 1);
  line.erase(0, std::min(line.find_first_not_of(' '), line.size()));
}

ControlLineParts SplitControlLine(std::string_view line) {
  ControlLineParts parts;
  if (line.empty() || line == "*") return parts;
  const std::size_t equals = line.find('=', 1);
  if (equals == std::string_view::npos) {
    parts.kind = KindWithoutEquals(line);
    return parts;
  }
  parts.kind = ControlLineParts::Kind::Assignment;
  parts.keyword = UpperCase(TrimRight(line.substr(0, std::min(equals, kKeywordLength))));
  parts.value = ExtractValue(line.substr(equals + 1));
  return parts;
}

std::string ExtractValue(std::string_view text) {
  text = Trim(text);
  std::string value;
  if (!text.empty() && IsQuote(text.front())) {
    value = ExtractQuoted(text);
  } else {
    if (!text.empty() && text.back() == ',') text.remove_suffix(1);
    value = TrimRight(text);
  }
  if (value.empty()) value = " ";
  return value;
}

bool HoldsFieldSpecification(std::string_view fileName) {
  return fileName.find("$S") != std::string_view::npos ||
         fileName.find("$s") != std::string_view::npos;
}

}  // namespace vardento
