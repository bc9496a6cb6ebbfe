// The files and sub-lists of entries that a Control File names, line by line.
#pragma once

#include <string>
#include <string_view>

#include "lists/list_line.h"
#include "platform/text_file.h"
#include "run/run.h"

namespace vardento {

// One list while it is read. The lines that make no sense are told in one warning at its end.
class ListFile {
 public:
  // The list of the control variable `variable`, such as "IAFILE".
  ListFile(Run& run, std::string_view variable) : run_(run), variable_(variable) {}

  // Registers the list with the Edit menu under `caption`, says `announcement` and its name on the
  // console, and opens it. False when it can't be read: run.RunIoStatus tells why, the user has
  // been told, and a batch run is over.
  bool Open(std::string& fileName, std::string_view caption, std::string_view announcement);
  // As Open, for lists that a run can't do without.
  void OpenOrEnd(std::string& fileName, std::string_view caption, std::string_view announcement);

  // The next line that isn't blank once it has been cleaned; false at the end of the list. A read
  // failure ends the run. `rowNumbers` as for CleanListLine.
  bool Next(std::string& line, int rowNumbers = 0);
  // The next line as it stands; blank for the title in the head of a measure file.
  bool NextAsItStands(std::string& line);

  // The line given last makes no sense and is passed over. Blank lines, comments, titles and heads
  // of columns are not counted as such.
  void Refuse();

 private:
  void TellRefused();

  Run& run_;
  std::string_view variable_;
  TextReader reader_;
  std::string asItStands_;  // the line given last
  int rowNumbers_ = kEntryRow;
  int refused_ = 0;
  int firstPlace_ = 0;     // line number of the first line refused
  std::string firstText_;  // and what stands there
};

}  // namespace vardento
