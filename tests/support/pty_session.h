// The program at a terminal of its own: types, reads what appears, sends Ctrl+C, hangs up.
#pragma once

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/program.h"

namespace vardento::test {

class PtySession {
 public:
  PtySession(const TempDirectory& directory, const std::vector<std::string>& arguments) {
    const std::string temporary = directory.NameOf("tmp");
    std::filesystem::create_directories(temporary);
    winsize size{24, 80, 0, 0};
    process_ = forkpty(&terminal_, nullptr, nullptr, &size);
    if (process_ < 0) throw std::runtime_error("no pseudo-terminal to be had (is /dev/pts there?)");
    if (process_ != 0) return;
    setenv("TERM", "dumb", 1);
    Become(directory, arguments, temporary);
  }
  ~PtySession() {
    HangUp();
    if (process_ > 0) {
      kill(process_, SIGKILL);
      waitpid(process_, nullptr, 0);
    }
  }
  PtySession(const PtySession&) = delete;
  PtySession& operator=(const PtySession&) = delete;

  // Waits until `text` has appeared behind what earlier calls found; false at the time limit or
  // when the program is gone.
  bool WaitFor(const std::string& text) {
    const auto limit = std::chrono::steady_clock::now() + kTimeLimit;
    std::size_t place = screen_.find(text, seen_);
    while (place == std::string::npos && std::chrono::steady_clock::now() < limit && ReadSome()) {
      place = screen_.find(text, seen_);
    }
    if (place == std::string::npos) return false;
    seen_ = place + text.size();
    return true;
  }
  void Type(const std::string& text) {
    if (write(terminal_, text.data(), text.size()) < 0) screen_ += "[typing failed]";
  }
  void PressControlC() { Type("\x03"); }
  void PressControlD() { Type("\x04"); }
  void HangUp() {
    if (terminal_ >= 0) close(terminal_);
    terminal_ = -1;
  }
  // Reads on until the program has ended; its exit status, -1 when a signal ended it, -2 when it
  // lives on at the time limit.
  int WaitForEnd() {
    const auto limit = std::chrono::steady_clock::now() + kTimeLimit;
    int status = 0;
    while (waitpid(process_, &status, WNOHANG) == 0) {
      if (std::chrono::steady_clock::now() > limit) return -2;
      if (terminal_ < 0 || !ReadSome()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  const std::string& Screen() const { return screen_; }

 private:
  // Waits up to 20 ms for output; false when the terminal's other end is closed.
  bool ReadSome() {
    pollfd waiting{terminal_, POLLIN, 0};
    if (poll(&waiting, 1, 20) <= 0) return true;
    char bytes[4096];
    const ssize_t got = read(terminal_, bytes, sizeof bytes);
    if (got <= 0) return false;
    screen_.append(bytes, static_cast<std::size_t>(got));
    return true;
  }

  int terminal_ = -1;
  pid_t process_ = -1;
  std::string screen_;
  std::size_t seen_ = 0;
};

}  // namespace vardento::test
