#include "interfaces/game_board.h"

#include <gtest/gtest.h>

#include "board/move_generator.h"
#include "interfaces/game_test_helpers.h"

using ZephrinInterfaces::ReasonText;
using ZephrinInterfaces::ResultText;
using test_helpers::GameFrom;
using test_helpers::Play;

namespace {

void ExpectEnd(const UserBoard& game, const char* result, const char* reason) {
  EXPECT_TRUE(game.IsFinished());
  EXPECT_EQ(ResultText(game.Current().result), result);
  EXPECT_EQ(ReasonText(game.Current().result, game.Current().reason), reason);
}

}  // namespace

TEST(GameEnd, MateAndStalemate) {
  UserBoard fools_mate = GameFrom();
  Play(fools_mate, "f3 e5 g4");
  EXPECT_FALSE(fools_mate.IsFinished());
  Play(fools_mate, "Qh4");
  ExpectEnd(fools_mate, "0-1", "Black mates");

  UserBoard white_mates = GameFrom("k7/8/1K6/8/8/8/8/7R w - - 0 1");
  Play(white_mates, "Rh8");
  ExpectEnd(white_mates, "1-0", "White mates");

  UserBoard stalemate = GameFrom("7k/4Q3/6K1/8/8/8/8/8 w - - 0 1");
  Play(stalemate, "Qf7");
  ExpectEnd(stalemate, "1/2-1/2", "Stalemate");
}

TEST(GameEnd, FiftyMovesNeedALegalMove) {
  UserBoard fifty = GameFrom("8/8/8/4k3/8/8/8/R3K3 w - - 98 80");
  Play(fifty, "Ra2");
  EXPECT_FALSE(fifty.IsFinished());
  Play(fifty, "Kd5");
  ExpectEnd(fifty, "1/2-1/2", "Fifthy move rule");

  // Mate on the hundredth ply stays mate.
  UserBoard mate = GameFrom("k7/8/1K6/8/8/8/8/7R w - - 99 80");
  Play(mate, "Rh8");
  ExpectEnd(mate, "1-0", "White mates");

  // A capture on the hundredth ply resets the count instead.
  UserBoard capture = GameFrom("8/8/8/4k3/8/8/r7/R3K3 w - - 99 80");
  Play(capture, "Rxa2");
  EXPECT_FALSE(capture.IsFinished());
}

TEST(GameEnd, InsufficientMaterial) {
  // King and bishop against king and knight is a draw once the last pawn goes.
  UserBoard minor_pieces = GameFrom("7k/8/8/4p3/8/2B5/8/K6n w - - 0 1");
  EXPECT_FALSE(minor_pieces.IsFinished());
  Play(minor_pieces, "Bxe5+");
  ExpectEnd(minor_pieces, "1/2-1/2", "Insufficient material");

  // A side with two minor pieces keeps the game going; so do a pawn and a rook.
  EXPECT_FALSE(GameFrom("7k/8/8/8/8/8/8/KNN5 w - - 0 1").IsFinished());
  EXPECT_FALSE(GameFrom("7k/8/8/8/8/8/8/KBB5 b - - 0 1").IsFinished());
  EXPECT_FALSE(GameFrom("7k/8/8/8/8/8/P7/K7 w - - 0 1").IsFinished());
  EXPECT_FALSE(GameFrom("7k/8/8/8/8/8/8/KR6 w - - 0 1").IsFinished());

  // A position read from text that is already dead is finished at once.
  const UserBoard bare_kings = GameFrom("7k/8/8/8/8/8/8/K7 w - - 0 1");
  ExpectEnd(bare_kings, "1/2-1/2", "Insufficient material");
}

TEST(GameEnd, ThreefoldRepetitionAtTheThirdOccurrence) {
  UserBoard game = GameFrom();
  // The position after 1. Nf3 occurs for the third time at ply 9.
  Play(game, "Nf3 Nf6 Ng1 Ng8 Nf3 Nf6 Ng1 Ng8");
  EXPECT_FALSE(game.IsFinished());
  Play(game, "Nf3");
  ExpectEnd(game, "1/2-1/2", "Threefold repetition");
  EXPECT_EQ(game.Keys().size(), 9u);

  // The en-passant square is part of a position: the position after 1. e4 doesn't count with
  // its later occurrences, so the game ends at ply 10 by the position after 1... Nf6.
  UserBoard double_step = GameFrom();
  Play(double_step, "e4 Nf6 Nf3 Ng8 Ng1 Nf6 Nf3 Ng8 Ng1");
  EXPECT_FALSE(double_step.IsFinished());
  Play(double_step, "Nf6");
  ExpectEnd(double_step, "1/2-1/2", "Threefold repetition");
}

TEST(GameEnd, FinishedGameRefusesMoves) {
  UserBoard game = GameFrom();
  Play(game, "f3 e5 g4 Qh4");
  ASSERT_TRUE(game.IsFinished());
  std::vector<Move> moves;
  GenerateLegalMoves(game.Current(), moves);
  EXPECT_TRUE(moves.empty());

  UserBoard resigned = GameFrom();
  const Move e4 = test_helpers::Parse(resigned.Current(), "e4");
  EXPECT_TRUE(resigned.Current().IsMoveLegal(e4));
  resigned.SetResult(RESULT_BLACK_WINS, REASON_RESIGNATION);
  EXPECT_FALSE(resigned.Current().IsMoveLegal(e4));
  EXPECT_THROW(resigned.PlayMove(e4), UserBoard::invalid_move);
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
