#include "text/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace vardento {
namespace {

// The largest size that is still shown as a number, as the 32-bit real that it is compared to.
constexpr float kLargestShown = 2147483648.0F;

std::size_t SizeOf(int width) { return static_cast<std::size_t>(std::max(width, 0)); }

// Appends a blank field; good until the text grows again.
char* AppendBlanks(std::string& text, std::size_t size) {
  text.append(size, ' ');
  return text.data() + (text.size() - size);
}

char DigitOf(unsigned long long value) { return static_cast<char>('0' + value % 10); }

// Sets the digits of `value` in front of `place`, none for 0; high digits that do not fit are lost.
// Returns the place of the first.
std::size_t SetDigits(char* field, std::size_t place, unsigned long long value) {
  for (; value > 0 && place > 0; value /= 10) field[--place] = DigitOf(value);
  return place;
}

// Puts "-" in front of the first place in use, or into column 1.
void SetSign(char* field, std::size_t first) { field[first == 0 ? 0 : first - 1] = '-'; }

unsigned long long Magnitude(long long value) {
  return value < 0 ? 0ULL - static_cast<unsigned long long>(value)
                   : static_cast<unsigned long long>(value);
}

void AppendWhole(std::string& line, long long value, int width) {
  const std::size_t size = SizeOf(width);
  if (size == 0) return;
  char* const field = AppendBlanks(line, size);
  field[size - 1] = DigitOf(Magnitude(value));
  const std::size_t first = SetDigits(field, size - 1, Magnitude(value) / 10);
  if (value < 0) SetSign(field, first);
}

int DecimalsOf(std::string_view format) {
  const std::size_t point = format.find('.');
  if (point == std::string_view::npos || point + 1 >= format.size()) return 0;
  const char digit = format[point + 1];
  return digit >= '0' && digit <= '9' ? digit - '0' : 0;
}

// |value| x 10^decimals rounded to the nearest whole number, halves upward, judged on the exact
// product: the part that the multiplication loses decides a half. Below 1e18 only.
unsigned long long RoundScaled(double magnitude, double scale) {
  const double product = magnitude * scale;
  const double lost = std::fma(magnitude, scale, -product);
  const double whole = std::floor(product);
  const double part = product - whole;
  const bool up = part > 0.5 || (part == 0.5 && lost >= 0);
  return static_cast<unsigned long long>(whole) + (up ? 1U : 0U);
}

}  // namespace

void AppendNumber(std::string& line, float value, int width, int decimals) {
  const std::size_t size = SizeOf(width);
  if (!(std::fabs(value) <= kLargestShown)) {
    line.append(size, '*');
    return;
  }
  decimals = std::min(decimals, std::max(width - 1, 0));
  for (int i = 0; i < decimals; ++i) value *= 10.0F;
  const long long rounded = std::llround(value);
  if (decimals <= 0) return AppendWhole(line, rounded, width);
  char* const field = AppendBlanks(line, size);
  unsigned long long rest = Magnitude(rounded);
  std::size_t place = size;
  for (int i = 0; i < decimals; ++i, rest /= 10) field[--place] = DigitOf(rest);
  field[--place] = '.';
  place = SetDigits(field, place, rest);
  if (rounded < 0) SetSign(field, place);
}

void AppendInteger(std::string& line, int value, int width) { AppendWhole(line, value, width); }

std::string number_text(float value, int width, std::string_view format) {
  std::string field;
  AppendNumber(field, value, width, DecimalsOf(format));
  return field;
}

std::string integer_text(int value, int width) {
  std::string field;
  AppendInteger(field, value, width);
  return field;
}

std::string FixedText(float value, std::string_view format, int width) {
  constexpr int kWidest = 24;  // takes every number that is shown as one
  const std::string text = number_text(value, std::max(width, kWidest), format);
  const std::string_view number = Trim(text);
  return number.size() > SizeOf(width) ? std::string(SizeOf(width), '*') : PadLeft(number, width);
}

std::string IntegerText(int value) { return std::to_string(value); }

std::string fixed_field(double value, int width, int decimals) {
  const std::string stars(SizeOf(width), '*');
  decimals = std::clamp(decimals, 0, 15);
  double scale = 1;
  for (int i = 0; i < decimals; ++i) scale *= 10;
  if (!(std::fabs(value) * scale < 1e18)) return stars;
  const unsigned long long rounded = RoundScaled(std::fabs(value), scale);
  std::string digits = std::to_string(rounded);
  const std::size_t places = static_cast<std::size_t>(decimals);
  if (places == 0) {
    digits.push_back('.');
  } else {
    if (rounded == 0) digits.clear();
    if (digits.size() < places) digits.insert(0, places - digits.size(), '0');
    digits.insert(digits.size() - places, 1, '.');
  }
  if (value < 0 && rounded > 0) digits.insert(0, 1, '-');
  return digits.size() > SizeOf(width) ? stars : PadLeft(digits, width);
}

std::string integer_field(long long value, int width) {
  const std::string digits = std::to_string(value);
  return digits.size() > SizeOf(width) ? std::string(SizeOf(width), '*') : PadLeft(digits, width);
}

std::string ShortestText(float value) {
  if (value == 0) return "0";
  char digits[64];  // 39 digits before the point or 45 behind it, no more
  const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed);
  std::string text(digits, end.ptr);
  if (text.starts_with("0.") || text.starts_with("-0.")) text.erase(text.find('0'), 1);
  return text;
}

std::string_view TrimRight(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string_view Trim(std::string_view text) {
  text = TrimRight(text);
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string PadRight(std::string_view text, int width) {
  std::string padded(text.substr(0, SizeOf(width)));
  padded.resize(SizeOf(width), ' ');
  return padded;
}

std::string PadLeft(std::string_view text, int width) {
  const std::size_t size = SizeOf(width);
  if (text.size() >= size) return std::string(text.substr(text.size() - size));
  return std::string(size - text.size(), ' ').append(text);
}

bool SameText(std::string_view a, std::string_view b) { return TrimRight(a) == TrimRight(b); }

char UpperCase(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = UpperCase(c);
  return upper;
}

void BlankControlCharacters(std::string& text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  }
}

std::string_view TakeDigits(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), IsDigit);
  const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  return digits;
}

}  // namespace vardento
