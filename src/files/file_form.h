// What every output file shares: the three forms of CSV=, the head lines, the opening, writing and
// closing of the file and what happens when one of them fails.
#pragma once

#include <string>
#include <string_view>

#include "measure/entry_values.h"
#include "platform/text_file.h"
#include "run/run.h"

namespace vardento {

// Takes the blanks outside double quotes off a line and, with `csv` 'T', turns the commas outside
// quotes into tabs. A quote inside a label simply changes sides.
std::string clean_csv_line(std::string_view line, char csv);

// One output file while it is written. A failure is told once, marks the run as one that ends badly
// and stops the writing; the run goes on.
class OutputFile {
 public:
  explicit OutputFile(Run& run) : run_(run) {}

  // Creates the file, or replaces what it held. False after a failure.
  bool Open(const std::string& name);
  // Writes one line in the form that CSV= asks for, cut at 260 characters and without trailing
  // blanks. False after a failure: the caller stops.
  bool WriteLine(std::string_view line);
  // The first three head lines: what the file is for, the title, the stamp; then the names of the
  // columns in the two forms. Nothing with HLINES=N.
  bool WriteHead(std::string_view label, std::string_view fixedNames,
                 std::string_view separatedNames);
  // Closes the file; what was buffered may fail only now.
  bool Close();

  bool IsFixed() const { return run_.settings.CSV == 'N'; }

 private:
  bool Check(int status, char operation);
  bool IsInUse(const std::string& name) const;

  Run& run_;
  TextWriter writer_;
  std::string name_;
};

}  // namespace vardento
