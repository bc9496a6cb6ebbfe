// Starts the built program as a user would and waits for it, with a time limit and an environment
// of its own: TMPDIR below the test's directory, no locale, no terminal.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "support/temp_directory.h"

namespace vardento::test {

// A single run of a test is over within this time, also with sanitizers on a loaded machine.
inline constexpr std::chrono::seconds kTimeLimit{120};

struct ProgramResult {
  int status = -1;  // exit status; -1 when the process was ended by a signal or the time limit
  std::string output, errors;
};

// Turns this process into the program.
[[noreturn]] inline void Become(const TempDirectory& directory,
                                const std::vector<std::string>& arguments,
                                const std::string& temporary) {
  setenv("TMPDIR", temporary.c_str(), 1);
  setenv("LC_ALL", "C", 1);
  std::vector<char*> words{const_cast<char*>(VARDENTO_PROGRAM)};
  for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  if (chdir(directory.Path().c_str()) == 0) execv(VARDENTO_PROGRAM, words.data());
  _exit(127);
}

// The process of one program run that has not been waited for.
class Program {
 public:
  // Starts the program in `directory` with the words `arguments`; "TMPDIR" is `temporary`, by
  // default the directory's sub-directory "tmp".
  Program(const TempDirectory& directory, const std::vector<std::string>& arguments,
          std::string temporary = "")
      : directory_(directory) {
    static int number = 0;
    name_ = "." + std::to_string(++number);
    if (temporary.empty()) {
      temporary = directory.NameOf("tmp");
      std::filesystem::create_directories(temporary);
    }
    process_ = fork();
    if (process_ == 0) Execute(arguments, temporary);
  }
  ~Program() {
    if (process_ > 0) Wait();
  }

  pid_t Process() const { return process_; }

  ProgramResult Wait() {
    const auto limit = std::chrono::steady_clock::now() + kTimeLimit;
    int status = 0;
    while (waitpid(process_, &status, WNOHANG) == 0) {
      if (std::chrono::steady_clock::now() > limit) kill(process_, SIGKILL);
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    process_ = -1;
    ProgramResult result;
    if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
    result.output = directory_.Read(name_ + ".out");
    result.errors = directory_.Read(name_ + ".err");
    for (const char* end : {".out", ".err"}) unlink(directory_.NameOf(name_ + end).c_str());
    return result;
  }

 private:
  void Redirect(const std::string& file, int flags, int descriptor) {
    const int opened = open(file.c_str(), flags, 0600);
    if (opened < 0 || dup2(opened, descriptor) < 0) _exit(126);
  }
  [[noreturn]] void Execute(const std::vector<std::string>& arguments,
                            const std::string& temporary) {
    Redirect("/dev/null", O_RDONLY, 0);
    Redirect(directory_.NameOf(name_ + ".out"), O_CREAT | O_WRONLY, 1);
    Redirect(directory_.NameOf(name_ + ".err"), O_CREAT | O_WRONLY, 2);
    Become(directory_, arguments, temporary);
  }

  const TempDirectory& directory_;
  std::string name_;
  pid_t process_ = -1;
};

inline ProgramResult Launch(const TempDirectory& directory,
                            const std::vector<std::string>& arguments,
                            const std::string& temporary = "") {
  return Program(directory, arguments, temporary).Wait();
}

}  // namespace vardento::test
