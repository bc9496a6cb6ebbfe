// FORMAT=: how the fields of a data record lie on the lines of its file. A format is checked and
// turned into a flat list of steps once; keys and per-item texts in data format and the data
// records themselves are then read through it.
//
// The language: a parenthesised list of items, upper case, blanks and commas between them free.
//   rAw   r fields, each from the next w columns; without w, XWIDE columns. Of a wider field the
//         last XWIDE characters are kept; a narrower one is filled up with blanks on the right.
//   nX    skips n columns.          Tn   goes to column n.
//   TRn, TLn  go n columns to the right, to the left (not before column 1).
//   n/    goes on with the n-th next line of the file, at its column 1.
//   r( )  repeats the items in the parentheses; up to 16 levels, the outermost included.
// Anything else is passed over, with the digits behind it. Columns behind a line's end are blank.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/text_file.h"
#include "run/run.h"

namespace vardento {

struct FormatStep {
  enum class Kind { Field, Skip, Column, NextLine };
  Kind kind = Kind::Field;
  // Field: its width; Skip: columns, negative to the left; Column: the column, from 1;
  // NextLine: lines.
  int amount = 0;
};

struct DataFormat {
  std::vector<FormatStep> steps;
  int fields = 0;  // fields of one data record, at least 1 in a sound format
};

// Parses `text` (any case, blanks at either end free) for fields of `xwide` characters. Returns
// what is wrong with it, in the words of the run's message, or nothing for a sound format; `format`
// is only then of use. fields x xwide is at most 32000.
std::string_view ParseDataFormat(std::string_view text, int xwide, DataFormat& format);

// Reads one data record, which may lie on several lines, from the reader's next line on.
// `record` becomes exactly fields x xwide characters, field k at offset (k - 1) x xwide, every
// byte as it stands in the file. `line` is scratch, kept by the caller so that nothing is allocated
// from record to record; it holds the last line read. A missing line that no field lies on is no
// failure.
// Returns kIoOk; kIoEndOfFile when no further line was there (`linesRead` is 0 at the proper end
// of the file, above 0 when the file ended inside the record; `record` then holds the fields read
// so far and blanks); or the reader's failure.
IoStatus ReadFormattedRecord(TextReader& reader, const DataFormat& format, int xwide,
                             std::string& record, std::string& line, int& linesRead);

// Sets settings.FORMAT to upper case, checks it and sets settings.formatFields; ends the run when
// it is faulty. Nothing when FORMAT= is blank. Called by CheckSettings.
void CheckFormat(Run& run);

}  // namespace vardento
