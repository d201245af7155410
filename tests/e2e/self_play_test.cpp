// The engine plays a whole game against itself over XBoard, one "go" per move, as a front end
// would drive it; every move it sends is checked against the program's own move generator.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "board/move_generator.h"
#include "e2e/engine_process.h"
#include "interfaces/fen.h"
#include "interfaces/game_board.h"
#include "interfaces/move_text.h"

using namespace ZephrinInterfaces;

TEST(SelfPlayEndToEnd, SixtyMovesOrARuleEndWithOnlyLegalMoves) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
  auto is_result = [](const std::string& line) {
    return line.starts_with("1-0") || line.starts_with("0-1") || line.starts_with("1/2-1/2");
  };

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
      if (line.starts_with("move ")) move_text = line.substr(5);
      ASSERT_FALSE(line.starts_with("Illegal") || line.starts_with("Error") || is_result(line))
          << line << " at ply " << plies;
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
      if (is_result(line)) {
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
