#include <gtest/gtest.h>

#include "frame/control_exceptions.h"
#include "search/search.h"

namespace {

// A search whose start lies `ms` milliseconds in the past.
void StartedAgo(Search& search, std::int64_t ms) {
  Now(search.start_time);
  std::int64_t micros = search.start_time.seconds * 1000000 + search.start_time.microseconds - ms * 1000;
  search.start_time.seconds = micros / 1000000;
  search.start_time.microseconds = micros % 1000000;
}

bool Aborts(Search& search, std::uint64_t* countdown) {
  try {
    search.PollSearch(countdown);
  } catch (const search_aborted_exception& e) {
    EXPECT_FALSE(e.stopped_by_command);
    return true;
  }
  return false;
}

TEST(PollSearch, FirstIterationIgnoresTheClockForThreeSeconds) {
  Search search;
  search.mode = SEARCH_NORMAL;
  search.clock.Start(100, 50);
  search.clock.StartIteration();
  search.iteration = 1;
  StartedAgo(search, 2900);
  std::uint64_t countdown = 0;
  EXPECT_FALSE(Aborts(search, &countdown));

  search.mode = SEARCH_PUZZLE;  // a puzzle ends after three seconds, even in iteration 1
  EXPECT_FALSE(Aborts(search, &countdown));
  StartedAgo(search, 3100);
  EXPECT_TRUE(Aborts(search, &countdown));
}

TEST(PollSearch, ClockIsAskedOnlyWhenThinkingForAMove) {
  Search search;
  search.clock.Start(1000, 0);
  search.clock.StartIteration();
  search.clock.StartIteration();
  search.iteration = 2;
  StartedAgo(search, 1500);
  search.mode = SEARCH_ANALYZE;
  EXPECT_FALSE(Aborts(search, nullptr));
  search.mode = SEARCH_PONDERING;
  EXPECT_FALSE(Aborts(search, nullptr));
  search.PonderHit();  // now a normal search past its hard limit
  EXPECT_EQ(search.mode, SEARCH_NORMAL);
  EXPECT_TRUE(Aborts(search, nullptr));
}

TEST(ElapsedMs, PonderingBeforeAHitCountsSeventyPercent) {
  Search search;
  StartedAgo(search, 100000);
  search.ponder_hit_time = search.start_time;
  search.ponder_hit_time.seconds += 100;
  std::int64_t elapsed = search.ElapsedMs();
  EXPECT_GE(elapsed, 70000);
  EXPECT_LT(elapsed, 70000 + 1000);
}

}  // namespace
