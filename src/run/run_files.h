// The user's files in a run: what messages call each, its name, what the run does with it, and so
// whether another file may take its place.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/io_status.h"

namespace vardento {

class Run;

enum class FileUse { Read, Report, Output, Work };

struct RunFile {
  std::string caption;  // "DATA FILE", "IAFILE=", "PFILE=" ...
  std::string name;
  FileUse use;
  bool MayBeReplaced() const { return use == FileUse::Output || use == FileUse::Work; }
};

class RunFiles {
 public:
  // Once for each name and use, under the caption that came first.
  void Enter(std::string caption, std::string name, FileUse use);
  void Clear() { files_.clear(); }
  // The first file of this use that is the same plain file as `name`, whatever the spelling and the
  // links; null when there is none. Devices are no plain files.
  const RunFile* Find(const std::string& name, FileUse use) const;
  // True when an output file of this name would take the place of a file that must stay.
  bool IsKept(const std::string& name) const;

 private:
  std::vector<RunFile> files_;
};

// Opens the report and enters it into the run's files; a status.
IoStatus OpenReport(Run& run, const std::string& name, FileMode mode);
// Ends the run, and leaves the file as it was, when the report was given the name of a file that
// the run reads.
void KeepFromReport(Run& run, const std::string& name, std::string_view caption);
// Enters a file that the run reads into its files.
void EnterInput(Run& run, const std::string& name, std::string_view caption);

}  // namespace vardento
