#include "control/parse_number.h"

#include <algorithm>
#include <charconv>

#include "text/number_text.h"

namespace vardento {
namespace {

bool AreDigits(std::string_view text) { return std::all_of(text.begin(), text.end(), IsDigit); }

bool HasValue(std::string_view digits) {
  return digits.find_first_not_of('0') != std::string_view::npos;
}

}  // namespace

void ParseNumber(std::string_view text, float& value, bool& failed) {
  failed = true;
  const bool negative = !text.empty() && text.front() == '-';
  if (negative) text.remove_prefix(1);
  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  const std::string_view fraction =
      point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
  if (text.empty() || !AreDigits(whole) || !AreDigits(fraction)) return;
  float size = 0;
  if (HasValue(whole) || HasValue(fraction)) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), size);
    if (result.ec == std::errc::result_out_of_range) {
      if (HasValue(whole)) return;
      size = 0;
    }
  }
  value = negative ? -size : size;
  failed = false;
}

std::string_view LeadingNumber(std::string_view text) {
  return text.substr(0, std::min(text.find_first_not_of("1234567890.-"), text.size()));
}

int ParseCount(std::string_view text) {
  constexpr int kLargest = 999999999;
  if (text.empty() || !AreDigits(text)) return -1;
  int count = 0;
  for (char c : text) {
    if (count > kLargest / 10) return kLargest;
    count = std::min(count * 10 + (c - '0'), kLargest);
  }
  return count;
}

char YesNo(char flag) { return flag == 'Y' || flag == 'y' || flag == '1' ? 'Y' : 'N'; }

std::string YesNoString(std::string_view text, int length) {
  std::string marks(static_cast<std::size_t>(length), '0');
  for (std::size_t i = 0; i < std::min(text.size(), marks.size()); ++i) {
    if (YesNo(text[i]) == 'Y') marks[i] = '1';
  }
  return marks;
}

}  // namespace vardento
