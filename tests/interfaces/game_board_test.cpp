#include "interfaces/game_board.h"

#include <gtest/gtest.h>

#include "interfaces/game_test_helpers.h"

using namespace ZephrinInterfaces;
using namespace test_helpers;

// Each game is still on before its last move; `result` is null for a game that goes on after it.
TEST(GameEnd, MateStalemateAndDraws) {
  const struct {
    const char* fen;
    std::string moves;
    const char* result;
    const char* reason;
  } rows[] = {
      {"", "f3 e5 g4 Qh4", "0-1", "Black mates"},
      {"k7/8/1K6/8/8/8/8/7R w - - 0 1", "Rh8", "1-0", "White mates"},
      {"7k/4Q3/6K1/8/8/8/8/8 w - - 0 1", "Qf7", "1/2-1/2", "Stalemate"},
      // Fifty moves need a legal move: mate on the hundredth ply stays mate, a capture there resets the count.
      {"8/8/8/4k3/8/8/8/R3K3 w - - 98 80", "Ra2 Kd5", "1/2-1/2", "Fifthy move rule"},
      {"k7/8/1K6/8/8/8/8/7R w - - 99 80", "Rh8", "1-0", "White mates"},
      {"8/8/8/4k3/8/8/r7/R3K3 w - - 99 80", "Rxa2", nullptr, nullptr},
      // King and bishop against king and knight is a draw once the last pawn goes; two minor pieces
      // on one side, a pawn, or a rook keep the game going; a dead position read from text ends at once.
      {"7k/8/8/4p3/8/2B5/8/K6n w - - 0 1", "Bxe5+", "1/2-1/2", "Insufficient material"},
      {"7k/8/8/8/8/8/8/KNN5 w - - 0 1", "", nullptr, nullptr},
      {"7k/8/8/8/8/8/8/KBB5 b - - 0 1", "", nullptr, nullptr},
      {"7k/8/8/8/8/8/P7/K7 w - - 0 1", "", nullptr, nullptr},
      {"7k/8/8/8/8/8/8/KR6 w - - 0 1", "", nullptr, nullptr},
      {"7k/8/8/8/8/8/8/K7 w - - 0 1", "", "1/2-1/2", "Insufficient material"},
      // The position after 1. Nf3 occurs for the third time at ply 9.
      {"", "Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1 Ng8 Nf3", "1/2-1/2", "Threefold repetition"},
      // The en-passant square is part of a position: the position after 1. e4 doesn't count with
      // its later occurrences, so the game ends at ply 10 by the position after 1... Nf6.
      {"", "e4 Nf6 Nf3 Ng8 Ng1 Nf6 Nf3 Ng8 Ng1 Nf6", "1/2-1/2", "Threefold repetition"},
      // So are the castling rights: the position after 2. Ke2 with Black able to castle never returns.
      {"", "e4 e5 Ke2 Ke7 Ke1 Ke8 Ke2 Ke7 Ke1 Ke8 Ke2", nullptr, nullptr},
      {"", "e4 e5 Ke2 Ke7 Ke1 Ke8 Ke2 Ke7 Ke1 Ke8 Ke2 Ke7", "1/2-1/2", "Threefold repetition"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.fen) + " " + row.moves);
    UserBoard game = GameFrom(row.fen);
    const std::size_t last = row.moves.find_last_of(' ');
    if (!row.moves.empty()) {
      Play(game, row.moves.substr(0, last == std::string::npos ? 0 : last));
      EXPECT_FALSE(game.IsFinished());
      Play(game, row.moves.substr(last == std::string::npos ? 0 : last + 1));
    }
    EXPECT_EQ(game.Keys().size(), game.Moves().size());
    if (row.result == nullptr) {
      EXPECT_FALSE(game.IsFinished());
      continue;
    }
    EXPECT_TRUE(game.IsFinished());
    EXPECT_EQ(ResultText(game.Current().result), row.result);
    EXPECT_EQ(ReasonText(game.Current().result, game.Current().reason), row.reason);
  }
}

TEST(GameEnd, KeyHistoryStaysInsideItsStore) {
  // Far more reversible plies than the store holds, played past the end of the game the way the
  // record would if nothing stopped it: the history moves down and keeps the last 100 keys.
  GameBoard board = GameFrom("4k3/8/8/8/8/8/8/R3K3 w - - 0 1").Current();
  std::vector<std::uint64_t> keys;
  const char* tour[] = {"Ra2", "Kd8", "Rb2", "Kd7", "Rb1", "Kd8", "Ra1", "Ke8"};
  for (int ply = 0; ply < 400; ++ply) {
    GameBoard open(board);
    open.SetResult(RESULT_NONE, REASON_MATE);
    const Move move = test_helpers::Parse(open, tour[ply % 8]);
    board.PlayAndCheck(move, keys);
    ASSERT_LE(board.key_history - board.key_store, Board::MAX_HISTORY);
    ASSERT_TRUE(board.IsConsistent());
  }
  EXPECT_EQ(board.key_history[-8], board.Key());
  EXPECT_EQ(board.State().reversible_count, 400);
}
