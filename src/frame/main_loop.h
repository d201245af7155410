// The one loop of the program: wait for a line, parse it into a command, execute it, and run the
// searches that commands ask for. The search calls back into it to take in input as it arrives.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "frame/input.h"
#include "interfaces/command.h"
#include "interfaces/game.h"
#include "search/search_request.h"

struct MainLoop {
  explicit MainLoop(std::unique_ptr<ZephrinInterfaces::Game> owned_game,
                    std::unique_ptr<InputSource> source = std::make_unique<StandardInput>());

  // Commands parsed and not yet deleted; the front one is the command in hand. A command stays
  // there until it has set `done` and ExecuteNextCommand has seen that, so it survives the
  // unwinding that its own search abort or request causes.
  std::deque<std::unique_ptr<ZephrinInterfaces::Command>> command_queue;
  std::deque<std::string> line_queue;  // raw lines not yet parsed
  std::unique_ptr<ZephrinInterfaces::Game> game;
  std::unique_ptr<InputSource> input;
  // Runs one search to its end, and calls SearchFinished before it returns: the game's search,
  // or a stand-in in tests.
  std::function<void(MainLoop&, const SearchRequest&)> run_search;
};

// Returns when `quit`, or the end of input, arrives.
void RunMainLoop(MainLoop& loop);
// With both queues empty: the prompt, then one blocking read.
void WaitForInput(MainLoop& loop);
// With no command in hand: parses the next waiting line; a parse error is reported and the line dropped.
void ParseNextLine(MainLoop& loop);
// Deletes the command in hand if it is done, else executes it; a failed command is reported and deleted.
void ExecuteNextCommand(MainLoop& loop);
// Called from inside a search: stops a search past the game's node limit, then runs every command
// whose line has arrived, in order.
void PollInput(MainLoop& loop);
// Runs the search a command asked for.
void StartSearch(MainLoop& loop, const SearchRequest& request);
// Tells the game that its search is over; see Game::SearchFinished.
void SearchFinished(MainLoop& loop, bool stopped_by_command);
// Waits for commands while "analysing" a finished game, until a command ends the wait.
void AnalyzeCompatibilityWait(MainLoop& loop);
