#include "search/time_allocator.h"

#include <gtest/gtest.h>

namespace {

// A clock with a base time of one second, after `count` quiet iterations of the given score.
TimeAllocator After(int count, int score) {
  TimeAllocator clock;
  clock.Start(0, 1000);
  for (int i = 0; i < count; ++i) {
    clock.StartIteration();
    clock.RecordScore(score);
  }
  return clock;
}

// The clock grants exactly `ms` to this check: it stops at ms, not one millisecond before.
void ExpectLimit(TimeAllocator& clock, std::int64_t ms, TimeCheckKind kind, int fail_state) {
  EXPECT_FALSE(clock.ShouldStop(ms - 1, kind, fail_state)) << ms;
  EXPECT_TRUE(clock.ShouldStop(ms, kind, fail_state)) << ms;
}

TEST(TimeAllocator, FirstIterationIsNeverStoppedAndRecordsMarkABetterMove) {
  TimeAllocator clock;
  clock.Start(100, 50);
  clock.StartIteration();
  EXPECT_FALSE(clock.ShouldStop(1000000, TIME_CHECK_PV_MOVE, 0));
  clock.StartIteration();
  EXPECT_TRUE(clock.ShouldStop(100, TIME_CHECK_PV_MOVE, 0));  // hard limit from iteration 2 on

  TimeAllocator unlimited;
  unlimited.Start(0, 0);
  unlimited.StartIteration();
  for (auto [score, changed] : {std::pair{5, false}, {3, false}, {9, true}}) {
    unlimited.RecordScore(score);
    EXPECT_EQ(unlimited.best_changed, changed) << score;
  }
  EXPECT_EQ(unlimited.iteration_score, 9);
  EXPECT_FALSE(unlimited.ShouldStop(1000000, TIME_CHECK_OTHER_MOVE, 0));  // no limits at all
}

TEST(TimeAllocator, StableIterationsEndSoonerAndFallingScoresGetMoreTime) {
  TimeAllocator clock = After(2, 10);
  ExpectLimit(clock, 400, TIME_CHECK_ITERATION_END, 0);  // forty percent
  TimeAllocator stable = After(5, 10);  // iteration 5 with two quiet records behind it
  EXPECT_TRUE(stable.IsStable());
  ExpectLimit(stable, 280, TIME_CHECK_ITERATION_END, 0);

  TimeAllocator other = After(3, 50);
  ExpectLimit(other, 2400, TIME_CHECK_OTHER_MOVE, 0);
  TimeAllocator falling = After(2, 50);
  falling.StartIteration();
  falling.RecordScore(20);  // 30 below the previous iteration
  ExpectLimit(falling, 4800, TIME_CHECK_OTHER_MOVE, 0);
}

TEST(TimeAllocator, FailsAndInstability) {
  // A fail low of the first move: d = 300 with a negative score gives eight times, d = 50 twice.
  TimeAllocator low = After(2, 0);
  low.StartIteration();
  low.upper = -300;
  ExpectLimit(low, 9600, TIME_CHECK_PV_MOVE, 1);
  TimeAllocator small = After(2, 200);
  small.StartIteration();
  small.upper = 150;
  ExpectLimit(small, 2400, TIME_CHECK_PV_MOVE, 1);

  TimeAllocator high = After(2, 10);
  high.StartIteration();
  high.lower = 60;
  ExpectLimit(high, 600, TIME_CHECK_PV_MOVE, 2);  // 1.2 * 0.5
  high.unstable = true;
  ExpectLimit(high, 1050, TIME_CHECK_PV_MOVE, 2);  // and 1.75 times that

  TimeAllocator fails = After(2, 10);
  fails.failed_low = true;  // stays set: every later record shows it
  for (int i = 0; i < 3; ++i) {
    fails.StartIteration();
    fails.RecordScore(10);
  }
  ASSERT_EQ(fails.records.size(), 4u);
  EXPECT_EQ(fails.records.back().fail_type, 1);
  EXPECT_TRUE(fails.IsVolatile());  // 25 + 12 + 12 > 29
  EXPECT_FALSE(fails.IsStable());
  ExpectLimit(fails, 1160, TIME_CHECK_ITERATION_END, 0);  // 1000 * 0.8 * 1.45
}

}  // namespace
