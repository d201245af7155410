#include "frame/time_stamp.h"

#include <gtest/gtest.h>

TEST(TimeStamp, DifferencesBorrowFromTheSeconds) {
  const TimeStamp a{true, 10, 900000};
  const TimeStamp b{true, 12, 100500};
  EXPECT_EQ(MillisecondsBetween(a, b), 1200);
  EXPECT_EQ(MillisecondsBetween(b, a), -1201);  // the microseconds borrow, the result rounds down
  EXPECT_EQ(MillisecondsBetween(a, a), 0);
  EXPECT_EQ(MillisecondsBetween(TimeStamp{true, 5, 999}, TimeStamp{true, 5, 1998}), 0);
}
