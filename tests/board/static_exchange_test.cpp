#include <gtest/gtest.h>

#include "board/attacks.h"
#include "board/board_test_helpers.h"
#include "board/king_flood.h"
#include "board/pseudo_legal.h"
#include "board/static_exchange.h"

namespace {

using namespace board_test;

int See(const std::string& fen, const std::string& move) {
  Board board = FromFen(fen);
  Bitboard involved = 0;
  return StaticExchange(board, FindMove(board, move), involved);
}

TEST(StaticExchange, SimpleExchanges) {
  EXPECT_EQ(See("4k3/8/2p5/3p4/8/8/8/3QK3 w - - 0 1", "d1d5"), 100 - 1020);
  EXPECT_EQ(See("4k3/8/2p5/3p4/4P3/8/8/4K3 w - - 0 1", "e4d5"), 0);
  EXPECT_EQ(See("4k3/8/8/3p4/8/8/8/3RK3 w - - 0 1", "d1d5"), 100);
  EXPECT_EQ(See("4k3/8/8/3p4/8/8/8/3RK3 w - - 0 1", "d1d4"), 0);
  EXPECT_EQ(See("4k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7a8q"), 0);
  EXPECT_EQ(See("4k3/8/8/3p4/4P3/8/8/4K3 b - - 0 1", "d5e4"), 100);
  // A king may not take a defended piece: the exchange stops before it.
  Board defended = FromFen("4k3/8/8/8/8/1n6/3p4/4K3 w - - 0 1");
  Bitboard involved = 0;
  EXPECT_EQ(StaticExchange(defended, MakeMoveWord(At("e1"), At("d2"), KING, PAWN), involved), -32767 + 100);
  EXPECT_EQ(See("4k3/8/8/8/8/8/3p4/4K3 w - - 0 1", "e1d2"), 100);
}

TEST(StaticExchange, HiddenSlidersJoinInTurn) {
  // Nxd5 Nxd5 Rxd5 Rxd5 Qxd5: the queen behind the rook wins the last word.
  const std::string fen = "3r3k/8/5n2/3p4/8/2N5/3R4/K2Q4 w - - 0 1";
  EXPECT_EQ(See(fen, "c3d5"), 100);
  Board board = FromFen(fen);
  Bitboard involved = 0;
  StaticExchange(board, FindMove(board, "c3d5"), involved);
  EXPECT_TRUE(involved & SquareBit(At("d1")));
  EXPECT_FALSE(Attackers(board, At("d5")) & SquareBit(At("d1")));
  // Without the queen the rook would be lost: 100 + 305 - 305 - 500.
  EXPECT_EQ(See("3r3k/8/5n2/3p4/8/2N5/3R4/K7 w - - 0 1", "c3d5"), 100 - 305);
}

TEST(Attacks, QueriesOnAPosition) {
  const Board start;
  EXPECT_EQ(Attackers(start, At("f3")), SquareBit(At("g1")) | SquareBit(At("e2")) | SquareBit(At("g2")));
  EXPECT_TRUE(IsSquareAttacked(start, At("f6"), BLACK));
  EXPECT_FALSE(IsSquareAttacked(start, At("e4"), WHITE));
  EXPECT_FALSE(IsInCheck(start));
  EXPECT_EQ(SlidersOnRay(start, At("d1"), 0), 0u);
  EXPECT_EQ(SlidersOnRay(start, At("d1"), 9), 0u);
  EXPECT_EQ(SlidersOnRay(start, At("d2"), DIR_SOUTH), SquareBit(At("d1")));

  Board knight = FromFen("4k3/8/8/8/8/4n3/4B3/4K3 w - - 0 1");
  EXPECT_EQ(FindBlockers(knight, SquareBit(At("e2")), knight.sides[BLACK], At("e1")), 0u);
  Board rook = FromFen("4k3/8/8/8/8/4r3/4B3/4K3 w - - 0 1");
  EXPECT_EQ(FindBlockers(rook, SquareBit(At("e2")), rook.sides[BLACK], At("e1")), SquareBit(At("e2")));
  EXPECT_EQ(Blockers(rook, At("e1"), rook.sides[WHITE].all, rook.sides[BLACK], ~Bitboard{0}), SquareBit(At("e2")));
  EXPECT_TRUE(WouldLeaveOwnKingInCheck(rook, MakeMoveWord(At("e2"), At("d3"), BISHOP)));
  EXPECT_FALSE(WouldLeaveOwnKingInCheck(rook, MakeMoveWord(At("e1"), At("d1"), KING)));

  EXPECT_TRUE(QueenUnderAttack(FromFen("4k3/8/8/8/1r1Q4/8/8/4K3 w - - 0 1")));
  EXPECT_FALSE(QueenUnderAttack(FromFen("4k3/8/8/8/1q1Q4/8/8/4K3 w - - 0 1")));
}

TEST(IsMovePseudoLegal, StoredWordsFromElsewhere) {
  const Board start;
  EXPECT_TRUE(IsMovePseudoLegal(start, FindMove(start, "e2e4")));
  EXPECT_FALSE(IsMovePseudoLegal(start, MakeMoveWord(At("d1"), At("d3"), QUEEN)));      // blocked
  EXPECT_FALSE(IsMovePseudoLegal(start, MakeMoveWord(At("e7"), At("e5"), PAWN)));       // not white's
  EXPECT_FALSE(IsMovePseudoLegal(start, MakeMoveWord(At("g1"), At("f3"), BISHOP)));     // wrong type
  EXPECT_FALSE(IsMovePseudoLegal(start, MakeMoveWord(At("g1"), At("f3"), KNIGHT, PAWN)));  // no victim
  EXPECT_FALSE(IsMovePseudoLegal(start, MakeMoveWord(At("e1"), At("g1"), KING)));       // castling blocked
  EXPECT_FALSE(IsMovePseudoLegal(start, FindMove(start, "e2e4") | (1u << 23)));         // sort bits
  Board open = FromFen("r3k2r/8/8/8/8/8/8/R3K2R w Qkq - 0 1");
  EXPECT_FALSE(IsMovePseudoLegal(open, MakeMoveWord(At("e1"), At("g1"), KING)));  // right gone
  EXPECT_TRUE(IsMovePseudoLegal(open, MakeMoveWord(At("e1"), At("c1"), KING)));
  // A pawn reaching the last rank must promote, and only a pawn there may.
  Board pawn = FromFen("4k3/P7/8/8/8/8/8/4K3 w - - 0 1");
  EXPECT_FALSE(IsMovePseudoLegal(pawn, MakeMoveWord(At("a7"), At("a8"), PAWN)));
  EXPECT_TRUE(IsMovePseudoLegal(pawn, MakeMoveWord(At("a7"), At("a8"), PAWN, NO_PIECE, KNIGHT)));
  EXPECT_FALSE(IsMovePseudoLegal(pawn, MakeMoveWord(At("a7"), At("a8"), PAWN, NO_PIECE, KING)));
  // Pins are left aside.
  Board pinned = FromFen("4k3/8/8/8/8/4r3/4B3/4K3 w - - 0 1");
  EXPECT_TRUE(IsMovePseudoLegal(pinned, MakeMoveWord(At("e2"), At("d3"), BISHOP)));
  EXPECT_FALSE(IsLegalMove(pinned, MakeMoveWord(At("e2"), At("d3"), BISHOP)));
}

TEST(KingFlood, KingsRaceForTheSquares) {
  // Black's king on h8 stands outside the square of the a5 pawn and may not leave its corner.
  Bitboard result[2];
  Board outside = FromFen("7k/8/8/P7/8/8/8/K7 w - - 0 1");
  KingFlood(outside, result, outside.sides[WHITE].pawns, 0);
  EXPECT_EQ(result[BLACK], SquareBit(At("h8")));
  EXPECT_TRUE(result[WHITE] & SquareBit(At("h1")));
  // Inside the square it stays inside it.
  Board inside = FromFen("8/8/2k5/P7/8/8/8/K7 w - - 0 1");
  KingFlood(inside, result, inside.sides[WHITE].pawns, 0);
  EXPECT_TRUE(result[BLACK] & SquareBit(At("c6")));
  EXPECT_EQ(result[BLACK] & ~Tables.pawn_square[WHITE][WHITE][At("a5")], 0u);
}

}  // namespace
