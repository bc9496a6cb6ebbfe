#include "platform/clock.h"

#include <ctime>

namespace vardento {

ClockTime ReadClock() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&now, &parts);
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min};
}

}  // namespace vardento
