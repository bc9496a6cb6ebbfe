// A whole run inside the test's process: from the words of the command line to the closed
// report, with the run's arrays at hand afterwards.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>
#include <vector>

#include "program/main_run.h"
#include "support/test_run.h"

namespace vardento::test {

// TMPDIR is the directory's "tmp" until the end, when the process stands again where it stood.
class OwnPlace {
 public:
  explicit OwnPlace(const TempDirectory& directory) {
    if (const char* temporary = getenv("TMPDIR")) temporary_ = temporary;
    setenv("TMPDIR", directory.NameOf("tmp").c_str(), 1);
    std::filesystem::create_directories(directory.NameOf("tmp"));
  }
  ~OwnPlace() {
    std::filesystem::current_path(start_);
    temporary_.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", temporary_.c_str(), 1);
  }

 private:
  std::string temporary_;
  std::filesystem::path start_ = std::filesystem::current_path();
};

class WholeRun {
 public:
  WholeRun() : run(console) { run.RunStamp = kRunStamp; }

  // Runs control.txt of the directory into `report` with the words behind them.
  int Execute(const std::vector<std::string>& words = {}, const std::string& mode = "BATCH=Y") {
    std::vector<std::string> line{directory.NameOf("control.txt"), directory.NameOf(report), mode};
    line.insert(line.end(), words.begin(), words.end());
    return MainRun(run, line);
  }

  TempDirectory directory;
  std::string report = "report.txt";
  OwnPlace place{directory};
  RecordingConsole console;
  Run run;
};

}  // namespace vardento::test
