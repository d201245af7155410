// The queue discipline of the main loop: commands that abort a search run again from their
// beginning, commands that wait for a search's result run again after it, and input that arrives
// during a search is executed there.
#include "frame/main_loop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "frame/control_exceptions.h"
#include "interfaces/commands.h"
#include "interfaces/console_protocol.h"
#include "interfaces/game_test_helpers.h"

using namespace ZephrinInterfaces;
using namespace test_helpers;

namespace {

using Events = std::vector<std::string>;
using Script = std::deque<std::string>;

// What the tests' commands and fake searches did, in order.
struct Record {
  Events events;
  int changes = 0;
};

// A command whose body is given by the test protocol; the body sets `done`.
class TestCommand : public Command {
 public:
  TestCommand(std::string raw, std::function<void(Game&, bool&)> run) : Command(std::move(raw)), body(std::move(run)) {}
  void Execute(Game& game) override { body(game, done); }
  std::function<void(Game&, bool&)> body;
};

// Console protocol with three extra words for the tests.
class TestProtocol : public ConsoleProtocol {
 public:
  explicit TestProtocol(Record& log) : record(log) {}
  std::unique_ptr<Command> ParseLine(const TokenizedLine& line) override {
    Record& log = record;
    const std::string& word = line.tokens[0];
    if (word == "change") {  // changes the game: aborts a running search first, so it runs again after the unwinding
      return std::make_unique<TestCommand>(line.raw, [&log](Game& game, bool& done) {
        log.events.push_back("change executes");
        game.AbortSearch(true);
        ++log.changes;
        done = true;
      });
    }
    if (word == "request") {  // asks for a search and is finished
      return std::make_unique<TestCommand>(line.raw, [](Game&, bool& done) {
        done = true;
        throw search_request_received_exception{};
      });
    }
    if (word == "waiting") {  // asks for a search without being done, and shows its result afterwards
      return std::make_unique<TestCommand>(line.raw, [&log](Game& game, bool& done) {
        log.events.push_back("waiting executes");
        if (game.hint == HINT_NONE) {
          game.hint = HINT_REQUESTED;
          throw search_request_received_exception{};
        }
        log.events.push_back("result " + std::to_string(game.hint));
        done = true;
      });
    }
    return ConsoleProtocol::ParseLine(line);
  }
  Record& record;
};

// A search that polls the input until a command ends it or the input runs dry. Like the real
// search for a hint, a hint search reads no input.
void FakeSearch(MainLoop& loop, Record& record, int state) {
  loop.game->search_state = state;
  record.events.push_back("search starts");
  try {
    while (state != SEARCH_STATE_HINT && (loop.input->InputAvailable() || !loop.command_queue.empty())) {
      PollInput(loop);
    }
    record.events.push_back("search ends by itself");
  } catch (const search_aborted_exception& abort) {
    record.events.push_back(abort.stopped_by_command ? "search stopped" : "search moves now");
  }
  loop.game->search_state = SEARCH_STATE_IDLE;
  if (loop.game->hint == HINT_REQUESTED) loop.game->hint = 1234;
}

MainLoop LoopOver(Record& record, Script script) {
  return MainLoop(std::make_unique<Game>(std::make_unique<TestProtocol>(record)),
                  std::make_unique<ScriptedInput>(std::move(script)));
}

}  // namespace

TEST(MainLoop, CommandsDuringASearchRunThereOrAfterIt) {
  const std::string prompt = " \rWhite 1> ";
  const struct {
    const char* what;
    Script script;
    int search_state;
    Events events;
    std::string output;
    int game_mode = -1;  // checked when set
  } rows[] = {
      // ping 1 is answered inside the search, without a prompt; the prompt returns afterwards.
      {"a command that aborts the search runs again after it", {"request", "ping 1", "change", "ping 2"},
       SEARCH_STATE_THINKING, {"search starts", "change executes", "search stopped", "change executes"},
       prompt + "pong 1\n" + prompt + "pong 2\n" + prompt},
      {"two commands in one poll finish and abort in turn", {"request", "ping 6000", "change"},
       SEARCH_STATE_THINKING, {"search starts", "change executes", "search stopped", "change executes"},
       prompt + "pong 6000\n" + prompt},
      {"a command waiting for the search runs again with its result", {"waiting", "ping 3"}, SEARCH_STATE_HINT,
       {"waiting executes", "search starts", "search ends by itself", "waiting executes", "result 1234"},
       prompt + prompt + "pong 3\n" + prompt},
      {"move now ends the search with its move and is ignored without one", {"?", "request", "?", "ping 4"},
       SEARCH_STATE_THINKING, {"search starts", "search moves now"},
       prompt + "Command ignored (no search running)\n" + prompt + prompt + "pong 4\n" + prompt},
      {"quit stops the search and the loop", {"request", "quit", "ping 5"}, SEARCH_STATE_THINKING,
       {"search starts", "search stopped"}, prompt},
      {"exit checks only once and ends the analysis", {"exit", "request", "exit", "ping 6"}, SEARCH_STATE_ANALYZING,
       {"search starts", "search stopped"},
       prompt + "Error (must be in analyze mode): exit\n" + prompt + prompt + "pong 6\n" + prompt, GAME_MODE_FORCE},
      {"easy ends a ponder search", {"request", "easy", "ping 7"}, SEARCH_STATE_PONDERING,
       {"search starts", "search stopped"}, prompt + prompt + "pong 7\n" + prompt},
      {"easy leaves any other search alone", {"request", "easy", "ping 8"}, SEARCH_STATE_THINKING,
       {"search starts", "search ends by itself"}, prompt + "pong 8\n" + prompt},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Record record;
    CapturedOutput output;
    MainLoop loop = LoopOver(record, row.script);
    loop.run_search = [&record, &row](MainLoop& owner, const SearchRequest&) {
      FakeSearch(owner, record, row.search_state);
    };
    RunMainLoop(loop);
    EXPECT_EQ(record.events, row.events);
    // A command changes the game once, however often it runs.
    EXPECT_EQ(record.changes, std::count(row.script.begin(), row.script.end(), "change"));
    EXPECT_EQ(output.Text(), row.output);
    if (row.game_mode != -1) {
      EXPECT_EQ(loop.game->game_mode, row.game_mode);
    }
  }
}

TEST(MainLoop, ErrorsOfTheSearchAndOfCommandsAreReportedAndTheLoopGoesOn) {
  Record record;
  CapturedOutput output;
  MainLoop loop = LoopOver(record, {"request", "sd -1", "ping 9"});
  loop.run_search = [](MainLoop&, const SearchRequest&) {
    throw ErrorCommand(ErrorCommand::ERROR, "search failed", "request");
  };
  RunMainLoop(loop);
  EXPECT_EQ(output.Text(),
            " \rWhite 1> Error (search failed): request\n \rWhite 1> Error (argument out of bounds): sd -1\n"
            " \rWhite 1> pong 9\n \rWhite 1> ");
}

TEST(MainLoop, AnalyzeCompatibilityWaitPollsUntilACommandEndsIt) {
  Record record;
  CapturedOutput output;
  MainLoop loop = LoopOver(record, {"ping 10", "exit", "ping 11"});
  AnalyzeCompatibilityWait(loop);
  EXPECT_EQ(loop.game->search_state, SEARCH_STATE_IDLE);
  // exit stays at the front of the queue and finishes when the loop runs it again.
  ASSERT_EQ(loop.command_queue.size(), 1u);
  EXPECT_FALSE(loop.command_queue.front()->done);
  RunMainLoop(loop);
  EXPECT_EQ(loop.game->game_mode, GAME_MODE_FORCE);
  EXPECT_EQ(output.Text(), "pong 10\n \rWhite 1> pong 11\n \rWhite 1> ");
}
