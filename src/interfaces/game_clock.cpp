#include "interfaces/game_clock.h"

#include <algorithm>

namespace {

constexpr std::int32_t MINIMUM_LIMIT_MS = 150;
constexpr std::int32_t MOVES_WITHOUT_COUNT = 30;  // planning horizon when a period has no end
// What a move costs beyond the stopwatch: the front end's clock also runs while the move crosses
// the pipes both ways and while the front end handles it. Measured at a few ms a move on a loaded
// machine; without this charge the difference adds up to a lost game over a few periods.
constexpr std::int64_t MOVE_LATENCY_MS = 10;

std::string ClockBlock(const char* title, const PlayerClock& clock) {
  return std::string("time (") + title + "):\nmoves_left: " + std::to_string(clock.moves_left) +
         "\nmilliseconds_left: " + std::to_string(clock.ms_left) +
         "\nout_of_time: " + (clock.ms_left < 0 ? "true" : "false") + "\n";
}

}  // namespace

void PlayerClock::Reset() {
  const TimeControl& first = controls.front();
  moves_left = first.moves;
  ms_left = first.time_ms;
  repeat = first.repeat;
  control_index = 0;
}

void PlayerClock::ApplyMove(std::int64_t elapsed_ms) {
  ms_left += controls[control_index].increment_ms - elapsed_ms;
  if (moves_left == -1) return;
  if (moves_left-- != 1) return;
  // A list that ends in a terminating period stays in it rather than running off the end.
  if (repeat == 0 && control_index + 1 < std::int32_t(controls.size())) ++control_index;
  const TimeControl& period = controls[control_index];
  ms_left += period.time_ms;
  moves_left = period.moves;
  repeat = period.repeat;
}

void GameClock::Start() {
  if (!stopwatch.valid) Now(stopwatch);
}

std::int64_t GameClock::Elapsed() {
  if (!stopwatch.valid) return 0;
  TimeStamp now;
  Now(now);
  const std::int64_t elapsed = MillisecondsBetween(stopwatch, now);
  stopwatch = now;
  return elapsed;
}

void GameClock::Stop() {
  clocks[active].ms_left -= Elapsed();
  stopwatch.valid = false;
}

void GameClock::SwitchSides() {
  const std::int64_t latency = stopwatch.valid ? MOVE_LATENCY_MS : 0;
  clocks[active].ApplyMove(Elapsed() + latency);
  active = 1 - active;
}

void GameClock::Reset(int active_colour) {
  for (PlayerClock& clock : clocks) clock.Reset();
  stopwatch.valid = false;
  active = active_colour;
}

void GameClock::SetControls(const TimeControlList& white, const TimeControlList& black,
                            int active_colour) {
  clocks[0].controls = white;
  clocks[1].controls = black;
  Reset(active_colour);
}

SearchTimeLimits TimeLimits(const PlayerClock& clock) {
  const std::int64_t left = std::int32_t(std::uint32_t(clock.ms_left));
  if (left < 1) return {MINIMUM_LIMIT_MS, MINIMUM_LIMIT_MS};
  std::int64_t n = clock.moves_left == -1 ? MOVES_WITHOUT_COUNT : clock.moves_left;
  if (n == 0) n = 1;  // no period has zero moves; this only keeps the division defined

  std::int64_t hard = left - std::int64_t(double(left) * 0.15) - n * 3000;
  hard = std::max<std::int64_t>(hard, MINIMUM_LIMIT_MS);
  if (clock.moves_left != -1) hard = std::max(hard, left / n);
  std::int64_t soft = left / (2 * n + 2);
  soft = std::max<std::int64_t>(soft, MINIMUM_LIMIT_MS);
  return {std::int32_t(hard), std::int32_t(soft)};
}

SearchTimeLimits GameTimeLimits(const PlayerClock& clock) {
  SearchTimeLimits limits = TimeLimits(clock);
  const std::int64_t left = std::int32_t(std::uint32_t(clock.ms_left));
  if (left < 1) return limits;
  const std::int64_t reserve = left / 8 + 300;
  const std::int64_t ceiling = std::max(left - reserve, left / 8);
  limits.max_time_limit = std::int32_t(std::min<std::int64_t>(limits.max_time_limit, ceiling));
  limits.variable_time_limit = std::min(limits.variable_time_limit, limits.max_time_limit);
  return limits;
}

std::string ClockStateText(const GameClock& clock, bool white_played_by_engine,
                           bool black_played_by_engine) {
  return ClockBlock("active side", clock.clocks[clock.active]) +
         ClockBlock("passive side", clock.clocks[1 - clock.active]) +
         "\nplayer1 played by engine: " + (white_played_by_engine ? "true" : "false") +
         "\nplayer2 played by engine: " + (black_played_by_engine ? "true" : "false") + "\n";
}
