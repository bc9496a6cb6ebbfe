// The values of control variables as numbers and flags.
#pragma once

#include <string>
#include <string_view>

namespace vardento {

// Reads `text` (digits, at most one ".", a "-" in front) as a number. The digits before and behind
// the point are read separately: either may be missing, and a lone "." is 0. Sets `failed`, and
// leaves `value`, when anything else stands in it, when it is empty or a lone "-", or when it is
// too large for a 32-bit real; a number too small for one is 0.
void ParseNumber(std::string_view text, float& value, bool& failed);

// The longest run of the characters of numbers that `text` begins with.
std::string_view LeadingNumber(std::string_view text);

// The digits of a count or an entry number; -1 when `text` is empty or holds anything else. Larger
// numbers than 999,999,999 come back as that.
int ParseCount(std::string_view text);

// 'Y' for "Y", "y" and "1", else 'N'.
char YesNo(char flag);
// The text as `length` characters: "1" for each "Y", "y" or "1", "0" for all else.
std::string YesNoString(std::string_view text, int length);

}  // namespace vardento
