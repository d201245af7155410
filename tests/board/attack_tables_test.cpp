#include <set>

#include <gtest/gtest.h>

#include "board/attack_tables.h"
#include "board/bitboard.h"
#include "board/board.h"
#include "board/random.h"
#include "board/reference_moves.h"

namespace {

constexpr Square A1 = 0, E1 = 4, H1 = 7, B3 = 17, E2 = 12, E4 = 28, A7 = 48, A8 = 56, B8 = 57, H8 = 63;

Bitboard Squares(std::initializer_list<Square> list) {
  Bitboard b = 0;
  for (Square s : list) b |= SquareBit(s);
  return b;
}

TEST(Random, KnuthsPublishedCheckValue) {
  long a[2009];
  LaggedFibonacci generator;
  generator.Start(310952);
  for (int m = 0; m <= 2009; ++m) generator.Array(a, 1009);
  EXPECT_EQ(a[0], 995235265);
}

// How the keys are drawn is pinned by the search benchmark's signature; here that they differ.
TEST(AttackTables, KeysAreDistinct) {
  InitAttackTables();
  std::set<std::uint64_t> keys(&Tables.piece_keys[0][0], &Tables.piece_keys[0][0] + 64 * 13);
  EXPECT_EQ(keys.size(), 64u * 13);
  EXPECT_NE(Tables.ep_keys[0][0], Tables.ep_keys[1][0]);
}

// The tables the move generator does not walk through: directions, distances and masks that the
// evaluation reads.
TEST(AttackTables, DirectionsDistancesAndPawnMasks) {
  InitAttackTables();
  EXPECT_EQ(Tables.direction[H1][A8], DIR_NORTH_WEST);
  EXPECT_EQ(Tables.direction[A1][B3], DIR_NONE);
  EXPECT_EQ(Tables.king_distance[A1][H8], 7);
  EXPECT_EQ(Tables.manhattan_distance[A1][H8], 14);
  EXPECT_EQ(Tables.front_span[WHITE][A7], Squares({A8, B8}));
  EXPECT_EQ(Tables.attack_span[WHITE][E4], Squares({11, 13, 19, 21}));  // d2, f2, d3, f3
  // A pawn on e2 counts from e3: ranks three to eight, all files.
  EXPECT_EQ(Tables.pawn_square[WHITE][WHITE][E2], ~(RANK_1 | RankMask(1)));
  // Black to move: the defending king gets one step more.
  EXPECT_EQ(Tables.pawn_square[WHITE][BLACK][E2] & SquareBit(E1), SquareBit(E1));
  EXPECT_EQ(Tables.pawn_square[WHITE][WHITE][A1], 0u);
  for (Color c = 0; c < 2; ++c)
    for (Color m = 0; m < 2; ++m)
      for (Square q = 0; q < 64; ++q)
        for (Square s = 8; s < 56; ++s)
          ASSERT_EQ((Tables.king_outside_square[c][q][m] >> s) & 1,
                    (Tables.pawn_square[c][m][s] >> q & 1) ^ 1);
}

TEST(AttackTables, SlidingAttacksMatchAWalkOverRandomOccupancies) {
  LaggedFibonacci random(4711);
  Board board;
  for (int trial = 0; trial < 200; ++trial) {
    Piece squares[64] = {};
    for (Square s = 0; s < 64; ++s)
      if (random.Next() % 3 == 0) squares[s] = Piece(random.Next() % 2 ? 1 : -1);
    board.SetPosition(squares, WHITE, 0, 0);  // no kings: invalid, but the occupancies are filled
    for (Square s = 0; s < 64; ++s) {
      Bitboard rook = 0, bishop = 0;
      Board probe(board);
      for (Square t = 0; t < 64; ++t) {
        probe.squares[s] = MakePiece(WHITE, ROOK);
        if (reference::PieceAttacks(probe, s, t)) rook |= SquareBit(t);
        probe.squares[s] = MakePiece(WHITE, BISHOP);
        if (reference::PieceAttacks(probe, s, t)) bishop |= SquareBit(t);
      }
      ASSERT_EQ(board.RookAttacks(s), rook) << trial << " " << s;
      ASSERT_EQ(board.BishopAttacks(s), bishop) << trial << " " << s;
    }
  }
}

}  // namespace
