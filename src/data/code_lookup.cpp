#include "data/code_lookup.h"

#include <algorithm>

#include "data/data_reader.h"
#include "text/number_text.h"

namespace vardento {

namespace {

std::size_t TwoBytes(const char* field) {
  return static_cast<std::size_t>(static_cast<unsigned char>(field[0])) * 256 +
         static_cast<unsigned char>(field[1]);
}

// How the padded characters of `field`, less its leading blanks, compare with `code`, which has
// no leading blank unless it is blank: below 0, 0 or above 0.
int CompareAdjusted(std::string_view field, std::string_view code) {
  const std::size_t first = std::min(field.find_first_not_of(' '), field.size());
  field.remove_prefix(first);
  const std::size_t length = std::max(field.size(), code.size());
  for (std::size_t i = 0; i < length; ++i) {
    const int a = static_cast<unsigned char>(i < field.size() ? field[i] : ' ');
    const int b = static_cast<unsigned char>(i < code.size() ? code[i] : ' ');
    if (a != b) return a - b;
  }
  return 0;
}

}  // namespace

std::string_view CodeAt(const ControlSettings& settings, int c) {
  const auto width = static_cast<std::size_t>(settings.XWIDE);
  const std::size_t first = static_cast<std::size_t>(c - 1) * width;
  const std::string_view codes = settings.CODES;
  return first < codes.size() ? codes.substr(first, width) : std::string_view();
}

int CategoryOfCode(const ControlSettings& settings, std::string_view field) {
  field = field.substr(0, static_cast<std::size_t>(settings.XWIDE));
  if (settings.XWIDE == 1) {
    const char code = field.empty() ? ' ' : field[0];
    const std::size_t place =
        settings.CODES.substr(0, static_cast<std::size_t>(settings.CATEGS)).find(code);
    return place == std::string::npos ? 0 : static_cast<int>(place) + 1;
  }
  // From the last to the first: of a code given twice the later place counts.
  for (int c = settings.CATEGS; c >= 1; --c) {
    if (CompareAdjusted(field, CodeAt(settings, c)) == 0) return c;
  }
  return 0;
}

CodeLookup::CodeLookup(const ControlSettings& settings)
    : width_(static_cast<std::size_t>(settings.XWIDE)) {
  if (width_ <= 2) {
    FillTable(settings);
  } else {
    FillEntries(settings);
  }
}

void CodeLookup::FillTable(const ControlSettings& settings) {
  table_.assign(width_ == 1 ? 256 : 65536, 0);
  for (int c = std::min(settings.CATEGS, kMaxCodes); c >= 1; --c) {
    const std::string code = PadRight(CodeAt(settings, c), settings.XWIDE);
    const auto number = static_cast<std::uint8_t>(CategoryOfCode(settings, code));
    table_[width_ == 1 ? static_cast<unsigned char>(code[0]) : TwoBytes(code.data())] = number;
  }
  if (width_ == 1) return;
  for (std::size_t c = 0; c < 256; ++c) table_[' ' * 256 + c] = table_[c * 256 + ' '];
}

void CodeLookup::FillEntries(const ControlSettings& settings) {
  for (int c = 1; c <= std::min(settings.CATEGS, kMaxCodes); ++c) {
    const std::string_view code = CodeAt(settings, c);
    if (CategoryOfCode(settings, code) != c) continue;  // given again further on
    entries_.push_back({std::string(code), static_cast<std::uint8_t>(c)});
  }
  std::sort(entries_.begin(), entries_.end(),
            [](const Entry& a, const Entry& b) { return CompareAdjusted(a.code, b.code) < 0; });
}

std::uint8_t CodeLookup::FindWide(const char* field) const {
  const std::string_view text(field, width_);
  std::size_t low = 0;
  std::size_t high = entries_.size();
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    const int order = CompareAdjusted(text, entries_[middle].code);
    if (order == 0) return entries_[middle].number;
    if (order < 0) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return 0;
}

std::uint8_t CodeLookup::Find(const char* field) const {
  if (width_ == 1) return table_[static_cast<unsigned char>(*field)];
  if (width_ == 2) return table_[TwoBytes(field)];
  return FindWide(field);
}

bool CodeLookup::EncodeRow(const char* codes, const std::vector<int>& items,
                           std::uint8_t* row) const {
  bool all = true;
  if (width_ == 1) {
    const std::uint8_t* table = table_.data();
    for (const int i : items) {
      row[i] = table[static_cast<unsigned char>(codes[i])];
      all &= row[i] != 0;
    }
    return all;
  }
  for (const int i : items) {
    row[i] = Find(codes + static_cast<std::size_t>(i) * width_);
    all &= row[i] != 0;
  }
  return all;
}

}  // namespace vardento
