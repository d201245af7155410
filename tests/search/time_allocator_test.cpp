#include "search/time_allocator.h"

#include <gtest/gtest.h>

namespace {

// Runs `count` iterations of a quiet search with the given score.
void QuietIterations(TimeAllocator& clock, int count, int score) {
  for (int i = 0; i < count; ++i) {
    clock.StartIteration();
    clock.RecordScore(score);
  }
}

TEST(TimeAllocator, FirstIterationIsNeverStoppedByTheClock) {
  TimeAllocator clock;
  clock.Start(100, 50);
  clock.StartIteration();
  EXPECT_FALSE(clock.ShouldStop(1000000, TIME_CHECK_PV_MOVE, 0));
  clock.StartIteration();
  EXPECT_TRUE(clock.ShouldStop(100, TIME_CHECK_PV_MOVE, 0));  // hard limit from iteration 2 on
}

TEST(TimeAllocator, IterationEndUsesFortyPercentAndLessWhenStable) {
  TimeAllocator clock;
  clock.Start(0, 1000);
  QuietIterations(clock, 2, 10);
  EXPECT_FALSE(clock.ShouldStop(399, TIME_CHECK_ITERATION_END, 0));
  EXPECT_TRUE(clock.ShouldStop(400, TIME_CHECK_ITERATION_END, 0));
  QuietIterations(clock, 3, 10);  // iteration 5 with two quiet records behind it
  EXPECT_TRUE(clock.IsStable());
  EXPECT_FALSE(clock.ShouldStop(279, TIME_CHECK_ITERATION_END, 0));
  EXPECT_TRUE(clock.ShouldStop(280, TIME_CHECK_ITERATION_END, 0));
}

TEST(TimeAllocator, OtherMovesGetMoreTimeWhenTheScoreFalls) {
  TimeAllocator clock;
  clock.Start(0, 1000);
  QuietIterations(clock, 2, 50);
  clock.StartIteration();  // iteration 3
  clock.RecordScore(50);
  EXPECT_FALSE(clock.ShouldStop(2399, TIME_CHECK_OTHER_MOVE, 0));
  EXPECT_TRUE(clock.ShouldStop(2400, TIME_CHECK_OTHER_MOVE, 0));
  TimeAllocator falling;
  falling.Start(0, 1000);
  QuietIterations(falling, 2, 50);
  falling.StartIteration();
  falling.RecordScore(20);  // 30 below the previous iteration
  EXPECT_FALSE(falling.ShouldStop(4799, TIME_CHECK_OTHER_MOVE, 0));
  EXPECT_TRUE(falling.ShouldStop(4800, TIME_CHECK_OTHER_MOVE, 0));
}

TEST(TimeAllocator, FailLowOfTheFirstMove) {
  TimeAllocator clock;
  clock.Start(0, 1000);
  QuietIterations(clock, 2, 0);
  clock.StartIteration();
  clock.upper = -300;  // d = 300 with a negative score: eight times
  EXPECT_FALSE(clock.ShouldStop(9599, TIME_CHECK_PV_MOVE, 1));
  EXPECT_TRUE(clock.ShouldStop(9600, TIME_CHECK_PV_MOVE, 1));

  TimeAllocator small;
  small.Start(0, 1000);
  QuietIterations(small, 2, 200);
  small.StartIteration();
  small.upper = 150;  // d = 50: twice
  EXPECT_FALSE(small.ShouldStop(2399, TIME_CHECK_PV_MOVE, 1));
  EXPECT_TRUE(small.ShouldStop(2400, TIME_CHECK_PV_MOVE, 1));
}

TEST(TimeAllocator, FailHighShortensAndInstabilityLengthens) {
  TimeAllocator clock;
  clock.Start(0, 1000);
  QuietIterations(clock, 2, 10);
  clock.StartIteration();
  clock.lower = 60;
  EXPECT_TRUE(clock.ShouldStop(600, TIME_CHECK_PV_MOVE, 2));  // 1.2 * 0.5
  EXPECT_FALSE(clock.ShouldStop(599, TIME_CHECK_PV_MOVE, 2));
  clock.unstable = true;
  EXPECT_FALSE(clock.ShouldStop(1049, TIME_CHECK_PV_MOVE, 2));  // and 1.75 times that
  EXPECT_TRUE(clock.ShouldStop(1050, TIME_CHECK_PV_MOVE, 2));
}

TEST(TimeAllocator, VolatileAfterFailsAndChangesAndRecordsKeepFails) {
  TimeAllocator clock;
  clock.Start(0, 1000);
  QuietIterations(clock, 2, 10);
  clock.failed_low = true;  // stays set: every later record shows it
  for (int i = 0; i < 3; ++i) {
    clock.StartIteration();
    clock.RecordScore(10);
  }
  ASSERT_EQ(clock.records.size(), 4u);
  EXPECT_EQ(clock.records.back().fail_type, 1);
  EXPECT_TRUE(clock.IsVolatile());  // 25 + 12 + 12 > 29
  EXPECT_FALSE(clock.IsStable());
  EXPECT_FALSE(clock.ShouldStop(927, TIME_CHECK_ITERATION_END, 0));  // 1000 * 0.8 * 1.45 = 1160
  EXPECT_TRUE(clock.ShouldStop(1160, TIME_CHECK_ITERATION_END, 0));
}

TEST(TimeAllocator, RecordScoreMarksABetterMove) {
  TimeAllocator clock;
  clock.Start(0, 0);
  clock.StartIteration();
  clock.RecordScore(5);
  EXPECT_FALSE(clock.best_changed);
  clock.RecordScore(3);
  EXPECT_FALSE(clock.best_changed);
  clock.RecordScore(9);
  EXPECT_TRUE(clock.best_changed);
  EXPECT_EQ(clock.iteration_score, 9);
  EXPECT_FALSE(clock.ShouldStop(1000000, TIME_CHECK_OTHER_MOVE, 0));  // no limits at all
}

}  // namespace
