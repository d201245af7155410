#include "evaluation/evaluation_record.h"

#include <gtest/gtest.h>

#include "evaluation_test_support.h"

using evaluation_test::FromFen;

TEST(EvaluationRecord, BasicFactsOfThePawnsFilesAndKings) {
  // White: pawns a2 b2 e4 e5 h6, bishops c1 (dark) and f1 (light). Black: pawns c7 d6 e6,
  // bishops c8 (light) and e7 (dark).
  Board board = FromFen("2b1k3/2p1b3/3pp2P/4P3/4P3/8/PP6/2B1KB2 w - - 0 1");
  EvaluationRecord record{};
  BuildPawnSquares(record, board);
  FindPassedPawns(record, board);
  ComputeFileSets(record, board);
  SetBishopPairs(record, board);
  StartSideFacts(record, board);

  const std::uint16_t white_squares[] = {8, 9, 28, 36, 47};
  ASSERT_EQ(record.pawns[WHITE].pawn_count, 5);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(record.pawns[WHITE].pawn_squares[i], white_squares[i]);
  ASSERT_EQ(record.pawns[BLACK].pawn_count, 3);
  EXPECT_EQ(record.pawns[BLACK].pawn_squares[0], 43);  // d6 before e6 and c7

  // a2 and h6 have no black pawn ahead on their own or neighbouring files; b2 has c7. The black
  // pawns all face white pawns.
  EXPECT_EQ(record.pawns[WHITE].passed, SquareBit(8) | SquareBit(47));
  EXPECT_EQ(record.pawns[BLACK].passed, 0u);

  // White lacks c, d, f, g; Black lacks a, b, f, g, h. Open to both: f and g.
  EXPECT_EQ(record.files_without_pawn[WHITE], 0b01101100);
  EXPECT_EQ(record.files_without_pawn_count[WHITE], 4);
  EXPECT_EQ(record.files_without_pawn[BLACK], 0b11100011);
  EXPECT_EQ(record.single_open_file, -1);

  EXPECT_TRUE(record.side_facts[WHITE].bishop_pair);
  EXPECT_TRUE(record.side_facts[BLACK].bishop_pair);
  EXPECT_EQ(record.side_facts[WHITE].king_wing, WING_CENTRE);
  EXPECT_EQ(record.side_facts[WHITE].attacks, Tables.king_attacks[4]);

  // One file without any pawn; the sets are rebuilt, not added to, on a second call.
  Board single = FromFen("4k3/pppp1ppp/8/8/8/8/PPPP1PPP/4K3 w - - 0 1");
  ComputeFileSets(record, single);
  EXPECT_EQ(record.single_open_file, 4);
  EXPECT_EQ(record.files_without_pawn_count[WHITE], 1);
  SetBishopPairs(record, single);
  EXPECT_FALSE(record.side_facts[WHITE].bishop_pair);
}

TEST(EvaluationRecord, TheLazyTestAnswersOnlyBeyondItsMargin) {
  EvaluationRecord record{};
  int answer = 0;
  EXPECT_FALSE(TakeLazyExit(record, 100, -600, 700, answer));  // d = 700
  EXPECT_FALSE(record.lazy);
  EXPECT_TRUE(TakeLazyExit(record, 100, -601, 700, answer));   // estimate far below: not reached
  EXPECT_TRUE(record.lazy);
  EXPECT_EQ(answer, 99);
  EXPECT_TRUE(TakeLazyExit(record, 100, 801, 700, answer));    // far above: reached
  EXPECT_EQ(answer, 100);
  EXPECT_FALSE(TakeLazyExit(record, 100, 800, 700, answer));
  record.allow_lazy_exits = false;
  record.lazy = false;
  EXPECT_FALSE(TakeLazyExit(record, 100, 5000, 700, answer));
  EXPECT_FALSE(record.lazy);
}
