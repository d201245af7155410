#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "board/board.h"
#include "board/move_generator.h"
#include "interfaces/fen.h"

namespace {

Board FromFen(const std::string& fen) {
  Board board;
  ZephrinInterfaces::ReadFen(fen, board);
  return board;
}

// A position from a list of (square, piece) pairs.
struct Placement {
  Piece squares[64] = {};
  Placement& Put(Square s, Piece p) {
    squares[s] = p;
    return *this;
  }
};

TEST(Board, InitialPosition) {
  Board board;
  EXPECT_EQ(board.phase, 62);
  EXPECT_EQ(board.State().material, 0);
  EXPECT_EQ(board.State().castling, 15);
  EXPECT_EQ(board.State().ep_square, 0);
  EXPECT_EQ(board.State().in_check, 0);
  for (Color c = 0; c < 2; ++c) {
    EXPECT_EQ(board.sides[c].minor_units, 12);
    EXPECT_EQ(board.sides[c].major_units, 4);
  }
  EXPECT_EQ(board.sides[WHITE].king_square, 4);
  EXPECT_EQ(board.sides[BLACK].king_square, 60);
  EXPECT_EQ(board.occupied, 0xffff00000000ffffULL);
  EXPECT_TRUE(board.IsConsistent());
  EXPECT_EQ(board.CastlingText(), "KQkq");
  EXPECT_EQ(board.EpText(), "none");
}

TEST(Board, MaterialIsFromTheSideToMove) {
  EXPECT_EQ(FromFen("4k3/8/8/8/8/8/8/3QK3 b - - 0 1").State().material, -1020);
  EXPECT_EQ(FromFen("4k3/8/8/8/8/8/8/3QK3 w - - 0 1").State().material, 1020);
  EXPECT_EQ(FromFen("4k3/8/8/8/8/8/8/3QK3 w - - 0 1").phase, 9);
}

TEST(Board, BadArgumentsAreRefusedWithoutTouchingTheRecord) {
  Board board;
  const Board before(board);
  Placement setup;
  setup.Put(4, 6).Put(60, -6).Put(36, -1);
  EXPECT_FALSE(board.SetPosition(setup.squares, 2, 0, 0));      // side
  EXPECT_FALSE(board.SetPosition(setup.squares, WHITE, 43, 16));  // castling above 15
  EXPECT_FALSE(board.SetPosition(setup.squares, WHITE, 20, 0));  // e3 with white to move
  EXPECT_FALSE(board.SetPosition(setup.squares, WHITE, 64, 0));
  EXPECT_FALSE(board.SetPosition(setup.squares, WHITE, -3, 0));
  setup.Put(10, 7);
  EXPECT_FALSE(board.SetPosition(setup.squares, WHITE, 0, 0));  // a byte outside -6..6
  EXPECT_EQ(0, std::memcmp(static_cast<const void*>(&board), static_cast<const void*>(&before),
                           offsetof(Board, key_history)));
  EXPECT_EQ(board.Key(), before.Key());
}

TEST(Board, ValidateRefusesIllegalPositions) {
  Placement base;
  base.Put(4, 6).Put(60, -6);
  Board board;
  EXPECT_TRUE(board.SetPosition(base.squares, WHITE, 0, 0));

  Placement two_kings = base;
  two_kings.Put(20, 6);
  EXPECT_FALSE(board.SetPosition(two_kings.squares, WHITE, 0, 0));
  Placement no_black_king;
  no_black_king.Put(4, 6);
  EXPECT_FALSE(board.SetPosition(no_black_king.squares, WHITE, 0, 0));
  Placement pawn_on_first = base;
  pawn_on_first.Put(0, 1);
  EXPECT_FALSE(board.SetPosition(pawn_on_first.squares, WHITE, 0, 0));
  Placement pawn_on_last = base;
  pawn_on_last.Put(63, -1);
  EXPECT_FALSE(board.SetPosition(pawn_on_last.squares, WHITE, 0, 0));
  // Black to move may not leave white in check; white to move may be in check.
  Placement rook_check = base;
  rook_check.Put(7, -4);
  EXPECT_FALSE(board.SetPosition(rook_check.squares, BLACK, 0, 0));
  EXPECT_TRUE(board.SetPosition(rook_check.squares, WHITE, 0, 0));
  EXPECT_TRUE(board.InCheck());

  Placement pawns = base;
  for (Square s = 8; s < 22; ++s) pawns.Put(s, 1);
  EXPECT_TRUE(board.SetPosition(pawns.squares, WHITE, 0, 0));  // 14 pawns
  pawns.Put(22, 1);
  EXPECT_FALSE(board.SetPosition(pawns.squares, WHITE, 0, 0));  // 15 pawns

  Placement queens;  // the black king a8 walled in by a7, b7 and b8
  queens.Put(4, 6).Put(56, -6).Put(48, -1).Put(49, -1).Put(57, -2);
  for (Square s = 16; s < 26; ++s) queens.Put(s, 5);
  EXPECT_TRUE(board.SetPosition(queens.squares, WHITE, 0, 0));
}

TEST(Board, EnPassantAndCastlingMustFitTheSquares) {
  Placement base;
  base.Put(4, 6).Put(60, -6).Put(28, 1);  // white pawn e4
  Board board;
  EXPECT_TRUE(board.SetPosition(base.squares, BLACK, 20, 0));   // e3 behind the pawn
  EXPECT_EQ(board.EpText(), "e3");
  EXPECT_FALSE(board.SetPosition(base.squares, BLACK, 19, 0));  // d3: no pawn in front
  Placement blocked = base;
  blocked.Put(12, 2);  // e2 occupied
  EXPECT_FALSE(board.SetPosition(blocked.squares, BLACK, 20, 0));

  Placement castle;
  castle.Put(4, 6).Put(60, -6).Put(7, 4).Put(56, -4);
  EXPECT_TRUE(board.SetPosition(castle.squares, WHITE, 0, CASTLE_WHITE_SHORT | CASTLE_BLACK_LONG));
  EXPECT_EQ(board.CastlingText(), "Kq");
  EXPECT_FALSE(board.SetPosition(castle.squares, WHITE, 0, CASTLE_WHITE_LONG));
  EXPECT_FALSE(board.SetPosition(castle.squares, WHITE, 0, CASTLE_BLACK_SHORT));
  EXPECT_TRUE(board.SetPosition(castle.squares, WHITE, 0, 0));
  EXPECT_EQ(board.CastlingText(), "none");
}

TEST(Board, CopiesRepairTheKeyHistory) {
  Board board;
  std::vector<Move> moves;
  for (int i = 0; i < 3; ++i) {
    GenerateLegalMoves(board, moves);
    board.MakeMove(moves[0]);
    board.Rebase();
  }
  board.SetReversibleCount(12);
  Board copy;
  copy.CopyFrom(board);
  EXPECT_EQ(copy.key_history - copy.key_store, board.key_history - board.key_store);
  EXPECT_NE(copy.key_history, board.key_history);
  EXPECT_EQ(copy.Key(), board.Key());
  Board assigned;
  assigned = board;
  EXPECT_EQ(assigned.key_history - assigned.key_store, 12);
  Board constructed(board);
  EXPECT_EQ(constructed.key_history, constructed.key_store + 12);
}

TEST(Board, DisplayDrawsTheDiagramAndDetails) {
  const Board board = FromFen("4k3/8/8/8/8/8/4P3/4K3 b - - 0 1");
  const std::string line = "    +---+---+---+---+---+---+---+---+\n";
  const std::string empty = " |   |   |   |   |   |   |   |   |\n";
  std::string expected = line + "  8 |   |   |   |   | K |   |   |   |\n";
  for (int rank = 7; rank >= 3; --rank) expected += line + "  " + std::to_string(rank) + empty;
  expected += line + "  2 |   |   |   |   | *P|   |   |   |\n";
  expected += line + "  1 |   |   |   |   | *K|   |   |   |\n";
  expected += line + "      a   b   c   d   e   f   g   h\n";
  EXPECT_EQ(board.DisplayText(false), expected);
  EXPECT_EQ(board.DisplayText(true),
            expected + "castle possibilities: none\nside on move: black; en-passant square: none\n");
}

}  // namespace
