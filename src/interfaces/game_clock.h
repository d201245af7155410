// The clocks of the two sides as the game sees them, and the two time limits of a search.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "frame/time_stamp.h"
#include "interfaces/time_control.h"

// One side's clock: the control list and where the side stands in it.
struct PlayerClock {
  TimeControlList controls = DefaultTimeControls();  // at least one period
  std::int32_t moves_left = 40;        // moves until the period ends, -1 when it doesn't end
  std::int64_t ms_left = 300000;       // may be negative
  std::int32_t control_index = 0;      // the period in force
  std::int32_t repeat = -1;            // copied from the period in force

  // Back to the first period of the list.
  void Reset();
  // Charges one move that took `elapsed_ms`, adds the increment and passes to the next period
  // when this one ends.
  void ApplyMove(std::int64_t elapsed_ms);
};

// Both clocks and the stopwatch that measures the side to move.
struct GameClock {
  TimeStamp stopwatch;                 // valid while a clock runs; the start of the measurement
  std::array<PlayerClock, 2> clocks;   // White first
  std::int32_t active = 0;             // the clock of the side to move

  void Start();
  // Milliseconds since the last measurement (0 when stopped); the stamp moves to now.
  std::int64_t Elapsed();
  void Stop();
  // Charges the move to the active side and hands the clock to the other; a running stopwatch
  // keeps running. A timed move is charged a few ms more than measured, for the front end's latency.
  void SwitchSides();
  void Reset(int active_colour);
  void SetControls(const TimeControlList& white, const TimeControlList& black, int active_colour);
  bool IsRunning() const { return stopwatch.valid; }
};

// The hard and the planned time for one search, in milliseconds.
struct SearchTimeLimits {
  std::int32_t max_time_limit = 0;
  std::int32_t variable_time_limit = 0;
};

SearchTimeLimits TimeLimits(const PlayerClock& clock);

// The limits of a game search: `TimeLimits`, with the hard limit kept clear of the flag. On the last
// move of a period `TimeLimits` allows all the time left, but the search notices its limit only at
// the next poll (about an eighth of a second later), and the engine's own clock misses the time its
// moves spend in pipes and in the front end, a few ms a move that add up over a long game. So the
// hard limit leaves an eighth of the clock plus 300 ms, yet never less than an eighth of it.
SearchTimeLimits GameTimeLimits(const PlayerClock& clock);

// The state that `time` and `otim` leave in the log: the active clock, the passive one, and which
// side the engine plays. The caller writes it log-only.
std::string ClockStateText(const GameClock& clock, bool white_played_by_engine,
                           bool black_played_by_engine);
