#include "run/run_files.h"

#include <algorithm>
#include <utility>

#include "platform/directories.h"
#include "platform/io_status.h"
#include "run/messages.h"

namespace vardento {

void RunFiles::Enter(std::string caption, std::string name, FileUse use) {
  const auto isKnown = [&](const RunFile& file) { return file.use == use && file.name == name; };
  if (std::ranges::any_of(files_, isKnown)) return;
  files_.push_back({std::move(caption), std::move(name), use});
}

const RunFile* RunFiles::Find(const std::string& name, FileUse use) const {
  const auto file = std::ranges::find_if(files_, [&](const RunFile& other) {
    return other.use == use && IsSamePlainFile(name, other.name);
  });
  return file == files_.end() ? nullptr : &*file;
}

bool RunFiles::IsKept(const std::string& name) const {
  return std::ranges::any_of(files_, [&](const RunFile& other) {
    return !other.MayBeReplaced() && IsSamePlainFile(name, other.name);
  });
}

IoStatus OpenReport(Run& run, const std::string& name, FileMode mode) {
  const int status = run.report.Open(name, mode);
  if (status == kIoOk) run.files.Enter("THE REPORT OUTPUT FILE", name, FileUse::Report);
  return status;
}

void KeepFromReport(Run& run, const std::string& name, std::string_view caption) {
  if (!run.report.IsOpen() || run.files.Find(name, FileUse::Report) == nullptr) return;
  run.report.Abandon();
  FailRun(run, "PROBLEM: REPORT FILE HAS SAME NAME AS " + std::string(caption));
}

void EnterInput(Run& run, const std::string& name, std::string_view caption) {
  const bool isWork = run.workDirectory.IsWorkFile(name);
  run.files.Enter(std::string(caption), name, isWork ? FileUse::Work : FileUse::Read);
}

}  // namespace vardento
