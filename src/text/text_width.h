// How many columns a text takes on a line and what is left of it when it is cut: the one place that
// says what a column is. Today a column is a byte.
#pragma once

#include <string_view>

namespace vardento {

int TextWidth(std::string_view text);
// The first `width` columns of the text, its last ones, and what stands from `column` (from 1) on.
std::string_view CutToWidth(std::string_view text, int width);
std::string_view CutToLast(std::string_view text, int width);
std::string_view FromColumn(std::string_view text, int column);

}  // namespace vardento
