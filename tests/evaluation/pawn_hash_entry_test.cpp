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

void ExpectSameFacts(const EvaluationRecord& restored, const EvaluationRecord& original) {
  for (Color c : {WHITE, BLACK}) {
    EXPECT_EQ(restored.pawns[c].passed, original.pawns[c].passed);
    EXPECT_EQ(restored.pawns[c].passed_count, PopCount(original.pawns[c].passed));
    EXPECT_EQ(restored.pawns[c].isolated, original.pawns[c].isolated);
    EXPECT_EQ(restored.pawns[c].backward, original.pawns[c].backward);
    EXPECT_EQ(restored.pawns[c].backward_weak, original.pawns[c].backward_weak);
    EXPECT_EQ(restored.pawns[c].safe_advance, original.pawns[c].safe_advance);
  }
  for (int wing = 0; wing < 2; ++wing) {
    EXPECT_EQ(restored.majority[wing].owner, original.majority[wing].owner);
    EXPECT_EQ(restored.majority[wing].owner_files, original.majority[wing].owner_files);
    EXPECT_EQ(restored.majority[wing].other_pawns, original.majority[wing].other_pawns);
  }
  EXPECT_EQ(restored.openness, original.openness);
  EXPECT_EQ(restored.pawn_summary.from_hash, 1);
}

// The full evaluator's entries keep the pair and the potentials, the others the simple value.
TEST(PawnHashEntry, EntriesKeepWhatTheirTypeNeeds) {
  Board board = FromFen(FEN);
  EvaluationRecord original = FilledRecord();
  for (PositionType type = POSITION_OPENING; type <= POSITION_OTHER_ENDGAME; ++type) {
    if (type == POSITION_MATING) continue;
    SCOPED_TRACE(type);
    const bool full = type == POSITION_OPENING || type == POSITION_MIDDLEGAME;
    PAWN_HASH_ENTRY entry = ConstructPawnHashEntry(original, board, type);
    EXPECT_EQ(entry.key, board.PawnKey());
    EXPECT_EQ(entry.position_type, type);
    EvaluationRecord restored{};
    RestorePawnHashEntry(entry, restored, board);
    ExpectSameFacts(restored, original);
    const PawnSummary& summary = restored.pawn_summary;
    EXPECT_EQ(summary.positional, full ? -321 : 0);
    EXPECT_EQ(summary.dynamic, full ? 123 : 0);
    EXPECT_EQ(summary.simple, full ? 0 : -77);
    for (int c = 0; c < 2; ++c) {
      for (int w = 0; w < 3; ++w) {
        for (int k = 0; k < 2; ++k) {
          EXPECT_EQ(summary.potential[c][w][k], full ? original.pawn_summary.potential[c][w][k] : 0) << c << w << k;
        }
      }
    }
  }
}

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
}

TEST(PawnHashEntryDeathTest, TheMatingTypeHasNoEntry) {
  Board board = FromFen(FEN);
  EvaluationRecord record = FilledRecord();
  // The message goes through the program's output stream, not to the error stream.
  EXPECT_DEATH(ConstructPawnHashEntry(record, board, POSITION_MATING), "");
}

}  // namespace
