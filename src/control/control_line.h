// One logical control line: its clean-up and its split into keyword and value.
#pragma once

#include <string>
#include <string_view>

namespace vardento {

struct ControlLineParts {
  enum class Kind {
    Ignored,     // blank, "*" alone, or one that begins with "&" but is no end
    End,         // &END
    Faulty,      // no keyword with "=" where one must stand
    Assignment,  // keyword=value
  };
  Kind kind = Kind::Ignored;
  std::string keyword;  // up to 8 characters, upper case, without trailing blanks
  std::string value;    // never empty: a value that isn't there is a single blank
};

// Blanks every control character and the first ";" with all behind it, and moves the text to the
// left; no blanks are left at its end.
void CleanControlLine(std::string& line);

// Splits a line that was cleaned.
ControlLineParts SplitControlLine(std::string_view line);

// What a value stands for: the text between quotes, or all up to the last non-blank less one comma.
std::string ExtractValue(std::string_view text);

// The nine characters that a value may stand between.
bool IsQuote(char c);

// Takes off a ";" and all behind it.
void RemoveComment(std::string& line);

// "$S" marks a field of the labels or records in the place of a file name.
bool HoldsFieldSpecification(std::string_view fileName);

}  // namespace vardento
