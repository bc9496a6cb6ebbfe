// The time of day, in UTC: nothing that a run writes depends on the machine's time zone.
#pragma once

namespace vardento {

struct ClockTime {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0;  // month and day from 1
};

ClockTime ReadClock();

}  // namespace vardento
