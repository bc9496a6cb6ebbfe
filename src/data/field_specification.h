// Field specifications, "$S3W2" or "$S3E4": which part of a label or of a data record holds a
// value. Several may be joined, with literals between them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "run/run.h"

namespace vardento {

class FieldSpecification {
 public:
  // A part of the value: a literal, or columns first..last (fields, in a delimited record).
  struct Piece {
    std::string literal;
    int first = 0, last = 0;  // from 1; 0 for a literal
  };

  std::vector<Piece> pieces;

  bool IsEmpty() const { return pieces.empty(); }
  // The first column named; 0 without one.
  int Start() const;
};

// Reads the value of `keyword`. A faulty text is told and gives an empty specification: the run
// goes on without the field.
FieldSpecification ParseFieldSpecification(Run& run, std::string_view keyword,
                                           std::string_view text);

// The value: columns of `record` and literals, joined, without control characters and blanks
// around it. Columns behind the end of the record are blank; literals count where fields are blank.
std::string ExtractField(const FieldSpecification& specification, std::string_view record);
// All columns of the value, blanks around it and between its pieces too: values of different
// records are as wide as the specification.
std::string CutField(const FieldSpecification& specification, std::string_view record);
// As ExtractField with the fields of a record that `delimiter` sets apart in the place of columns.
std::string ExtractDelimitedField(const FieldSpecification& specification, std::string_view record,
                                  char delimiter);

}  // namespace vardento
