// The run's output files: the letter that asks for each, the variable that names it, what menus
// call it, and who writes it. A new output file is a new row.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "run/run.h"

namespace vardento {

// When a file is written: behind the intake of the data, or behind the measurement.
enum class OutputStage { Intake, Results };

struct OutputFileRow {
  char code;                 // of TableRequest::OutputFileCode
  std::string_view caption;  // ends in the variable
  std::string ControlSettings::*name;
  void (*write)(Run&);  // null: later, not in this version
  OutputStage stage = OutputStage::Results;
  std::string_view Variable() const { return caption.substr(caption.rfind(' ') + 1); }
};

// All rows, in the order in which the files are written.
std::span<const OutputFileRow> OutputFiles();

// Enters the files that were given a name into the run's files. Ends the run, and leaves the report
// as it was, when two of them, or one and the report, are the same plain file.
void EnterOutputFiles(Run& run);
// Writes the files of the stage that were given a name.
void WriteOutputFiles(Run& run, OutputStage stage);

}  // namespace vardento
