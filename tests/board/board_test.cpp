#include <cstring>
#include <initializer_list>
#include <utility>

#include <gtest/gtest.h>

#include "board/board_test_helpers.h"

namespace {

using board_test::FromFen;

// The squares of a position: the listed (square, piece) pairs on an empty board.
struct Placement {
  Piece squares[64] = {};
  Placement(std::initializer_list<std::pair<Square, Piece>> pieces) { Put(pieces); }
  Placement With(std::initializer_list<std::pair<Square, Piece>> pieces) const {
    Placement copy = *this;
    copy.Put(pieces);
    return copy;
  }
  void Put(std::initializer_list<std::pair<Square, Piece>> pieces) {
    for (auto [s, p] : pieces) squares[s] = p;
  }
};

TEST(Board, MaterialIsFromTheSideToMove) {
  EXPECT_EQ(FromFen("4k3/8/8/8/8/8/8/3QK3 b - - 0 1").State().material, -1020);
  EXPECT_EQ(FromFen("4k3/8/8/8/8/8/8/3QK3 w - - 0 1").State().material, 1020);
  EXPECT_EQ(FromFen("4k3/8/8/8/8/8/8/3QK3 w - - 0 1").phase, 9);
}

TEST(Board, BadArgumentsAreRefusedWithoutTouchingTheRecord) {
  Board board;
  const Board before(board);
  Placement setup{{4, 6}, {60, -6}, {36, -1}};
  EXPECT_FALSE(board.SetPosition(setup.squares, 2, 0, 0));       // side
  EXPECT_FALSE(board.SetPosition(setup.squares, WHITE, 43, 16));  // castling above 15
  EXPECT_FALSE(board.SetPosition(setup.squares, WHITE, 20, 0));   // e3 with white to move
  EXPECT_FALSE(board.SetPosition(setup.squares, WHITE, 64, 0));
  EXPECT_FALSE(board.SetPosition(setup.squares, WHITE, -3, 0));
  EXPECT_FALSE(board.SetPosition(setup.With({{10, 7}}).squares, WHITE, 0, 0));  // a byte outside -6..6
  EXPECT_EQ(0, std::memcmp(static_cast<const void*>(&board), static_cast<const void*>(&before),
                           offsetof(Board, key_history)));
  EXPECT_EQ(board.Key(), before.Key());
}

TEST(Board, ValidateRefusesIllegalPositions) {
  const Placement base{{4, 6}, {60, -6}};
  Board board;
  EXPECT_TRUE(board.SetPosition(base.squares, WHITE, 0, 0));
  EXPECT_FALSE(board.SetPosition(base.With({{20, 6}}).squares, WHITE, 0, 0));   // two white kings
  EXPECT_FALSE(board.SetPosition(base.With({{60, 0}}).squares, WHITE, 0, 0));   // no black king
  EXPECT_FALSE(board.SetPosition(base.With({{0, 1}}).squares, WHITE, 0, 0));    // a pawn on the first rank
  EXPECT_FALSE(board.SetPosition(base.With({{63, -1}}).squares, WHITE, 0, 0));  // a pawn on the last
  // Black to move may not leave white in check; white to move may be in check.
  const Placement rook_check = base.With({{7, -4}});
  EXPECT_FALSE(board.SetPosition(rook_check.squares, BLACK, 0, 0));
  EXPECT_TRUE(board.SetPosition(rook_check.squares, WHITE, 0, 0));
  EXPECT_TRUE(board.InCheck());
  // Two checkers can arise in a game, three cannot (rooks h1 and a1, knight f3).
  EXPECT_TRUE(board.SetPosition(rook_check.With({{21, -2}}).squares, WHITE, 0, 0));
  EXPECT_FALSE(board.SetPosition(rook_check.With({{21, -2}, {0, -4}}).squares, WHITE, 0, 0));

  Placement pawns = base;
  for (Square s = 8; s < 22; ++s) pawns.squares[s] = 1;
  EXPECT_TRUE(board.SetPosition(pawns.squares, WHITE, 0, 0));  // 14 pawns
  EXPECT_FALSE(board.SetPosition(pawns.With({{22, 1}}).squares, WHITE, 0, 0));  // 15 pawns

  Placement queens{{4, 6}, {56, -6}, {48, -1}, {49, -1}, {57, -2}};  // the black king a8 walled in
  for (Square s = 16; s < 26; ++s) queens.squares[s] = 5;
  EXPECT_TRUE(board.SetPosition(queens.squares, WHITE, 0, 0));
}

TEST(Board, EnPassantAndCastlingMustFitTheSquares) {
  const Placement pawn{{4, 6}, {60, -6}, {28, 1}};  // white pawn e4
  Board board;
  EXPECT_TRUE(board.SetPosition(pawn.squares, BLACK, 20, 0));   // e3 behind the pawn
  EXPECT_EQ(board.EpText(), "e3");
  EXPECT_FALSE(board.SetPosition(pawn.squares, BLACK, 19, 0));  // d3: no pawn in front
  EXPECT_FALSE(board.SetPosition(pawn.With({{12, 2}}).squares, BLACK, 20, 0));  // e2 occupied

  const Placement castle{{4, 6}, {60, -6}, {7, 4}, {56, -4}};
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

}  // namespace
