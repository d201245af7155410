#include "interfaces/user_board.h"

#include <gtest/gtest.h>

#include "interfaces/game_test_helpers.h"

using namespace test_helpers;

namespace {

const char* const START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// Everything a caller can see of a game, for comparing two of them.
void ExpectSameGame(const UserBoard& a, const UserBoard& b) {
  auto seen = [](const UserBoard& g) {
    return std::tuple(PositionToFen(g), g.Moves(), g.NextMoves(), g.Keys(), g.FirstPly(), g.Current().result,
                      g.Current().reason, g.Current().Key());
  };
  EXPECT_EQ(seen(a), seen(b));
}

}  // namespace

TEST(UserBoard, FenRoundTrips) {
  const UserBoard start;
  EXPECT_EQ(PositionToFen(start), START_FEN);
  EXPECT_EQ(start.Current().reason, REASON_MATE);

  // The text forms themselves are tested with the FEN reader; here what the game makes of them.
  UserBoard black = GameFrom("r3k2r/8/8/8/8/8/8/R3K2R b Kq - 12 30");
  EXPECT_EQ(black.Current().reason, REASON_UNKNOWN);
  EXPECT_EQ(black.FirstPly(), 59);
  EXPECT_EQ(black.FullMoveNumber(), 30);
  Play(black, "O-O-O Kf1 Kb8");
  EXPECT_EQ(PositionToFen(black), "1k1r3r/8/8/8/8/8/8/R4K1R w - - 15 32");
}

TEST(UserBoard, BadFenLeavesTheGameAlone) {
  UserBoard game = GameFrom();
  Play(game, "e4 e5 Nf3");
  const UserBoard before = game;
  for (const std::string& fen : {std::string("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 101 1"),
                                 std::string("r\0\xff\x80 w - - 0 1", 14)}) {
    EXPECT_THROW(game.SetFromFen(fen), UserBoard::io_error) << fen;
  }
  // Two white kings, and a side not to move in check.
  EXPECT_THROW(game.SetFromFen("4k3/8/8/8/8/8/8/K3K3 w - - 0 1"), UserBoard::invalid_position);
  EXPECT_THROW(game.SetFromFen("4k3/8/8/8/8/8/8/4R1K1 w - - 0 1"), UserBoard::invalid_position);
  ExpectSameGame(game, before);
}

// The positions after undo and next are tested end to end; here the buffers and keys behind them.
TEST(UserBoard, UndoNextAndTheBufferOfNextMoves) {
  UserBoard game = GameFrom();
  Play(game, "e4 e5 Nf3 Nc6 Bb5 a6");
  const UserBoard full = game;
  game.UndoMove();
  game.UndoTwoMoves();
  EXPECT_EQ(game.NextMoves().back(), full.Moves()[3]);
  game.PlayNext();
  game.PlayAllNext();
  ExpectSameGame(game, full);
  EXPECT_THROW(game.PlayNext(), UserBoard::next_moves_empty);
  game.UndoAll();
  EXPECT_TRUE(game.Keys().empty());
  EXPECT_THROW(game.UndoMove(), UserBoard::no_moves_to_undo);
  game.PlayAllNext();
  ExpectSameGame(game, full);

  // The same move by hand keeps the buffer, another one empties it; an illegal one changes nothing.
  for (int i = 0; i < 3; ++i) game.UndoMove();
  Play(game, "Nc6");
  EXPECT_EQ(game.NextMoves().size(), 2u);
  Play(game, "Bc4");
  EXPECT_TRUE(game.NextMoves().empty());
  UserBoard copy = game;
  EXPECT_THROW(game.PlayMove(MakeMoveWord(MakeSquare(4, 0), MakeSquare(4, 2), KING)), UserBoard::invalid_move);
  ExpectSameGame(game, copy);
  Play(copy, "Nf6");  // copies share nothing
  EXPECT_EQ(game.Moves().size(), 5u);
  EXPECT_TRUE(game.Current().IsConsistent());
  EXPECT_NE(copy.Current().key_history, game.Current().key_history);

  UserBoard one_move = GameFrom();
  Play(one_move, "d4");
  EXPECT_THROW(one_move.UndoTwoMoves(), UserBoard::no_moves_to_undo);
  EXPECT_EQ(one_move.Moves().size(), 1u);

  // A result set from outside goes with the undo, since the game is recomputed.
  one_move.SetResult(RESULT_WHITE_WINS, REASON_RESIGNATION);
  one_move.UndoMove();
  EXPECT_FALSE(one_move.IsFinished());
}

TEST(UserBoard, SideChangeAndSetPosition) {
  EXPECT_EQ(PositionToFen(UserBoard().WithSideChanged()),
            "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1");
  UserBoard game = GameFrom();
  Play(game, "Nf3 Nf6 Ng1");
  const UserBoard other = game.WithSideChanged();
  EXPECT_TRUE(other.Moves().empty());
  EXPECT_EQ(other.Current().reason, REASON_UNKNOWN);
  EXPECT_EQ(PositionToFen(other), "rnbqkb1r/pppppppp/5n2/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");

  // With an en-passant square, or the side to move giving check, there is no such position.
  UserBoard double_step = GameFrom();
  Play(double_step, "e4");
  EXPECT_THROW(double_step.WithSideChanged(), UserBoard::invalid_board_after_changing_side);
  EXPECT_THROW(GameFrom("4k3/8/8/8/8/8/8/4R1K1 b - - 0 1").WithSideChanged(),
               UserBoard::invalid_board_after_changing_side);

  // A set position starts a game of its own, judged at once.
  game.SetPosition(GameFrom("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1").Current());
  EXPECT_EQ(game.FirstPly(), 0);
  EXPECT_TRUE(game.Moves().empty() && game.NextMoves().empty() && game.Keys().empty());
  EXPECT_EQ(PositionToFen(game), "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
  EXPECT_EQ(game.Current().reason, REASON_STALEMATE);
}
