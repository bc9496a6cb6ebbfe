#include "data/show_record.h"

#include <algorithm>

#include "data/delimited_record.h"
#include "run/messages.h"
#include "text/number_text.h"

namespace vardento {

namespace {

// The column, from 1, at which field `number` of the record begins; 0 when it has none.
int ColumnOfField(std::string_view record, char delim, int number) {
  FieldCursor cursor(record, DelimiterOf(delim));
  std::string_view field;
  for (int n = 1; cursor.Next(field); ++n) {
    if (n == number) return static_cast<int>(cursor.FieldStart()) + 1;
  }
  return 0;
}

}  // namespace

std::vector<std::string> RulerLines(int width) {
  const auto size = static_cast<std::size_t>(std::max(width, 1));
  std::vector<std::string> lines;
  std::size_t power = 1;
  while (power <= size / 10) power *= 10;
  for (; power >= 1; power /= 10) {
    std::string line(size, ' ');
    for (std::size_t column = power; column <= size; column += power) {
      line[column - 1] = static_cast<char>('0' + column / power % 10);
    }
    lines.push_back(std::move(line));
  }
  lines.emplace_back(size, '-');
  return lines;
}

std::string MarkLine(const std::vector<RecordMark>& marks) {
  std::string line;
  for (const RecordMark& mark : marks) {
    if (mark.column < 1) continue;
    const auto place = static_cast<std::size_t>(mark.column - 1);
    if (line.size() < place + 2) line.resize(place + 2, ' ');
    line[place] = '^';
    line[place + 1] = mark.letter;
  }
  return line;
}

std::vector<RecordMark> RecordMarks(const ControlSettings& settings, std::string_view record,
                                    const std::vector<RecordMark>& extra) {
  const int width = settings.XWIDE;
  int first = settings.ITEM1;
  int last = settings.ITEM1 + (settings.NI - 1) * width;
  int label = settings.NAME1;
  if (settings.DELIM != ' ') {
    first = ColumnOfField(record, settings.DELIM, settings.ITEM1);
    last = ColumnOfField(record, settings.DELIM, settings.ITEM1 + settings.NI - 1);
    label = ColumnOfField(record, settings.DELIM, settings.NAME1);
  } else if (!TrimRight(settings.FORMAT).empty()) {
    first = (settings.ITEM1 - 1) * width + 1;
    last = first + (settings.NI - 1) * width;
  }
  std::vector<RecordMark> marks{{first, 'I'}, {last, 'N'}, {label, 'P'}};
  for (RecordMark mark : extra) {
    if (settings.DELIM != ' ') mark.column = ColumnOfField(record, settings.DELIM, mark.column);
    marks.push_back(mark);
  }
  return marks;
}

void ShowRecord(Run& run, std::string_view title, std::string_view record, bool withRuler,
                const std::vector<RecordMark>& marks) {
  std::string text(TrimRight(record));
  BlankControlCharacters(text);
  WriteConsole(run, title);
  if (withRuler) {
    for (const std::string& line : RulerLines(static_cast<int>(text.size()))) {
      WriteConsole(run, line);
    }
  }
  WriteConsole(run, text);
  if (!marks.empty()) WriteConsole(run, MarkLine(marks));
}

}  // namespace vardento
