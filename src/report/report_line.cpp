#include "report/report_line.h"

#include <algorithm>

#include "text/number_text.h"
#include "text/text_width.h"

namespace vardento {
namespace {

// The character that stands for a drawn one where there is no page of them.
char PlainCharacter(char c) {
  switch (static_cast<Box>(c)) {
    case Box::Horizontal:
    case Box::TopTee:
    case Box::BottomTee:
      return '-';
    case Box::Vertical:
    case Box::LeftTee:
    case Box::RightTee:
      return '|';
    case Box::Cross:
    case Box::TopLeft:
    case Box::TopRight:
    case Box::BottomLeft:
    case Box::BottomRight:
      return '+';
    case Box::DoubleVertical:
    case Box::DoubleTopRight:
    case Box::DoubleBottomRight:
    case Box::DoubleBottomLeft:
    case Box::DoubleTopLeft:
    case Box::DoubleHorizontal:
      return '*';
    case Box::Bullet:
    case Box::SmallBullet:
      return '.';
  }
  return c;
}

}  // namespace

void ReportLine::Clear() {
  text_.fill(' ');
  drawn_.reset();
  next_ = 1;
  end_ = drawnEnd_ = 0;
}

ReportLine& ReportLine::At(int column) {
  next_ = std::max(column, 1);
  return *this;
}

ReportLine& ReportLine::Skip(int columns) { return At(next_ + columns); }

ReportLine& ReportLine::Text(std::string_view text) {
  std::size_t held = 0;
  char* const place = Take(static_cast<int>(text.size()), false, held);
  std::copy_n(text.data(), held, place);
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
  std::size_t held = 0;
  char* const place = Take(count, false, held);
  std::fill_n(place, held, c);
  return *this;
}

ReportLine& ReportLine::Repeat(Box piece, int count) {
  std::size_t held = 0;
  char* const place = Take(count, true, held);
  std::fill_n(place, held, static_cast<char>(piece));
  return *this;
}

char* ReportLine::Take(int count, bool drawn, std::size_t& held) {
  const auto place = static_cast<std::size_t>(next_ - 1);
  const std::size_t wanted = static_cast<std::size_t>(std::max(count, 0));
  held = place < text_.size() ? std::min(wanted, text_.size() - place) : 0;
  const std::size_t end = place + held;
  for (std::size_t i = place; i < (drawn ? end : std::min(end, drawnEnd_)); ++i) drawn_[i] = drawn;
  if (drawn && held > 0) drawnEnd_ = std::max(drawnEnd_, end);
  if (held > 0) end_ = std::max(end_, end);
  next_ += static_cast<int>(wanted);
  return text_.data() + std::min(place, text_.size());
}

std::string_view ReportLine::View() const {
  const std::string_view line = TrimRight(std::string_view(text_.data(), end_));
  return std::string_view(text_.data(), std::max<std::size_t>(line.size(), 1));
}

std::string ReportLine::Plain() const {
  std::string line(View());
  for (std::size_t i = 0; i < std::min(line.size(), drawnEnd_); ++i) {
    if (drawn_[i]) line[i] = PlainCharacter(line[i]);
  }
  return line;
}

}  // namespace vardento
