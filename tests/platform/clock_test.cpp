#include "platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

namespace vardento::test {
namespace {

// The calendar of the standard library says the same, in UTC wherever the machine stands.
TEST(Clock, TellsTheTimeOfDayInUtc) {
  using namespace std::chrono;
  ASSERT_EQ(setenv("TZ", "Pacific/Auckland", 1), 0);
  const auto before = floor<minutes>(system_clock::now());
  const ClockTime time = ReadClock();
  const auto after = floor<minutes>(system_clock::now());
  ASSERT_EQ(unsetenv("TZ"), 0);
  const sys_days day = year{time.year} / time.month / time.day;
  const auto told = day + hours(time.hour) + minutes(time.minute);
  EXPECT_LE(before, told);
  EXPECT_LE(told, after);
}

}  // namespace
}  // namespace vardento::test
