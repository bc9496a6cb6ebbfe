// The line form shared by all lists of entries: "entry value" or "from-to value".
#pragma once

#include <string>
#include <string_view>

namespace vardento {

// What a line of a list may hold; the rest is cut.
inline constexpr int kListLineLength = 80;

// How many numbers a row of a list may hold.
inline constexpr int kEntryRow = 2;  // entry, value
inline constexpr int kStepRow = 3;   // entry, category, value

// Cuts the line and blanks what is no value: all from ";" on, double quotes, commas, control
// characters. False when nothing is left; with `rowNumbers` also for one text in double quotes that
// is more than a row of so many numbers: the head of a measure file with commas, whose title may
// begin with numbers.
bool CleanListLine(std::string& line, int rowNumbers = 0);

// True for the first head line of a measure file with commas or tabs, behind which its title
// stands.
bool IsFileHead(std::string_view line);

// A measure that fills its field in a measure file of fixed columns stands right behind the entry:
// sets a blank between the two. Lines of any other form stay as they are.
void PartFixedColumns(std::string& line);

// True for the names of columns above the rows of a file with commas or tabs: every field stands in
// double quotes, and none is a number.
bool IsColumnHead(std::string_view line);

// Takes the next word off the front of `text`; empty when there is none.
std::string_view TakeListWord(std::string_view& text);

// Takes "entry" or "from-to" off the front of `text`. `first` is 0 when no number stands there,
// `last` is 0 when no range was given. Blanks may stand around the "-"; a "-" right in front of
// the next number but not behind the last one is that number's sign.
void TakeEntryRange(std::string_view& text, int& first, int& last);

// The entry number, the end of the range (0 for a single entry) and the value of a line. `failed`
// when the value, which may have a "+" in front, is missing or no number; `value` is then 0.
void ParseListLine(std::string_view text, int& first, float& value, bool& failed, int& last);

// The value of a line: a number, with a "+" in front if need be.
void ParseListValue(std::string_view word, float& value, bool& failed);

}  // namespace vardento
