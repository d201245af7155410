// Time controls: the periods of a control list, and the lists that `level` and `tc` describe.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

struct TimeControl {
  std::int32_t moves = 40;             // moves of this period; -1 for the rest of the game
  std::int32_t time_ms = 300000;       // added at the start of the period
  std::int32_t increment_ms = 0;       // added after each move
  std::int32_t repeat = -1;            // not 0: the period starts over instead of passing on

  bool operator==(const TimeControl&) const = default;
};

using TimeControlList = std::vector<TimeControl>;

// The control lists of both sides, White first.
struct TimeControlPair {
  TimeControlList white;
  TimeControlList black;
};

// The control that both sides have when the program starts: 40 moves in 5 minutes, repeating.
TimeControlList DefaultTimeControls();

// A control text that can't be used; what() is the reason the user reads.
class time_control_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The one repeating period of `level`: moves (0 for the whole game), base and increment in
// milliseconds. Raises time_control_error "argument out of bounds" unless moves >= 0, base >= 1
// and increment >= 0.
TimeControlList LevelControls(std::int32_t moves, std::int64_t base_ms, std::int64_t increment_ms);

// Reads the text of `tc`: triples of moves, minutes[:seconds] and increment seconds, the seconds
// possibly decimal; a ";"
// separates White's list from Black's. Raises time_control_error with "missing parameters",
// "integer argument expected" or "last time control must not terminate".
TimeControlPair ParseTimeControlText(const std::string& text);
