#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "board/attack_tables.h"
#include "board/bitboard.h"
#include "board/board.h"
#include "board/random.h"
#include "board/reference_moves.h"

namespace {

constexpr Square A1 = 0, B1 = 1, E1 = 4, H1 = 7, A2 = 8, B3 = 17, E2 = 12, E4 = 28, A7 = 48, A8 = 56, B8 = 57,
                 H8 = 63;

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
  generator.Start(310952);
  for (int m = 0; m <= 1009; ++m) generator.Array(a, 2009);
  EXPECT_EQ(a[0], 995235265);
}

TEST(AttackTables, KeysComeFromTheSeededSequenceAndAreDistinct) {
  InitAttackTables();
  LaggedFibonacci fresh;
  std::uint64_t first = 0;
  for (int i = 0; i < 4; ++i) {
    std::uint32_t draw = fresh.Next();
    EXPECT_LT(draw, 1u << 30);
    first |= std::uint64_t(draw & 0xffff) << (16 * i);
  }
  EXPECT_EQ(Tables.piece_keys[0][0], first);
  std::set<std::uint64_t> keys(&Tables.piece_keys[0][0], &Tables.piece_keys[0][0] + 64 * 13);
  EXPECT_EQ(keys.size(), 64u * 13);
  EXPECT_NE(Tables.ep_keys[0][0], Tables.ep_keys[1][0]);
}

TEST(AttackTables, RotationsArePermutationsWithTheDocumentedCorners) {
  using Row = std::vector<int>;
  EXPECT_EQ((Row{ROT_DIAG[A1], ROT_DIAG[H1], ROT_DIAG[H8], ROT_DIAG[A8]}), (Row{28, 0, 35, 63}));
  EXPECT_EQ((Row{ROT_ANTI[A1], ROT_ANTI[H1], ROT_ANTI[A8], ROT_ANTI[H8]}), (Row{0, 35, 28, 63}));
  EXPECT_EQ((Row{ROT_FILE[A1], ROT_FILE[A2], ROT_FILE[H8]}), (Row{56, 57, 7}));
  EXPECT_EQ((Row{DIAG_SQUARES[0], DIAG_SQUARES[1], DIAG_SQUARES[2], ANTI_SQUARES[1], ANTI_SQUARES[2]}),
            (Row{7, 6, 15, 8, 1}));
  for (const auto* table : {&ROT_DIAG, &ROT_ANTI, &ROT_FILE}) {
    std::set<int> seen(table->begin(), table->end());
    EXPECT_EQ(seen.size(), 64u);
    EXPECT_EQ(*seen.rbegin(), 63);
  }
}

TEST(AttackTables, LinesDirectionsAndDistances) {
  InitAttackTables();
  EXPECT_EQ(Tables.rank_attacks[A1][0], RANK_1 & ~SquareBit(A1));
  EXPECT_EQ(Tables.rank_attacks[A1][0x10], Squares({B1, 2, 3, E1}));
  EXPECT_EQ(Tables.direction[A1][H8], DIR_NORTH_EAST);
  EXPECT_EQ(Tables.direction[H8][A1], DIR_SOUTH_WEST);
  EXPECT_EQ(Tables.direction[A1][B3], DIR_NONE);
  EXPECT_EQ(Tables.direction[E4][E4], DIR_NONE);
  EXPECT_EQ(Tables.direction[H1][A8], DIR_NORTH_WEST);
  EXPECT_EQ(PopCount(Tables.between[A1][H8]), 6);
  EXPECT_EQ(Tables.between[A1][B1], 0u);
  EXPECT_EQ(Tables.between[A1][B3], 0u);
  EXPECT_EQ(Tables.king_distance[A1][H8], 7);
  EXPECT_EQ(Tables.manhattan_distance[A1][H8], 14);
  EXPECT_EQ(Tables.rays[DIR_NORTH - 1][A1], FILE_A & ~SquareBit(A1));
  EXPECT_EQ(Tables.queen_lines[E4], Tables.bishop_lines[E4] | Tables.rook_lines[E4]);
  EXPECT_EQ(PopCount(Tables.rook_lines[E4]), 15);
  EXPECT_EQ(Tables.knight_attacks[A1], Squares({B3, 10}));
  EXPECT_EQ(PopCount(Tables.king_attacks[E4]), 8);
}

TEST(AttackTables, PawnMasks) {
  InitAttackTables();
  EXPECT_EQ(Tables.pawn_attacks[WHITE][A2], SquareBit(B3));
  EXPECT_EQ(Tables.pawn_attacks[WHITE][H8], 0u);
  EXPECT_EQ(Tables.pawn_attacks[BLACK][A1], 0u);
  EXPECT_EQ(Tables.front_span[WHITE][A7], Squares({A8, B8}));
  EXPECT_EQ(Tables.attack_span[WHITE][E4], Squares({11, 13, 19, 21}));  // d2, f2, d3, f3
  for (Square s = 0; s < 64; ++s) EXPECT_EQ(Tables.attack_span[WHITE][s] & RANK_1, 0u);
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

TEST(Bitboard, Primitives) {
  EXPECT_EQ(FirstBit(0x8000000000000001ULL), 0);
  EXPECT_EQ(LastBit(0x8000000000000001ULL), 63);
  EXPECT_EQ(PopCount(~Bitboard{0}), 64);
  EXPECT_EQ(PopCount(0x0123456789abcdefULL), 32);
  EXPECT_EQ(SparsePopCount(0x0123456789abcdefULL), 32);
  Bitboard b = Squares({3, 40});
  EXPECT_EQ(PopFirstBit(b), 3);
  EXPECT_EQ(b, SquareBit(40));
}

}  // namespace
