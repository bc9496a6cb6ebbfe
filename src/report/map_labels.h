// The part of an entry's label that maps show: the field of IMAP= or PMAP=, else the first NAMLMP=
// characters, else all of it.
#pragma once

#include <string>
#include <string_view>

#include "data/field_specification.h"
#include "run/facet.h"
#include "run/run.h"

namespace vardento {

class MapLabels {
 public:
  // Reads IMAP= or PMAP=; a faulty one is told once and then not in force.
  MapLabels(Run& run, Facet facet);

  // Columns that a label can take, at least 1.
  int Width() const { return width_; }
  bool HasField() const { return !field_.IsEmpty(); }
  // What the field selects of a label, which may be blank; needs a field.
  std::string FieldOf(std::string_view label) const { return ExtractField(field_, label); }
  // The label of an entry as a map shows it: "X" in the place of a blank one.
  std::string Of(int entry) const;

 private:
  int DecideWidth() const;

  Run& run_;
  Facet facet_;
  FieldSpecification field_;
  int width_ = 1;
};

}  // namespace vardento
