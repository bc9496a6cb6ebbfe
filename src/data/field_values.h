// Work files that take the place of PWEIGHT=, PAFILE=, IWEIGHT= and IAFILE= when the values stand
// in a field of each label or record: one line "entry value" for each entry.
#pragma once

#include <string>
#include <string_view>

#include "data/field_specification.h"
#include "platform/text_file.h"

namespace vardento {

class FieldValues {
 public:
  // When `setting`, the value of `keyword`, is a field specification: reads it, opens the work file
  // of this stem and names it in `setting`; a faulty specification leaves `setting` blank.
  FieldValues(Run& run, std::string& setting, std::string_view keyword, std::string_view stem);

  bool InUse() const { return file_.IsOpen(); }
  const FieldSpecification& Specification() const { return specification_; }
  // Writes the value of an entry, unless it is blank.
  void Write(int entry, std::string_view value);
  void Close();

 private:
  [[noreturn]] void Fail(int status, char operation);

  Run& run_;
  FieldSpecification specification_;
  TextWriter file_;
};

}  // namespace vardento
