#include "frame/time_stamp.h"

#include <sys/time.h>
#include <unistd.h>

void Now(TimeStamp& stamp) {
  timeval now{};
  gettimeofday(&now, nullptr);
  stamp.seconds = now.tv_sec;
  stamp.microseconds = now.tv_usec;
  stamp.valid = true;
}

std::int64_t MillisecondsBetween(const TimeStamp& from, const TimeStamp& to) {
  std::int64_t seconds = to.seconds - from.seconds;
  std::int64_t microseconds = to.microseconds - from.microseconds;
  if (microseconds < 0) {
    seconds -= 1;
    microseconds += 1000000;
  }
  return seconds * 1000 + microseconds / 1000;
}

void SleepMilliseconds(int milliseconds) {
  if (milliseconds > 0) usleep(static_cast<useconds_t>(milliseconds) * 1000);
}
