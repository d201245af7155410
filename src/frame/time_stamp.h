// Wall-clock time stamps with millisecond differences, and sleeping.
#pragma once

#include <cstdint>

struct TimeStamp {
  bool valid = false;
  std::int64_t seconds = 0;
  std::int64_t microseconds = 0;
};

// Stamps the current time and marks the stamp valid.
void Now(TimeStamp& stamp);
// `to` minus `from`, in whole milliseconds.
std::int64_t MillisecondsBetween(const TimeStamp& from, const TimeStamp& to);
void SleepMilliseconds(int milliseconds);
