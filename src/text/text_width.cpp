#include "text/text_width.h"

#include <algorithm>

namespace vardento {

int TextWidth(std::string_view text) { return static_cast<int>(text.size()); }

std::string_view CutToWidth(std::string_view text, int width) {
  return text.substr(0, static_cast<std::size_t>(std::max(width, 0)));
}

std::string_view CutToLast(std::string_view text, int width) {
  return FromColumn(text, TextWidth(text) - width + 1);
}

std::string_view FromColumn(std::string_view text, int column) {
  return text.substr(std::min(text.size(), static_cast<std::size_t>(std::max(column - 1, 0))));
}

}  // namespace vardento
