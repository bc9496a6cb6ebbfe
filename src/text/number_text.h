// Numbers as text: the one place where reports, output files and messages turn a number into
// characters. No locale, no library formatting; a value below 1 shows no digit before the point.
#pragma once

#include <string>
#include <string_view>

namespace vardento {

// The rule of the output files. `format` is of the form "(Fw.d)"; only the digit d is read. The
// field is `width` wide; high digits that do not fit are lost; above 2147483648 in size the field
// is filled with "*". A value that rounds to zero has no sign. 0.5 with d = 2 is ".50".
std::string number_text(float value, int width, std::string_view format);

// Right-justified digits, high digits that do not fit dropped; "-" just left of the last digit
// written, or in column 1 when none is left.
std::string integer_text(int value, int width);
// The same fields behind what `line` holds: for files of many numbers, without a text of its own
// for each.
void AppendNumber(std::string& line, float value, int width, int decimals);
void AppendInteger(std::string& line, int value, int width);

// The rule for reports and messages: as number_text, but a field of asterisks when the value does
// not fit.
std::string FixedText(float value, std::string_view format, int width);
// As integer_text, trimmed: the form of counts in messages.
std::string IntegerText(int value);

// Ordinary Fw.d and Iw editing of report columns: right-justified, no digit before the point below
// 1, no sign on a zero, a field of asterisks when the value does not fit.
std::string fixed_field(double value, int width, int decimals);
std::string integer_field(long long value, int width);

// The shortest digits that read back as `value`, without an exponent: "12", "-.005".
std::string ShortestText(float value);

// Text helpers shared by the callers of the above.
std::string_view TrimRight(std::string_view text);
std::string_view Trim(std::string_view text);
std::string PadRight(std::string_view text, int width);  // cut or padded to exactly `width`
std::string PadLeft(std::string_view text, int width);   // right-justified; high end lost
bool SameText(std::string_view a, std::string_view b);   // equal but for trailing blanks
char UpperCase(char c);                                  // ASCII letters only
std::string UpperCase(std::string_view text);
void BlankControlCharacters(std::string& text);  // those below the blank
inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }
std::string_view TakeDigits(std::string_view& text);  // off the front; empty when there are none

}  // namespace vardento
