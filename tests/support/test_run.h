// A run for tests of single parts: a recording console, a directory of its own, the work directory
// prepared inside it, and a Control File opened as the start-up dialogue would have left it.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/io_status.h"
#include "run/messages.h"
#include "support/recording_console.h"
#include "support/temp_directory.h"

namespace vardento::test {

// The stamp of every test run: month, day, hour, minutes, year in 17 characters.
inline constexpr std::string_view kRunStamp = "Nov 22 12:34 2026";

class TestRun {
 public:
  // `controlText` is written to control.txt as it stands and opened on run.input.control.
  explicit TestRun(std::string_view controlText = "", bool batch = true) : run(console) {
    run.batch = batch;
    run.RunStamp = kRunStamp;
    run.startUp.ControlFileName = directory.Write("control.txt", controlText);
    run.startUp.ReportFileName = directory.NameOf("report.txt");
    run.startUp.StartDirectory = directory.Path();
    if (!run.workDirectory.Prepare(directory.NameOf("work"))) {
      throw std::runtime_error("the work directory of a test can't be prepared");
    }
    if (run.input.control.Open(run.startUp.ControlFileName) != kIoOk) {
      throw std::runtime_error("the Control File of a test can't be opened");
    }
  }

  // Opens the report, for tests of what is written to it; read it back with Report().
  void OpenReport() {
    static_cast<void>(vardento::OpenReport(run, run.startUp.ReportFileName, FileMode::Replace));
  }
  std::string Report() {
    static_cast<void>(run.report.Close());
    return directory.Read("report.txt");
  }

  TempDirectory directory;  // outlives the run and its files
  RecordingConsole console;
  Run run;
};

}  // namespace vardento::test
