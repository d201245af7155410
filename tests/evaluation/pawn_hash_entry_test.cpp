#include "evaluation/pawn_hash_entry.h"

#include <gtest/gtest.h>

#include "board/bitboard.h"
#include "evaluation/side_view.h"
#include "evaluation_test_support.h"

namespace {

using evaluation_test::FromFen;

const char* const FEN = "4k3/pp4pp/5p2/3p4/2PP4/1P6/P5PP/4K3 w - - 0 1";

// The fields the tests below read back; everything else a hit restores is compared with the miss
// by the evaluation's test over many positions.
EvaluationRecord FilledRecord() {
  EvaluationRecord record{};
  record.pawns[WHITE].backward_weak = SquareSet({"b3"});
  record.majority[0] = {0, 3, 2};
  record.majority[1] = {1, 7, 7};
  record.openness = 1;
  record.pawn_summary.positional = -321;
  record.pawn_summary.simple = -77;
  return record;
}

// A hit equal to the miss is checked by the evaluation over many positions; here the packing of
// the majority counts at their limits, and what an entry keeps by type.
TEST(PawnHashEntry, MajorityCountsAreKeptOnlyWithAnOwner) {
  Board board = FromFen(FEN);
  const EvaluationRecord original = FilledRecord();
  EvaluationRecord restored{};
  RestorePawnHashEntry(ConstructPawnHashEntry(original, board, POSITION_MIDDLEGAME), restored, board);
  auto counts = [&](int wing) {
    const WingMajority& m = restored.majority[wing];
    return std::tuple(int(m.owner), int(m.owner_files), int(m.other_pawns));
  };
  EXPECT_EQ(counts(0), std::tuple(0, 0, 0));
  EXPECT_EQ(counts(1), std::tuple(1, 7, 7));
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
