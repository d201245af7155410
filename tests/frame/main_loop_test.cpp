// The queue discipline of the main loop: commands that abort a search run again from their
// beginning, commands that wait for a search's result run again after it, and input that arrives
// during a search is executed there.
#include "frame/main_loop.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

#include "frame/control_exceptions.h"
#include "interfaces/commands.h"
#include "interfaces/console_protocol.h"

using namespace ZephrinInterfaces;

namespace {

class ScriptedInput : public InputSource {
 public:
  explicit ScriptedInput(std::deque<std::string> script) : lines(std::move(script)) {}
  std::string ReadLine() override {
    if (lines.empty()) return "quit";
    std::string line = lines.front();
    lines.pop_front();
    return line;
  }
  bool InputAvailable() override { return !lines.empty(); }
  std::deque<std::string> lines;
};

// What the tests' commands and fake searches did, in order.
struct Record {
  std::vector<std::string> events;
  int changes = 0;
};

// Changes the game: aborts a running search first, so it must run again after the unwinding.
class ChangeCommand : public Command {
 public:
  ChangeCommand(std::string raw, Record& log) : Command(std::move(raw)), record(log) {}
  void Execute(Game& game) override {
    record.events.push_back("change executes");
    game.AbortSearch(true);
    ++record.changes;
    done = true;
  }
  Record& record;
};

// Asks for a search and is finished.
class RequestCommand : public Command {
 public:
  using Command::Command;
  void Execute(Game&) override {
    done = true;
    throw search_request_received_exception{};
  }
};

// Needs a search's result: asks for a search without being done, and shows the result afterwards.
class WaitingCommand : public Command {
 public:
  WaitingCommand(std::string raw, Record& log) : Command(std::move(raw)), record(log) {}
  void Execute(Game& game) override {
    record.events.push_back("waiting executes");
    if (game.hint == HINT_NONE) {
      game.hint = HINT_REQUESTED;
      throw search_request_received_exception{};
    }
    record.events.push_back("result " + std::to_string(game.hint));
    done = true;
  }
  Record& record;
};

// Console protocol with three extra words for the tests.
class TestProtocol : public ConsoleProtocol {
 public:
  explicit TestProtocol(Record& log) : record(log) {}
  std::unique_ptr<Command> ParseLine(const TokenizedLine& line) override {
    if (line.tokens[0] == "change") return std::make_unique<ChangeCommand>(line.raw, record);
    if (line.tokens[0] == "request") return std::make_unique<RequestCommand>(line.raw);
    if (line.tokens[0] == "waiting") return std::make_unique<WaitingCommand>(line.raw, record);
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
    while (state != SEARCH_STATE_HINT && (static_cast<ScriptedInput&>(*loop.input).InputAvailable() || !loop.command_queue.empty())) {
      PollInput(loop);
    }
    record.events.push_back("search ends by itself");
  } catch (const search_aborted_exception& abort) {
    record.events.push_back(abort.stopped_by_command ? "search stopped" : "search moves now");
  }
  loop.game->search_state = SEARCH_STATE_IDLE;
  if (loop.game->hint == HINT_REQUESTED) loop.game->hint = 1234;
}

class MainLoopTest : public ::testing::Test {
 protected:
  void SetUp() override { saved_ = std::cout.rdbuf(output_.rdbuf()); }
  void TearDown() override { std::cout.rdbuf(saved_); }

  // Runs the loop over the script, with searches of the given state.
  void Run(std::deque<std::string> script, int search_state = SEARCH_STATE_THINKING) {
    MainLoop loop(std::make_unique<Game>(std::make_unique<TestProtocol>(record_)),
                  std::make_unique<ScriptedInput>(std::move(script)));
    loop.run_search = [this, search_state](MainLoop& owner, const SearchRequest&) {
      FakeSearch(owner, record_, search_state);
    };
    RunMainLoop(loop);
    game_mode_ = loop.game->game_mode;
  }

  std::string Output() const { return output_.str(); }

  Record record_;
  int game_mode_ = -1;

 private:
  std::ostringstream output_;
  std::streambuf* saved_ = nullptr;
};

using Events = std::vector<std::string>;

}  // namespace

TEST_F(MainLoopTest, ACommandThatAbortsTheSearchRunsAgainAfterIt) {
  Run({"request", "ping 1", "change", "ping 2"});
  EXPECT_EQ(record_.events, (Events{"search starts", "change executes", "search stopped", "change executes"}));
  EXPECT_EQ(record_.changes, 1);
  // ping 1 is answered inside the search, without a prompt; the prompt returns afterwards.
  EXPECT_EQ(Output(), " \rWhite 1> pong 1\n \rWhite 1> pong 2\n \rWhite 1> ");
}

TEST_F(MainLoopTest, TwoCommandsInOnePollFinishAndAbortInTurn) {
  Run({"request", "ping 6000", "change"});
  EXPECT_EQ(record_.events, (Events{"search starts", "change executes", "search stopped", "change executes"}));
  EXPECT_EQ(Output(), " \rWhite 1> pong 6000\n \rWhite 1> ");
}

TEST_F(MainLoopTest, ACommandWaitingForTheSearchRunsAgainWithItsResult) {
  Run({"waiting", "ping 3"}, SEARCH_STATE_HINT);
  EXPECT_EQ(record_.events,
            (Events{"waiting executes", "search starts", "search ends by itself", "waiting executes", "result 1234"}));
  EXPECT_EQ(Output(), " \rWhite 1>  \rWhite 1> pong 3\n \rWhite 1> ");
}

TEST_F(MainLoopTest, MoveNowEndsTheSearchWithItsMoveAndIsIgnoredWithoutOne) {
  Run({"?", "request", "?", "ping 4"});
  EXPECT_EQ(record_.events, (Events{"search starts", "search moves now"}));
  EXPECT_EQ(Output(), " \rWhite 1> Command ignored (no search running)\n \rWhite 1>  \rWhite 1> pong 4\n \rWhite 1> ");
}

TEST_F(MainLoopTest, QuitStopsTheSearchAndTheLoop) {
  Run({"request", "quit", "ping 5"});
  EXPECT_EQ(record_.events, (Events{"search starts", "search stopped"}));
  EXPECT_EQ(Output(), " \rWhite 1> ");
}

TEST_F(MainLoopTest, ExitChecksOnlyOnceAndEndsTheAnalysis) {
  Run({"exit", "request", "exit", "ping 6"}, SEARCH_STATE_ANALYZING);
  EXPECT_EQ(record_.events, (Events{"search starts", "search stopped"}));
  EXPECT_EQ(game_mode_, GAME_MODE_FORCE);
  EXPECT_EQ(Output(), " \rWhite 1> Error (must be in analyze mode): exit\n \rWhite 1>  \rWhite 1> pong 6\n \rWhite 1> ");
}

TEST_F(MainLoopTest, EasyEndsOnlyAPonderSearch) {
  Run({"request", "easy", "ping 7"}, SEARCH_STATE_PONDERING);
  EXPECT_EQ(record_.events, (Events{"search starts", "search stopped"}));
  record_.events.clear();
  Run({"request", "easy", "ping 8"}, SEARCH_STATE_THINKING);
  EXPECT_EQ(record_.events, (Events{"search starts", "search ends by itself"}));
}

TEST_F(MainLoopTest, ErrorsOfTheSearchAndOfCommandsAreReportedAndTheLoopGoesOn) {
  MainLoop loop(std::make_unique<Game>(std::make_unique<TestProtocol>(record_)),
                std::make_unique<ScriptedInput>(std::deque<std::string>{"request", "sd -1", "ping 9"}));
  loop.run_search = [](MainLoop&, const SearchRequest&) {
    throw ErrorCommand(ErrorCommand::ERROR, "search failed", "request");
  };
  RunMainLoop(loop);
  EXPECT_EQ(Output(),
            " \rWhite 1> Error (search failed): request\n \rWhite 1> Error (argument out of bounds): sd -1\n"
            " \rWhite 1> pong 9\n \rWhite 1> ");
}

TEST_F(MainLoopTest, AnalyzeCompatibilityWaitPollsUntilACommandEndsIt) {
  MainLoop loop(std::make_unique<Game>(std::make_unique<TestProtocol>(record_)),
                std::make_unique<ScriptedInput>(std::deque<std::string>{"ping 10", "exit", "ping 11"}));
  AnalyzeCompatibilityWait(loop);
  EXPECT_EQ(loop.game->search_state, SEARCH_STATE_IDLE);
  // exit stays at the front of the queue and finishes when the loop runs it again.
  ASSERT_EQ(loop.command_queue.size(), 1u);
  EXPECT_FALSE(loop.command_queue.front()->done);
  RunMainLoop(loop);
  EXPECT_EQ(loop.game->game_mode, GAME_MODE_FORCE);
  EXPECT_EQ(Output(), "pong 10\n \rWhite 1> pong 11\n \rWhite 1> ");
}
