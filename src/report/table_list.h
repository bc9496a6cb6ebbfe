// The list of Tables: a row for each subtable says which requests mean it, what it needs and who
// prints it. A new Table is a new row.
#pragma once

#include <span>

#include "report/report_context.h"

namespace vardento {

// The subtables that a request asks for: all of them, or one number.
struct Subtable {
  bool whole = true;
  int number = 0;
};

struct TableRow {
  int table, subtable;
  bool (*asked)(const Subtable&);             // the request means this row
  bool (*when)(const Run&, const Subtable&);  // the settings want it printed
  void (*print)(ReportContext&);              // null: later, not in this version
  TableNeeds needs;
};

// The rows of a Table in the order in which they are printed; none for a number without a Table.
std::span<const TableRow> RowsOf(int table);

}  // namespace vardento
