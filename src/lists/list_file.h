// The files and sub-lists of entries that a Control File names, line by line.
#pragma once

#include <string>
#include <string_view>

#include "platform/text_file.h"
#include "run/run.h"

namespace vardento {

// Registers the list with the Edit menu under `caption`, says `announcement` and its name on the
// console, and opens it. False when it can't be read: run.RunIoStatus tells why, the user has been
// told, and a batch run is over.
bool OpenListFile(Run& run, TextReader& reader, std::string& fileName, std::string_view caption,
                  std::string_view announcement);
// As OpenListFile, for lists that a run can't do without.
void OpenListFileOrEnd(Run& run, TextReader& reader, std::string& fileName,
                       std::string_view caption, std::string_view announcement);

// The next line that isn't blank once it has been cleaned; false at the end of the file. A read
// failure ends the run. `skipTitles` as for CleanListLine.
bool ReadListLine(Run& run, TextReader& reader, const std::string& fileName, std::string& line,
                  bool skipTitles = false);

}  // namespace vardento
