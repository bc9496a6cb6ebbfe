#include "report/report_line.h"

#include <algorithm>

#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {

void ReportLine::Clear() {
  text_.fill(' ');
  next_ = 1;
}

ReportLine& ReportLine::At(int column) {
  next_ = std::max(column, 1);
  return *this;
}

ReportLine& ReportLine::Skip(int columns) { return At(next_ + columns); }

ReportLine& ReportLine::Text(std::string_view text) {
  const std::size_t first = static_cast<std::size_t>(next_ - 1);
  if (first < text_.size()) {
    text = text.substr(0, text_.size() - first);
    std::copy(text.begin(), text.end(), text_.begin() + static_cast<std::ptrdiff_t>(first));
  }
  next_ += TextWidth(text);
  return *this;
}

ReportLine& ReportLine::Text(std::string_view text, int width) {
  text = CutToWidth(text, width);
  return Text(text).Repeat(' ', width - TextWidth(text));
}

ReportLine& ReportLine::Fixed(double value, int width, int decimals) {
  return Text(fixed_field(value, width, decimals));
}

ReportLine& ReportLine::Integer(long long value, int width) {
  return Text(integer_field(value, width));
}

ReportLine& ReportLine::Repeat(char c, int count) {
  for (int i = 0; i < count; ++i, ++next_) {
    if (next_ <= ReportOutput::kMaxLine) text_[static_cast<std::size_t>(next_ - 1)] = c;
  }
  return *this;
}

std::string_view ReportLine::View() const {
  const std::string_view line = TrimRight(std::string_view(text_.data(), text_.size()));
  return std::string_view(text_.data(), std::max<std::size_t>(line.size(), 1));
}

}  // namespace vardento
