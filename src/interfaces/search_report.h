// What the protocols read of a running or finished search to report on it. The fields carry the
// names of the search's own record, which fills one of these for each report.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "frame/time_stamp.h"

namespace ZephrinInterfaces {

struct SearchReport {
  std::uint16_t move_count = 0;      // root moves
  std::uint16_t moves_left = 0;      // root moves not finished in this iteration
  std::uint16_t depth = 0;           // the iteration
  std::uint64_t nodes = 0;
  std::int32_t score = 0;            // from the side to move at the root
  std::string current_move_text;     // SAN of the root move being searched
  std::vector<std::string> pv;       // SAN of the principal variation
  TimeStamp start_time;
  TimeStamp stop_time;
};

}  // namespace ZephrinInterfaces
