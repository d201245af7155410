#include "interfaces/game_clock.h"

#include <gtest/gtest.h>

#include "frame/string_conversions.h"

namespace {

PlayerClock ClockWith(const TimeControlList& controls) {
  PlayerClock clock;
  clock.controls = controls;
  clock.Reset();
  return clock;
}

std::string ErrorOf(const std::string& tc_text) {
  try {
    ParseTimeControlText(tc_text);
  } catch (const time_control_error& error) {
    return error.what();
  }
  return "accepted";
}

// The hard and soft limit that `limits` gives for a clock.
std::pair<std::int32_t, std::int32_t> Limits(SearchTimeLimits (*limits)(const PlayerClock&), std::int32_t moves_left,
                                             std::int64_t ms_left) {
  PlayerClock clock;
  clock.moves_left = moves_left;
  clock.ms_left = ms_left;
  const SearchTimeLimits result = limits(clock);
  return {result.max_time_limit, result.variable_time_limit};
}

}  // namespace

TEST(TimeControl, LevelPeriods) {
  EXPECT_EQ(DefaultTimeControls(), LevelControls(40, 300000, 0));

  // "level 0 5 3": the whole game, the increment accrues and moves_left stays -1.
  PlayerClock increment = ClockWith(LevelControls(0, ToMilliseconds("5"), 3000));
  for (int move = 0; move < 50; ++move) increment.ApplyMove(1000);
  EXPECT_EQ(increment.moves_left, -1);
  EXPECT_EQ(increment.ms_left, 300000 + 50 * 2000);

  // "level 40 0 0": ten seconds for every 40 moves, refilled after the 40th.
  PlayerClock fast = ClockWith(LevelControls(40, ToMilliseconds("0"), 0));
  for (int move = 0; move < 39; ++move) fast.ApplyMove(100);
  EXPECT_EQ(fast.moves_left, 1);
  EXPECT_EQ(fast.ms_left, 10000 - 3900);
  fast.ApplyMove(100);
  EXPECT_EQ(fast.moves_left, 40);
  EXPECT_EQ(fast.ms_left, 20000 - 4000);
  EXPECT_EQ(fast.control_index, 0);

  EXPECT_EQ(ClockWith(LevelControls(40, ToMilliseconds("1:30"), 0)).ms_left, 90000);
  EXPECT_THROW(LevelControls(-1, 300000, 0), time_control_error);
  EXPECT_THROW(LevelControls(40, 0, 0), time_control_error);
  EXPECT_THROW(LevelControls(40, 300000, -1), time_control_error);
  EXPECT_GT(LevelControls(0, 2000000000000, 0).front().time_ms, 0);  // held, not wrapped
}

TEST(TimeControl, TcPeriodsAndErrors) {
  // 40 moves in 90 minutes, then 30 minutes for the rest of the game.
  const TimeControlPair pair = ParseTimeControlText("40 90 0 0 30 0");
  EXPECT_EQ(pair.black, (TimeControlList{{40, 5400000, 0, 0}, {-1, 1800000, 0, 0}}));
  PlayerClock clock = ClockWith(pair.white);
  for (int move = 0; move < 40; ++move) clock.ApplyMove(10000);
  EXPECT_EQ(clock.control_index, 1);
  EXPECT_EQ(clock.moves_left, -1);
  EXPECT_EQ(clock.ms_left, 5400000 - 400000 + 1800000);

  const TimeControlPair split = ParseTimeControlText("0 5 1 ; 0 10 2");
  EXPECT_EQ(split.white, (TimeControlList{{-1, 300000, 1000, 0}}));
  EXPECT_EQ(split.black, (TimeControlList{{-1, 600000, 2000, 0}}));
  EXPECT_EQ(ParseTimeControlText("0 0:08.5 0.1").white, (TimeControlList{{-1, 8500, 100, 0}}));

  EXPECT_EQ(ErrorOf("40 5 0"), "last time control must not terminate");
  EXPECT_EQ(ErrorOf("0 5 0 40 5 0"), "last time control must not terminate");
  for (const char* missing : {"", "   ", "0 5", "0 5 0 ;", "; 0 5 0"}) {
    EXPECT_EQ(ErrorOf(missing), "missing parameters") << missing;
  }
  for (const char* bad : {"x 5 0", "0 5:xx 0", "0 5 +1", "0 5 0 ; 0 5 y", "0 5 .5", "0 5.5 0"}) {
    EXPECT_EQ(ErrorOf(bad), "integer argument expected") << bad;
  }
}

TEST(TimeControl, TimeLimitsAtTheEdges) {
  using Pair = std::pair<std::int32_t, std::int32_t>;
  EXPECT_EQ(Limits(TimeLimits, 40, 300000), Pair(135000, 3658));
  EXPECT_EQ(Limits(TimeLimits, -1, 300000), Pair(300000 - 45000 - 90000, 300000 / 62));
  EXPECT_EQ(Limits(TimeLimits, -1, 1000), Pair(150, 150));  // "time 100" without a move count
  EXPECT_EQ(Limits(TimeLimits, -1, -1), Pair(150, 150));
  EXPECT_EQ(Limits(TimeLimits, 40, 0), Pair(150, 150));
  EXPECT_EQ(Limits(TimeLimits, -1, (std::int64_t{1} << 32) + 100000), Pair(150, 100000 / 62));  // low 32 bits only
  EXPECT_EQ(Limits(TimeLimits, 1, 10000), Pair(10000, 2500));  // the last move of a period may use everything
  EXPECT_EQ(Limits(TimeLimits, 20, 50000), Pair(2500, 1190));  // at least an even share

  // A game search keeps a reserve before the flag on the last move of a period.
  EXPECT_EQ(Limits(GameTimeLimits, 1, 10000), Pair(10000 - 1250 - 300, 2500));
  EXPECT_EQ(Limits(GameTimeLimits, 1, 800), Pair(800 - 100 - 300, 200));
  EXPECT_EQ(Limits(GameTimeLimits, 2, 800), Pair(400, 150));  // half the clock is within the reserve
  EXPECT_EQ(Limits(GameTimeLimits, 1, 320), Pair(40, 40));  // an eighth at least; the plan never exceeds it
  // Where the clock already leaves room, the limits stand as they are.
  EXPECT_EQ(Limits(GameTimeLimits, 40, 300000), Pair(135000, 3658));
  EXPECT_EQ(Limits(GameTimeLimits, -1, 1000), Pair(150, 150));
  EXPECT_EQ(Limits(GameTimeLimits, -1, -1), Pair(150, 150));
}

TEST(GameClock, SwitchingResettingAndStopping) {
  GameClock clock;
  clock.SetControls(LevelControls(0, 60000, 2000), LevelControls(40, 300000, 0), BLACK);
  EXPECT_EQ(clock.active, BLACK);

  // Stopped: a move costs nothing but still counts.
  clock.SwitchSides();
  EXPECT_EQ(clock.active, WHITE);
  EXPECT_EQ(clock.clocks[BLACK].moves_left, 39);
  EXPECT_EQ(clock.clocks[BLACK].ms_left, 300000);
  clock.SwitchSides();
  EXPECT_EQ(clock.clocks[WHITE].ms_left, 62000);

  // Running: the stopwatch goes on for the other side.
  clock.Start();
  clock.SwitchSides();
  EXPECT_TRUE(clock.IsRunning());
  EXPECT_EQ(clock.active, WHITE);
  EXPECT_GT(clock.clocks[BLACK].ms_left, 300000 - 60000);
  EXPECT_LE(clock.clocks[BLACK].ms_left, 300000 - 10);  // a timed move also pays for the pipes
  clock.Stop();
  EXPECT_FALSE(clock.IsRunning());
  EXPECT_EQ(clock.Elapsed(), 0);

  clock.clocks[WHITE].ms_left = -5;
  clock.Reset(WHITE);
  EXPECT_EQ(clock.clocks[WHITE].ms_left, 60000);
  EXPECT_EQ(clock.clocks[BLACK].moves_left, 40);
}

TEST(GameClock, StateText) {
  GameClock clock;
  clock.clocks[BLACK].ms_left = -20;
  clock.clocks[BLACK].moves_left = 7;
  clock.active = BLACK;
  EXPECT_EQ(ClockStateText(clock, false, true),
            "time (active side):\nmoves_left: 7\nmilliseconds_left: -20\nout_of_time: true\n"
            "time (passive side):\nmoves_left: 40\nmilliseconds_left: 300000\nout_of_time: false\n"
            "\nplayer1 played by engine: false\nplayer2 played by engine: true\n");
}
