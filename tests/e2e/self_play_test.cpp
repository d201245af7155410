// The engine plays a whole game against itself over XBoard, one "go" per move, as a front end
// would drive it; every move it sends is checked against the program's own move generator.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "board/move_generator.h"
#include "interfaces/fen.h"
#include "interfaces/game_board.h"
#include "interfaces/move_text.h"

namespace {

using namespace ZephrinInterfaces;

// A running engine that is talked to line by line: the next command is written only after the
// answer to the last one has come, which a single batch of input can't do.
class EngineSession {
 public:
  EngineSession() {
    int to_engine[2], from_engine[2];
    if (pipe(to_engine) != 0 || pipe(from_engine) != 0) return;
    pid_ = fork();
    if (pid_ == 0) {
      dup2(to_engine[0], 0);
      dup2(from_engine[1], 1);
      for (int fd : {to_engine[0], to_engine[1], from_engine[0], from_engine[1]}) close(fd);
      execl(ZEPHRIN_BINARY, ZEPHRIN_BINARY, static_cast<char*>(nullptr));
      _exit(127);
    }
    close(to_engine[0]);
    close(from_engine[1]);
    signal(SIGPIPE, SIG_IGN);
    in_ = to_engine[1];
    out_ = from_engine[0];
  }
  ~EngineSession() {
    if (pid_ > 0 && status_ == -2) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
    if (in_ >= 0) close(in_);
    if (out_ >= 0) close(out_);
  }

  bool Started() const { return pid_ > 0 && in_ >= 0; }

  void Send(const std::string& text) {
    std::size_t written = 0;
    while (written < text.size()) {
      const ssize_t n = write(in_, text.data() + written, text.size() - written);
      if (n <= 0) return;
      written += static_cast<std::size_t>(n);
    }
  }

  // The next whole line of output without its newline; false on end of output or timeout.
  bool ReadLine(std::string& line, std::chrono::steady_clock::time_point deadline) {
    while (true) {
      const std::size_t end = buffer_.find('\n');
      if (end != std::string::npos) {
        line = buffer_.substr(0, end);
        buffer_.erase(0, end + 1);
        return true;
      }
      const auto left =
          std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
      if (left <= 0) return false;
      pollfd fd{out_, POLLIN, 0};
      if (poll(&fd, 1, static_cast<int>(left)) <= 0) return false;
      char chunk[4096];
      const ssize_t n = read(out_, chunk, sizeof chunk);
      if (n <= 0) return false;
      buffer_.append(chunk, static_cast<std::size_t>(n));
    }
  }

  // Closes standard input and waits for the exit status; -1 when the engine didn't exit normally.
  int Finish(std::chrono::steady_clock::time_point deadline) {
    close(in_);
    in_ = -1;
    while (std::chrono::steady_clock::now() < deadline) {
      int status = 0;
      if (waitpid(pid_, &status, WNOHANG) == pid_) {
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return status_;
      }
      usleep(10000);
    }
    return -2;
  }

 private:
  pid_t pid_ = -1;
  int in_ = -1;
  int out_ = -1;
  int status_ = -2;  // -2 while running
  std::string buffer_;
};

bool StartsWith(const std::string& text, const std::string& prefix) { return text.rfind(prefix, 0) == 0; }

}  // namespace

TEST(SelfPlayEndToEnd, SixtyMovesOrARuleEndWithOnlyLegalMoves) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::seconds(120);

  GameBoard board;
  ReadFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", board);
  std::vector<std::uint64_t> keys;

  EngineSession engine;
  ASSERT_TRUE(engine.Started());
  // Force mode with "go" for each move: the engine takes the side to move every time.
  engine.Send("xboard\nprotover 2\nnew\nforce\nsd 3\n");

  // Played on to the end by rule where it comes soon enough; at least sixty moves otherwise.
  constexpr int kMinPlies = 120;
  constexpr int kMaxPlies = 400;
  int plies = 0;
  std::string result_line;
  while (plies < kMaxPlies && !board.IsFinished()) {
    engine.Send("go\n");
    std::string line, move_text;
    while (move_text.empty()) {
      ASSERT_TRUE(engine.ReadLine(line, deadline)) << "no move at ply " << plies;
      if (StartsWith(line, "move ")) move_text = line.substr(5);
      ASSERT_FALSE(StartsWith(line, "Illegal") || StartsWith(line, "Error")) << line << " at ply " << plies;
      ASSERT_FALSE(StartsWith(line, "1-0") || StartsWith(line, "0-1") || StartsWith(line, "1/2-1/2"))
          << "a result before a move at ply " << plies << ": " << line;
    }

    Move move = 0;
    ASSERT_EQ(ParseMove(board, move_text, move), PARSE_OK) << move_text << " at ply " << plies;
    std::vector<Move> legal;
    GenerateLegalMoves(board, legal);
    ASSERT_NE(std::find(legal.begin(), legal.end(), move), legal.end()) << move_text << " at ply " << plies;
    // The engine writes a move as the program's own text for it.
    EXPECT_EQ(move_text, MoveToText(board, move)) << "at ply " << plies;
    board.PlayAndCheck(move, keys);
    ++plies;

    // After a move only the result of a game ended by rule, a resignation or a draw offer may
    // come; "ping" marks the end of what the engine has to say about this move.
    engine.Send("ping " + std::to_string(plies) + "\n");
    const std::string pong = "pong " + std::to_string(plies);
    while (true) {
      ASSERT_TRUE(engine.ReadLine(line, deadline)) << "no " << pong;
      if (line == pong) break;
      if (StartsWith(line, "1-0") || StartsWith(line, "0-1") || StartsWith(line, "1/2-1/2")) {
        result_line = line;
      } else if (line != "resign" && line != "offer draw") {
        ADD_FAILURE() << "unexpected line after move " << move_text << ": " << line;
      }
    }
    if (!board.IsFinished()) {
      EXPECT_EQ(result_line, "") << "at ply " << plies;
    }
  }

  if (board.IsFinished()) {
    EXPECT_EQ(result_line, ResultText(board.result) + " {" + ReasonText(board.result, board.reason) + "}");
  } else {
    EXPECT_GE(plies, kMinPlies);
  }
  engine.Send("quit\n");
  EXPECT_EQ(engine.Finish(deadline), 0);
}
