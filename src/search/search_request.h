// What a command hands to the main loop to start a search: the mode, the limits, and a full copy
// of the game to search.
#pragma once

#include <cstdint>

#include "interfaces/user_board.h"

enum SearchMode : std::int32_t {
  SEARCH_NORMAL = 0,     // think for a move to play
  SEARCH_ANALYZE = 1,    // analyse until told to stop
  SEARCH_PONDERING = 2,  // think on the opponent's time
  SEARCH_PUZZLE = 3,     // find a reply to ponder on; at most 3000 ms and reads no input
};

// "normal", "analyze", "pondering" or "puzzle", as the log of a search's start shows it.
const char* SearchModeText(int mode);

struct SearchRequest {
  std::int32_t type = SEARCH_NORMAL;       // the SearchMode
  std::int32_t max_depth = 0;              // highest iteration to run, 0 for no limit
  std::int32_t max_time_limit = 0;         // hard limit in milliseconds, 0 for none
  std::int32_t variable_time_limit = 0;    // base time for the move in milliseconds, 0 for none
  UserBoard game;                          // what is to be searched, with its history
};
