// The three exceptions that carry control between the main loop, the commands and the search.
// They are not errors and derive from nothing.
#pragma once

#include "search/search_request.h"

// Raised by a command that wants a search; the main loop catches it and runs the search.
struct search_request_received_exception {
  SearchRequest request;
};

// Unwinds a running search to its driver. With stopped_by_command false the best move so far is
// played, as when the time is up; with true the search ends without a move.
struct search_aborted_exception {
  bool stopped_by_command = true;
};

// Ends the main loop, and the program.
struct quit_command_received_exception {};
