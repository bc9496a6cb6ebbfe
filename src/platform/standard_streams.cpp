#include "platform/standard_streams.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace vardento {
namespace {

void WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t n = ::write(descriptor, text.data(), text.size());
    if (n > 0) {
      text.remove_prefix(static_cast<std::size_t>(n));
    } else if (n < 0 && errno == EAGAIN) {
      pollfd wait{descriptor, POLLOUT, 0};
      if (::poll(&wait, 1, -1) < 0 && errno != EINTR) return;
    } else if (n == 0 || errno != EINTR) {
      return;
    }
  }
}

}  // namespace

void HoldStandardStreams() {
  // The lowest free descriptor is the one that open() takes.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) >= 0) continue;
    if (::open("/dev/null", O_RDWR) < 0) ::open("/", O_RDONLY);  // fails at every read and write
  }
}

void WriteToStandardOutput(std::string_view text) { WriteAll(STDOUT_FILENO, text); }
void WriteToStandardError(std::string_view text) { WriteAll(STDERR_FILENO, text); }

std::string WithoutControls(std::string_view text) {
  std::string shown(text);
  for (char& c : shown) {
    if (static_cast<unsigned char>(c) < ' ' || c == 127) c = ' ';
  }
  return shown;
}

}  // namespace vardento
