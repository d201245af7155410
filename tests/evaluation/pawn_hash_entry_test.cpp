#include "evaluation/pawn_hash_entry.h"

#include <gtest/gtest.h>

#include "board/bitboard.h"
#include "evaluation/side_view.h"
#include "evaluation_test_support.h"

namespace {

using evaluation_test::FromFen;

// White pawns a2 b3 c4 d4 g2 h2, Black pawns a7 b7 d5 f6 g7 h7.
const char* const FEN = "4k3/pp4pp/5p2/3p4/2PP4/1P6/P5PP/4K3 w - - 0 1";

EvaluationRecord FilledRecord() {
  EvaluationRecord record{};
  record.pawns[WHITE].passed = SquareSet({"c4"});
  record.pawns[BLACK].passed = SquareSet({"a7", "b7"});
  record.pawns[WHITE].isolated = SquareSet({"a2"});
  record.pawns[BLACK].isolated = SquareSet({"d5", "f6"});
  record.pawns[WHITE].backward = SquareSet({"b3"});
  record.pawns[BLACK].backward = SquareSet({"g7"});
  record.pawns[WHITE].backward_weak = SquareSet({"b3"});
  record.pawns[BLACK].backward_weak = 0;
  record.pawns[WHITE].safe_advance = SquareSet({"c5", "g3", "g4", "h3"});
  record.pawns[BLACK].safe_advance = SquareSet({"a6", "a5", "h6"});
  record.majority[0] = {1, 4, 3};
  record.majority[1] = {2, 3, 2};
  record.openness = 13;
  PawnSummary& summary = record.pawn_summary;
  summary.positional = -321;
  summary.dynamic = 123;
  summary.simple = -77;
  const int values[2][3][2] = {{{511, -511}, {0, -1}, {7, 1}}, {{-30, 30}, {-3, 0}, {255, -256}}};
  for (int c = 0; c < 2; ++c) {
    for (int w = 0; w < 3; ++w) {
      for (int k = 0; k < 2; ++k) summary.potential[c][w][k] = std::int16_t(values[c][w][k]);
    }
  }
  return record;
}

// A hit equal to the miss is checked by the evaluation over many positions; here the packing of
// the majority counts at their limits, and what an entry keeps by type.
TEST(PawnHashEntry, MajorityCountsAreKeptOnlyWithAnOwner) {
  Board board = FromFen(FEN);
  EvaluationRecord original = FilledRecord();
  original.majority[0] = {0, 3, 2};
  original.majority[1] = {1, 7, 7};
  original.openness = 1;
  EvaluationRecord restored{};
  RestorePawnHashEntry(ConstructPawnHashEntry(original, board, POSITION_MIDDLEGAME), restored, board);
  EXPECT_EQ(restored.majority[0].owner, 0u);
  EXPECT_EQ(restored.majority[0].owner_files, 0);
  EXPECT_EQ(restored.majority[0].other_pawns, 0);
  EXPECT_EQ(restored.majority[1].owner, 1u);
  EXPECT_EQ(restored.majority[1].owner_files, 7);
  EXPECT_EQ(restored.majority[1].other_pawns, 7);
  EXPECT_EQ(restored.openness, 1);
  EXPECT_EQ(restored.pawn_summary.positional, -321);
  restored = EvaluationRecord{};
  RestorePawnHashEntry(ConstructPawnHashEntry(original, board, POSITION_ROOK_ENDING), restored, board);
  EXPECT_EQ(restored.pawn_summary.simple, -77);
  EXPECT_EQ(restored.pawn_summary.positional, 0);
  EXPECT_EQ(restored.pawns[WHITE].backward_weak, original.pawns[WHITE].backward_weak);
}

TEST(PawnHashEntryDeathTest, TheMatingTypeHasNoEntry) {
  Board board = FromFen(FEN);
  EvaluationRecord record = FilledRecord();
  // The message goes through the program's output stream, not to the error stream.
  EXPECT_DEATH(ConstructPawnHashEntry(record, board, POSITION_MATING), "");
}

}  // namespace
