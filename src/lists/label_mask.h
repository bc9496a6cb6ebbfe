// Selection by label: the masks of ISELECT= and PSELECT=.
#pragma once

#include <string_view>

namespace vardento {

// Compares a label with a mask, character by character, upper and lower case being different. In
// the mask "*" fits all that follows, "?" any one character, also behind the label's end, and
// "{...}" one character of a set, in which "A-D" is a range and "--" a "-". Positive when the label
// fits: 1 for a mask that ended at a "*", 2 for one that was used up. Negative when not: -1 for
// another character, -2 for a label that is too short, -4 for a character out of the set.
int MatchLabel(std::string_view mask, std::string_view label);

}  // namespace vardento
