// The display of a data file's first record, by which the user sees whether the columns are right.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "run/run.h"

namespace vardento {

// A mark below the record: "^" in the column (from 1), the letter behind it.
struct RecordMark {
  int column;
  char letter;
};

// Lines of digits that number the columns 1..width, the widest power of ten first: a line has the
// digit of its power in each column where it changes. The last line is of dashes.
std::vector<std::string> RulerLines(int width);

// One line with all marks, set in order; a mark may cover part of an earlier one.
std::string MarkLine(const std::vector<RecordMark>& marks);

// Where the first and the last response and the label stand in `record`. With DELIM= the places of
// the fields are looked up in it, also for the columns of `extra`, which come last.
std::vector<RecordMark> RecordMarks(const ControlSettings& settings, std::string_view record,
                                    const std::vector<RecordMark>& extra = {});

// Writes title, ruler if asked for, the record with its control characters blanked, and the marks
// if there are any, on the console.
void ShowRecord(Run& run, std::string_view title, std::string_view record, bool withRuler,
                const std::vector<RecordMark>& marks);

}  // namespace vardento
