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

}  // namespace

TEST(TimeControl, DefaultIsFortyMovesInFiveMinutes) {
  EXPECT_EQ(DefaultTimeControls(), LevelControls(40, 300, 0));
  const GameClock clock;
  EXPECT_EQ(clock.clocks[0].moves_left, 40);
  EXPECT_EQ(clock.clocks[1].ms_left, 300000);
  EXPECT_EQ(clock.clocks[1].repeat, -1);
  EXPECT_FALSE(clock.IsRunning());
  const SearchTimeLimits limits = TimeLimits(clock.clocks[0]);
  EXPECT_EQ(limits.max_time_limit, 135000);
  EXPECT_EQ(limits.variable_time_limit, 3658);
}

TEST(TimeControl, LevelWithIncrementForTheWholeGame) {
  PlayerClock clock = ClockWith(LevelControls(0, ToSeconds("5"), 3));
  EXPECT_EQ(clock.moves_left, -1);
  EXPECT_EQ(clock.ms_left, 300000);
  for (int move = 0; move < 50; ++move) clock.ApplyMove(1000);
  EXPECT_EQ(clock.moves_left, -1);
  EXPECT_EQ(clock.ms_left, 300000 + 50 * 2000);
  EXPECT_EQ(clock.control_index, 0);
  // Without a move count the plan is for 30 more moves.
  clock.ms_left = 300000;
  EXPECT_EQ(TimeLimits(clock).max_time_limit, 300000 - 45000 - 90000);
  EXPECT_EQ(TimeLimits(clock).variable_time_limit, 300000 / 62);
}

TEST(TimeControl, RepeatingPeriodsRefillTheClock) {
  // "level 40 0 0": ten seconds for every 40 moves.
  PlayerClock fast = ClockWith(LevelControls(40, ToSeconds("0"), 0));
  EXPECT_EQ(fast.ms_left, 10000);
  for (int move = 0; move < 39; ++move) fast.ApplyMove(100);
  EXPECT_EQ(fast.moves_left, 1);
  EXPECT_EQ(fast.ms_left, 10000 - 3900);
  fast.ApplyMove(100);
  EXPECT_EQ(fast.moves_left, 40);
  EXPECT_EQ(fast.ms_left, 20000 - 4000);
  EXPECT_EQ(fast.control_index, 0);

  PlayerClock classic = ClockWith(LevelControls(40, ToSeconds("5"), 0));
  for (int move = 0; move < 40; ++move) classic.ApplyMove(5000);
  EXPECT_EQ(classic.ms_left, 600000 - 200000);
  EXPECT_EQ(classic.moves_left, 40);

  // "level 40 1:30 0": ninety seconds.
  EXPECT_EQ(ClockWith(LevelControls(40, ToSeconds("1:30"), 0)).ms_left, 90000);
}

TEST(TimeControl, LevelBounds) {
  EXPECT_THROW(LevelControls(-1, 300, 0), time_control_error);
  EXPECT_THROW(LevelControls(40, 0, 0), time_control_error);
  EXPECT_THROW(LevelControls(40, 300, -1), time_control_error);
  try {
    LevelControls(40, 300, -1);
  } catch (const time_control_error& error) {
    EXPECT_STREQ(error.what(), "argument out of bounds");
  }
  EXPECT_EQ(LevelControls(0, 1, 0).front().moves, -1);
  // Huge arguments are held at what the clock can carry.
  EXPECT_GT(LevelControls(0, 2000000000, 2000000000).front().time_ms, 0);
}

TEST(TimeControl, TcPeriodsPassOnAndEndInTheRestOfTheGame) {
  const TimeControlPair pair = ParseTimeControlText("40 90 0 0 30 0");
  EXPECT_EQ(pair.white, pair.black);
  ASSERT_EQ(pair.white.size(), 2u);
  EXPECT_EQ(pair.white[0], (TimeControl{40, 5400000, 0, 0}));
  EXPECT_EQ(pair.white[1], (TimeControl{-1, 1800000, 0, 0}));

  PlayerClock clock = ClockWith(pair.white);
  for (int move = 0; move < 40; ++move) clock.ApplyMove(10000);
  EXPECT_EQ(clock.control_index, 1);
  EXPECT_EQ(clock.moves_left, -1);
  EXPECT_EQ(clock.repeat, 0);
  EXPECT_EQ(clock.ms_left, 5400000 - 400000 + 1800000);
  for (int move = 0; move < 100; ++move) clock.ApplyMove(0);
  EXPECT_EQ(clock.control_index, 1);

  const TimeControlPair split = ParseTimeControlText("0 5 1 ; 0 10 2");
  EXPECT_EQ(split.white, (TimeControlList{{-1, 300000, 1000, 0}}));
  EXPECT_EQ(split.black, (TimeControlList{{-1, 600000, 2000, 0}}));
  EXPECT_EQ(ParseTimeControlText("0 1:30 0").white.front().time_ms, 90000);
  EXPECT_EQ(ParseTimeControlText("0 0 0").white.front().time_ms, 10000);
}

TEST(TimeControl, TcErrors) {
  EXPECT_EQ(ErrorOf("40 5 0"), "last time control must not terminate");
  EXPECT_EQ(ErrorOf("0 5 0 40 5 0"), "last time control must not terminate");
  EXPECT_EQ(ErrorOf(""), "missing parameters");
  EXPECT_EQ(ErrorOf("   "), "missing parameters");
  EXPECT_EQ(ErrorOf("0 5"), "missing parameters");
  EXPECT_EQ(ErrorOf("0 5 0 ;"), "missing parameters");
  EXPECT_EQ(ErrorOf("; 0 5 0"), "missing parameters");
  EXPECT_EQ(ErrorOf("x 5 0"), "integer argument expected");
  EXPECT_EQ(ErrorOf("0 5:xx 0"), "integer argument expected");
  EXPECT_EQ(ErrorOf("0 5 +1"), "integer argument expected");
  EXPECT_EQ(ErrorOf("0 5 0 ; 0 5 y"), "integer argument expected");
}

TEST(TimeControl, TimeLimitsAtTheEdges) {
  PlayerClock clock;
  clock.moves_left = -1;
  clock.ms_left = 1000;  // "time 100"
  EXPECT_EQ(TimeLimits(clock).max_time_limit, 150);
  EXPECT_EQ(TimeLimits(clock).variable_time_limit, 150);
  clock.ms_left = -1;
  EXPECT_EQ(TimeLimits(clock).max_time_limit, 150);
  EXPECT_EQ(TimeLimits(clock).variable_time_limit, 150);
  clock.ms_left = 0;
  EXPECT_EQ(TimeLimits(clock).max_time_limit, 150);
  clock.ms_left = 1;
  EXPECT_EQ(TimeLimits(clock).max_time_limit, 150);
  // Only the low 32 bits of the time count.
  clock.ms_left = (std::int64_t{1} << 32) + 100000;
  const SearchTimeLimits wrapped = TimeLimits(clock);
  EXPECT_EQ(wrapped.max_time_limit, 150);
  EXPECT_EQ(wrapped.variable_time_limit, 100000 / 62);

  // With one move left the whole rest may be used.
  clock.moves_left = 1;
  clock.ms_left = 10000;
  EXPECT_EQ(TimeLimits(clock).max_time_limit, 10000);
  EXPECT_EQ(TimeLimits(clock).variable_time_limit, 2500);
  // With few moves left the hard limit is at least an even share.
  clock.moves_left = 20;
  clock.ms_left = 50000;
  EXPECT_EQ(TimeLimits(clock).max_time_limit, 2500);
  EXPECT_EQ(TimeLimits(clock).variable_time_limit, 1190);
}

TEST(GameClock, SwitchingResettingAndStopping) {
  GameClock clock;
  clock.SetControls(LevelControls(0, 60, 2), LevelControls(40, 300, 0), BLACK);
  EXPECT_EQ(clock.active, BLACK);
  EXPECT_EQ(clock.clocks[WHITE].ms_left, 60000);
  EXPECT_EQ(clock.clocks[BLACK].moves_left, 40);

  // Stopped: a move costs nothing but still counts.
  clock.SwitchSides();
  EXPECT_EQ(clock.active, WHITE);
  EXPECT_EQ(clock.clocks[BLACK].moves_left, 39);
  EXPECT_EQ(clock.clocks[BLACK].ms_left, 300000);
  clock.SwitchSides();
  EXPECT_EQ(clock.clocks[WHITE].ms_left, 62000);
  clock.Stop();
  EXPECT_EQ(clock.clocks[BLACK].ms_left, 300000);

  // Running: the stopwatch goes on for the other side.
  clock.Start();
  EXPECT_TRUE(clock.IsRunning());
  clock.SwitchSides();
  EXPECT_TRUE(clock.IsRunning());
  EXPECT_EQ(clock.active, WHITE);
  EXPECT_LE(clock.clocks[BLACK].ms_left, 300000);
  EXPECT_GT(clock.clocks[BLACK].ms_left, 300000 - 60000);
  clock.Stop();
  EXPECT_FALSE(clock.IsRunning());
  EXPECT_EQ(clock.Elapsed(), 0);

  clock.clocks[WHITE].ms_left = -5;
  clock.Reset(WHITE);
  EXPECT_EQ(clock.clocks[WHITE].ms_left, 60000);
  EXPECT_EQ(clock.clocks[BLACK].moves_left, 40);
  EXPECT_EQ(clock.clocks[BLACK].control_index, 0);
  EXPECT_FALSE(clock.IsRunning());
}

TEST(GameClock, StateText) {
  GameClock clock;
  clock.clocks[WHITE].ms_left = 123450;
  clock.clocks[BLACK].ms_left = -20;
  clock.clocks[BLACK].moves_left = 7;
  clock.active = BLACK;
  EXPECT_EQ(ClockStateText(clock, false, true),
            "time (active side):\nmoves_left: 7\nmilliseconds_left: -20\nout_of_time: true\n"
            "time (passive side):\nmoves_left: 40\nmilliseconds_left: 123450\nout_of_time: false\n"
            "\nplayer1 played by engine: false\nplayer2 played by engine: true\n");
}
