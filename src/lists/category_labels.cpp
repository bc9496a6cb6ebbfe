#include "lists/category_labels.h"

#include <algorithm>

#include "control/control_line.h"
#include "control/parse_number.h"
#include "lists/list_line.h"
#include "platform/io_status.h"
#include "text/number_text.h"

namespace vardento {
namespace {

// Cuts a line to what counts of it. False when nothing is left.
bool CleanLabelLine(std::string& line) {
  line.resize(std::min<std::size_t>(line.size(), kListLineLength));
  RemoveComment(line);
  std::ranges::replace(line, '\t', ' ');
  std::ranges::replace(line, ',', ' ');
  line = Trim(line);
  return !line.empty();
}

// Takes "+number" off the front of `text`, the item that a line is about. False when a "+" stands
// there without a number.
bool TakeItem(std::string_view& text, int& item) {
  if (text.empty() || text.front() != '+') return true;
  text.remove_prefix(1);
  item = ParseCount(TakeListWord(text));
  return item >= 1;
}

// Takes a code in quotes off the front of `text`. Quotes of which one opens and another closes are
// all beyond the plain characters.
bool TakeQuoted(std::string_view& text, std::string& code) {
  const char quote = text.front();
  const auto closes = [quote](char c) { return c == quote || ((c & quote & 0x80) && IsQuote(c)); };
  const auto* const end = std::find_if(text.begin() + 1, text.end(), closes);
  if (end == text.end()) return false;
  code = Trim(text.substr(1, static_cast<std::size_t>(end - text.begin()) - 1));
  text.remove_prefix(static_cast<std::size_t>(end - text.begin()) + 1);
  return true;
}

}  // namespace

CategoryLabels::CategoryLabels(Run& run) : run_(run) {
  const auto value = [](std::string_view& rest, Line& line) {
    const std::string_view word = TakeListWord(rest);
    const std::size_t plus = word.find('+');
    const int key = ParseCount(word.substr(0, plus));
    line.key = IntegerText(key);
    std::string_view item = plus == word.npos ? std::string_view() : word.substr(plus);
    return key >= 0 && TakeItem(item, line.item);
  };
  const auto code = [](std::string_view& rest, Line& line) {
    if (IsQuote(rest.front())) {
      return TakeQuoted(rest, line.key) && TakeItem(rest, line.item);
    }
    const std::string_view word = TakeListWord(rest);
    const std::size_t plus = word.find('+');
    line.key = word.substr(0, plus);
    std::string_view item = plus == word.npos ? std::string_view() : word.substr(plus);
    return plus != 0 && TakeItem(item, line.item);
  };
  hasCategories_ = Read(run.settings.CFILE, value, categories_);
  hasCodes_ = Read(run.settings.CLFILE, code, codes_);
}

bool CategoryLabels::Read(const std::string& fileName, TakeKey takeKey,
                          std::vector<Line>& lines) const {
  if (Trim(fileName).empty()) return false;
  TextReader reader;
  if (reader.Open(fileName) != kIoOk) return false;
  std::string text;
  while (reader.ReadLine(text) == kIoOk) {
    if (!CleanLabelLine(text)) continue;
    std::string_view rest = text;
    Line line;
    if (!takeKey(rest, line) || line.item > run_.settings.NI) continue;
    line.words = Trim(rest);
    lines.push_back(std::move(line));
  }
  return true;
}

bool CategoryLabels::IsOfGroup(const Line& line, int group) const {
  return line.item > 0 && run_.arrays.ItemGroup[line.item] == group;
}

std::string_view CategoryLabels::OfCategory(int value, int group) const {
  const std::string key = IntegerText(value);
  std::string_view noted;
  for (const Line& line : categories_) {
    if (line.key != key) continue;
    if (IsOfGroup(line, group)) return line.words;
    if (line.item == 0) noted = line.words;
  }
  return noted;
}

std::string_view CategoryLabels::OfCode(int code, int item, int group) const {
  const ControlSettings& settings = run_.settings;
  const auto wide = static_cast<std::size_t>(settings.XWIDE);
  const std::size_t place = static_cast<std::size_t>(std::max(code, 1) - 1) * wide;
  if (code < 1 || place >= settings.CODES.size()) return {};
  const std::string_view key = Trim(std::string_view(settings.CODES).substr(place, wide));
  const Line *ofGroup = nullptr, *ofAll = nullptr;
  for (const Line& line : codes_) {
    if (line.key != key) continue;
    if (line.item == item && item > 0) return line.words;
    if (IsOfGroup(line, group)) ofGroup = &line;
    if (line.item == 0 && ofAll == nullptr) ofAll = &line;
  }
  const Line* const best = ofGroup != nullptr ? ofGroup : ofAll;
  return best == nullptr ? std::string_view() : best->words;
}

}  // namespace vardento
