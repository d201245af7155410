#include "interfaces/time_control.h"

#include <algorithm>
#include <limits>
#include <sstream>

#include "frame/string_conversions.h"

namespace {

// Milliseconds held to what a 32-bit field can carry.
std::int32_t ClampMs(std::int64_t ms) {
  return std::int32_t(std::clamp<std::int64_t>(ms, std::numeric_limits<std::int32_t>::min(),
                                               std::numeric_limits<std::int32_t>::max()));
}

std::vector<std::string> Words(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

TimeControlList ParseControlList(const std::string& text) {
  const std::vector<std::string> words = Words(text);
  if (words.empty() || words.size() % 3 != 0) throw time_control_error("missing parameters");
  TimeControlList controls;
  try {
    for (std::size_t i = 0; i < words.size(); i += 3) {
      TimeControl period;
      period.moves = ToInt(words[i]);
      if (period.moves == 0) period.moves = -1;
      period.time_ms = ClampMs(ToMilliseconds(words[i + 1]));
      period.increment_ms = ClampMs(ToDecimalMilliseconds(words[i + 2]));
      period.repeat = 0;
      controls.push_back(period);
    }
  } catch (const string_conversion_error&) {
    throw time_control_error("integer argument expected");
  }
  if (controls.back().moves != -1) throw time_control_error("last time control must not terminate");
  return controls;
}

}  // namespace

TimeControlList DefaultTimeControls() { return {TimeControl{40, 300000, 0, -1}}; }

TimeControlList LevelControls(std::int32_t moves, std::int64_t base_ms, std::int64_t increment_ms) {
  if (moves < 0 || base_ms < 1 || increment_ms < 0) throw time_control_error("argument out of bounds");
  return {TimeControl{moves == 0 ? -1 : moves, ClampMs(base_ms), ClampMs(increment_ms), -1}};
}

TimeControlPair ParseTimeControlText(const std::string& text) {
  const std::size_t separator = text.find(';');
  if (separator == std::string::npos) {
    TimeControlList both = ParseControlList(text);
    return {both, both};
  }
  return {ParseControlList(text.substr(0, separator)), ParseControlList(text.substr(separator + 1))};
}
