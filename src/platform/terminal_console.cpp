#include "platform/terminal_console.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>

#include "platform/signals.h"
#include "platform/standard_streams.h"
#include "platform/text_file.h"

namespace vardento {
namespace {

// Standard input for reads that never block: a key that sends a signal also empties the terminal,
// and a read that starts just then would wait for more. The terminal is opened once more for that,
// since the flag on the inherited descriptor would be the shell's too.
int OpenInput() {
  char name[256] = "/dev/tty";  // whoever owns the device, its own processes may open this one
  const bool own = ::tcgetpgrp(STDIN_FILENO) >= 0;
  if (!own && ::ttyname_r(STDIN_FILENO, name, sizeof name) != 0) return STDIN_FILENO;
  const int opened = ::open(name, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  return opened < 0 ? STDIN_FILENO : opened;
}

}  // namespace

TerminalConsole::TerminalConsole() : input_(OpenInput()) {}

TerminalConsole::~TerminalConsole() {
  if (input_ != STDIN_FILENO) ::close(input_);
}

void TerminalConsole::WriteLine(std::string_view text) {
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  WriteToStandardOutput(WithoutControls(text) + "\n");
  partPending_ = false;
}

void TerminalConsole::WritePart(std::string_view text) {
  WriteToStandardOutput(WithoutControls(text));
  partPending_ = true;
}

bool TerminalConsole::ReadLine(std::string& line) {
  line.clear();
  while (!IsClosing() && Interrupts() <= interruptsSeen) {
    if (TakeLine(line)) {
      partPending_ = false;
      return true;
    }
    if (inputEnded_) break;
    if (WaitForInput()) ReadInput();
  }
  if (partPending_) WriteLine("");  // nobody has ended the prompt's line
  return false;
}

// Takes the first whole line from what was typed; at the end of input, the rest.
bool TerminalConsole::TakeLine(std::string& line) {
  std::size_t end = typed_.find('\n');
  if (end == std::string::npos) {
    if (!inputEnded_ || typed_.empty()) return false;
    end = typed_.size();
  }
  line = typed_.substr(0, end);
  typed_.erase(0, end + 1);
  if (!line.empty() && line.back() == '\r') line.pop_back();
  if (line.size() > kMaxLineLength) line.resize(kMaxLineLength);
  return true;
}

// True when there is input; false when only a signal has come.
bool TerminalConsole::WaitForInput() {
  pollfd waits[2] = {{input_, POLLIN, 0}, {SignalWakeDescriptor(), POLLIN, 0}};
  if (::poll(waits, 2, -1) < 0) {
    inputEnded_ = errno != EINTR;
    return false;
  }
  if (waits[1].revents != 0) {
    char bytes[64];
    while (::read(waits[1].fd, bytes, sizeof bytes) > 0) {
    }
    return false;
  }
  return waits[0].revents != 0;
}

void TerminalConsole::ReadInput() {
  char bytes[4096];
  const ssize_t n = ::read(input_, bytes, sizeof bytes);
  if (n > 0) {
    // What stands beyond the longest line is not kept.
    if (typed_.size() > 2 * kMaxLineLength && typed_.find('\n') == std::string::npos) {
      typed_.resize(kMaxLineLength);
    }
    typed_.append(bytes, static_cast<std::size_t>(n));
  } else if (n == 0 || (errno != EINTR && errno != EAGAIN)) {
    inputEnded_ = true;
  }
}

int TerminalConsole::Interrupts() const { return InterruptSignals(); }
void TerminalConsole::ClearInterrupts() { ClearInterruptSignals(); }
bool TerminalConsole::IsClosing() const { return TerminationSignalled(); }

std::string TerminalConsole::AskForFile(std::string_view title) {
  WritePart(std::string(title) + ": ");
  std::string line;
  if (!ReadLine(line)) return {};
  const std::size_t first = line.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return line.substr(first, line.find_last_not_of(' ') + 1 - first);
}

}  // namespace vardento
