// Services of the report that are not built yet: named calls in their places, which do nothing.
// Each moves to a file of its own when it is built.
#pragma once

#include <string_view>

#include "measure/entry_values.h"
#include "report/report_context.h"

namespace vardento {

// The part of a label that IMAP= or PMAP= selects; the whole label until it is built.
inline std::string_view MapLabel(const ControlSettings&, Facet, std::string_view label) {
  return label;
}

// After the run: the statistics comparison, an output file, or the file that takes the Table.
// False when the request ends there.
inline bool BeginAfterRunRequest(ReportContext&) { return true; }
inline void EndAfterRunRequest(ReportContext&) {}

}  // namespace vardento
