#include "data/delimited_record.h"

#include <algorithm>

#include "text/number_text.h"

namespace vardento {

char DelimiterOf(char delim) {
  switch (delim) {
    case 'B':
    case 'S':
      return ' ';
    case 'T':
      return '\t';
    case 'Y':
      return ',';
    default:
      return delim;
  }
}

bool FieldCursor::Next(std::string_view& field) {
  if (done_) return false;
  next_ = std::min(record_.find_first_not_of(' ', next_), record_.size());
  start_ = next_;
  if (delimiter_ == ' ' && next_ == record_.size()) return false;
  std::size_t end = std::string_view::npos;
  const char quote = next_ < record_.size() ? record_[next_] : ' ';
  const bool quoted = (quote == '"' || quote == '\'') && quote != delimiter_;
  if (quoted) end = record_.find(quote, next_ + 1);
  if (end != std::string_view::npos) {
    field = TrimRight(record_.substr(next_ + 1, end - next_ - 1));
    end = record_.find(delimiter_, end + 1);
  } else {
    end = record_.find(delimiter_, next_);
    field = TrimRight(record_.substr(next_, std::min(end, record_.size()) - next_));
  }
  done_ = end == std::string_view::npos;
  next_ = done_ ? record_.size() : end + 1;
  return true;
}

void SplitDelimited(std::string_view record, const ControlSettings& settings, std::string& label,
                    std::string& codes) {
  const auto width = static_cast<std::size_t>(settings.XWIDE);
  const auto labelWidth = static_cast<std::size_t>(std::max(settings.NAMLEN, 0));
  label.assign(labelWidth, ' ');
  codes.assign(static_cast<std::size_t>(settings.NI) * width, ' ');
  const int lastCode = settings.ITEM1 + settings.NI - 1;
  const int lastField = std::max(lastCode, settings.NAME1);
  FieldCursor cursor(record, DelimiterOf(settings.DELIM));
  std::string_view field;
  for (int number = 1; number <= lastField && cursor.Next(field); ++number) {
    if (number == settings.NAME1) field.copy(label.data(), labelWidth);
    if (number >= settings.ITEM1 && number <= lastCode) {
      const auto item = static_cast<std::size_t>(number - settings.ITEM1);
      const std::string_view code = field.substr(0, width);
      codes.replace(item * width, code.size(), code);
    }
  }
}

}  // namespace vardento
