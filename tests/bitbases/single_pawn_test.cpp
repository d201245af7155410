#include <gtest/gtest.h>

#include "bitbases/bitbase_probes.h"
#include "bitbases/single_pawn_table.h"
#include "board/bitboard.h"
#include "board/board_test_helpers.h"

namespace {

using ZephrinBitbases::SINGLE_PAWN_TABLE;

// A position the table must know: pawn on ranks two to seven, three squares, kings apart, and no
// check against the lone king with the pawn's side to move.
bool Legal(int who, Square pawn, Square strong, Square weak) {
  if (pawn < 8 || pawn > 55 || pawn == strong || pawn == weak || strong == weak) return false;
  if (Tables.king_distance[strong][weak] < 2) return false;
  return !(who == 0 && (Tables.pawn_attacks[WHITE][pawn] & SquareBit(weak)));
}

// The board with a white pawn, or its colour image with a black pawn.
Board Position(int who, Square pawn, Square strong, Square weak, bool as_black) {
  const Square flip = as_black ? 56 : 0;
  const Color pawn_side = as_black ? BLACK : WHITE;
  Piece squares[64] = {};
  squares[pawn ^ flip] = MakePiece(pawn_side, PAWN);
  squares[strong ^ flip] = MakePiece(pawn_side, KING);
  squares[weak ^ flip] = MakePiece(pawn_side ^ 1, KING);
  Board board;
  board.SetPosition(squares, who == 0 ? pawn_side : pawn_side ^ 1, 0, 0);
  return board;
}

// Each entry is checked against the table maker's solver by the verify command's end-to-end test.
// Here: impossible positions stay clear, and the probe reads one entry for a position, for its
// image with colours exchanged and for the position mirrored left to right.
TEST(SinglePawnTable, ImpossiblePositionsClearColourAndLeftRightSymmetry) {
  int checked = 0, impossible_set = 0;
  for (int who = 0; who < 2; ++who)
    for (Square pawn = 0; pawn < 64; ++pawn)
      for (Square strong = 0; strong < 64; ++strong)
        for (Square weak = 0; weak < 64; ++weak) {
          if (!Legal(who, pawn, strong, weak)) {
            impossible_set += (SINGLE_PAWN_TABLE[who][pawn][strong] & SquareBit(weak)) != 0;
            continue;
          }
          const int white = ProbeSinglePawn(Position(who, pawn, strong, weak, false));
          const int black = ProbeSinglePawn(Position(who, pawn, strong, weak, true));
          const int mirrored = ProbeSinglePawn(Position(who, pawn ^ 7, strong ^ 7, weak ^ 7, false));
          if (white != black || white != mirrored) {
            ADD_FAILURE() << "who " << who << " pawn " << pawn << " kings " << strong << " " << weak << ": " << white
                          << " " << black << " " << mirrored;
            return;
          }
          ++checked;
        }
  EXPECT_EQ(checked, 222564 + 108788);
  EXPECT_EQ(impossible_set, 0);
}

TEST(SinglePawnTable, WorkedPositions) {
  const struct {
    const char* fen;
    int score;
  } cases[] = {
      {"4k3/8/4K3/4P3/8/8/8/8 w - - 0 1", 32703},   // e5 wins with either side to move
      {"4k3/8/4K3/4P3/8/8/8/8 b - - 0 1", -32703},
      {"k7/8/K7/P7/8/8/8/8 w - - 0 1", 0},          // the rook pawn: stalemate or a lost pawn
      {"7k/8/8/8/8/5K2/7P/8 w - - 0 1", 0},
      {"8/1P6/k7/8/K7/8/8/8 w - - 0 1", 32711},     // only b8=R wins; b8=Q stalemates
      {"8/8/4k3/8/4P3/4K3/8/8 w - - 0 1", 0},
      {"8/8/8/4k3/4P3/4K3/8/8 b - - 0 1", 0},
      {"8/8/8/8/4p3/4k3/8/4K3 w - - 0 1", -32703},  // Black's pawn on e4 is on rank 4 from its side
      {"8/8/8/8/4p3/4k3/8/4K3 b - - 0 1", 32703},
  };
  for (const auto& c : cases) EXPECT_EQ(ProbeSinglePawn(board_test::FromFen(c.fen)), c.score) << c.fen;
}

}  // namespace
