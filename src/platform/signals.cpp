#include "platform/signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

namespace vardento {
namespace {

// A process has one set of signals; these are what a handler may touch.
std::atomic<int> interrupts{0};
std::atomic<bool> terminated{false};
std::atomic<int> wakeRead{-1};
std::atomic<int> wakeWrite{-1};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

extern "C" void CountSignal(int signal) {
  const int savedError = errno;
  if (signal == SIGINT) {
    interrupts.fetch_add(1);
  } else {
    terminated = true;
  }
  const char byte = 0;
  [[maybe_unused]] const ssize_t ignored = ::write(wakeWrite.load(), &byte, 1);
  errno = savedError;
}

void Count(int signal) {
  struct sigaction old {};
  if (sigaction(signal, nullptr, &old) == 0 && old.sa_handler == SIG_IGN) return;
  struct sigaction action {};
  action.sa_handler = CountSignal;
  sigemptyset(&action.sa_mask);
  action.sa_flags = 0;  // no restart: a blocked read must wake up
  sigaction(signal, &action, nullptr);
}

}  // namespace

void InstallSignalCounters() {
  if (wakeRead.load() < 0) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) == 0) {
      wakeRead = ends[0];
      wakeWrite = ends[1];
    }
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  Count(SIGINT);
  Count(SIGTERM);
  Count(SIGHUP);
  Count(SIGQUIT);  // the work files must go, however a user leaves
}

int InterruptSignals() { return interrupts.load(std::memory_order_relaxed); }
void ClearInterruptSignals() { interrupts = 0; }
bool TerminationSignalled() { return terminated.load(std::memory_order_relaxed); }
int SignalWakeDescriptor() { return wakeRead.load(); }

}  // namespace vardento
