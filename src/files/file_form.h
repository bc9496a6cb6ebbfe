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

// The facet label as head lines show it: 12 characters, its trailing blanks kept.
std::string HeadLabel(std::string_view label);
// The run's title without trailing blanks, at most `length` characters.
std::string_view HeadTitle(const Run& run, std::size_t length = 60);

// Text as a field of the separated forms; quotes in it stay as they are.
std::string Quoted(std::string_view text);
// The label as files show it: cut to its length in use (NAMLEN=, ITLEN=), at least one character.
std::string NameInFiles(Run& run, Facet facet, int entry);

// One output file while it is written. A failure is told once, marks the run as one that ends badly
// and stops the writing; the run goes on.
class OutputFile {
 public:
  explicit OutputFile(Run& run) : run_(run) {}

  // Creates the file, or replaces what it held. False after a failure, which is told under the name
  // with `variable` in front. A file that the run reads is none to write.
  bool Open(const std::string& name, std::string_view variable = "");
  static constexpr std::size_t kUncut = std::string_view::npos;
  // Writes one line in the form that CSV= asks for, cut at `length` characters and without trailing
  // blanks. False after a failure: the caller stops.
  bool WriteLine(std::string_view line, std::size_t length = kLineLength);
  // The first three head lines: what the file is for, the title, the stamp; then the names of the
  // columns in the two forms. Nothing with HLINES=N.
  bool WriteHead(std::string_view label, std::string_view fixedNames,
                 std::string_view separatedNames);
  // Closes the file; what was buffered may fail only now.
  bool Close();

  // Tells a failure of the file `name` that came before it could be opened; always false.
  bool Refuse(const std::string& name, int status);

  bool IsFixed() const { return run_.settings.CSV == 'N'; }

 private:
  static constexpr std::size_t kLineLength = 260;

  bool Check(int status, char operation);

  Run& run_;
  TextWriter writer_;
  std::string name_;
};

}  // namespace vardento
