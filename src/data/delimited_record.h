// DELIM=: the fields of a data record that are set apart by a delimiter instead of by columns.
#pragma once

#include <string>
#include <string_view>

#include "run/control_settings.h"

namespace vardento {

// The delimiter itself for the value of DELIM=: "B" and "S" mean a blank, "T" a tab, "Y" a comma.
char DelimiterOf(char delim);

// Walks over the fields of one record. With a blank as the delimiter a run of blanks is one
// delimiter. A field in single or double quotes comes without them and may hold delimiters; a
// quote with no partner in the rest of the record is a character like any other.
class FieldCursor {
 public:
  FieldCursor(std::string_view record, char delimiter) : record_(record), delimiter_(delimiter) {}

  // The next field, without blanks around it; false behind the last one.
  bool Next(std::string_view& field);
  // Where the field given last begins in the record, from 0, its quote included.
  std::size_t FieldStart() const { return start_; }

 private:
  std::string_view record_;
  char delimiter_;
  std::size_t next_ = 0;
  std::size_t start_ = 0;
  bool done_ = false;
};

// Takes the person label, field NAME1, cut at NAMLEN characters, and the responses, fields ITEM1 to
// ITEM1 + NI - 1, each cut at XWIDE characters and stored at its item's place of `codes`, which
// becomes NI x XWIDE characters. Fields that aren't there are blank.
void SplitDelimited(std::string_view record, const ControlSettings& settings, std::string& label,
                    std::string& codes);

}  // namespace vardento
