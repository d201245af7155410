#include "evaluation/passed_pawns.h"

#include <gtest/gtest.h>

#include "board/bitboard.h"
#include "evaluation/bare_king_runners.h"
#include "evaluation/side_view.h"
#include "evaluation_test_support.h"

namespace {

using namespace evaluation_test;

TEST(PassedPawns, OnlyTheLeadingPasserOfAFileCountsAndBlackIsSubtracted) {
  // White: e4 and e6 on one file, and g5, which the h6 pawn stops from being passed.
  Board board = FromFen("4k3/8/4P2p/6P1/4P3/p7/8/4K3 w - - 0 1");
  EvaluationRecord record = PassedOf(board);
  ScorePair pair = EvaluatePassedPawns(record, board);
  EXPECT_EQ(record.pawns[WHITE].passed_front, SquareSet({"e6"}));
  EXPECT_EQ(record.pawns[BLACK].passed_front, SquareSet({"a3"}));
  EXPECT_EQ(record.pawns[WHITE].passed_front_rank[4], 5);
  EXPECT_EQ(record.pawns[BLACK].passed_front_rank[0], 2);
  EXPECT_EQ(record.pawns[WHITE].passed_front_rank[6], 0);
  // e6: 5 * 55/46 / 8 = 34/28. a3, Black's sixth rank: 7 * 55/46 / 8 = 48/40.
  EXPECT_EQ(pair, ScorePair(34 - 48, 28 - 40));

}

// The details of the e-pawn of `colour`, after the passed pawn term has marked the fronts.
ScorePair DetailsOfEPawn(EvaluationRecord& record, const Board& board, Color colour) {
  record = PassedOf(board);
  EvaluatePassedPawns(record, board);
  return PassedPawnDetails(record, board, colour, 4);
}

TEST(PassedPawns, DetailsOfRooksAndTheStopSquare) {
  EvaluationRecord record;
  // A knight blocks e6; a White rook behind, a Black rook in front: +5/5 rook behind, -2/0 enemy
  // rook ahead, -(8 * 28/30) / 8 for the knight.
  EXPECT_EQ(DetailsOfEPawn(record, FromFen("4r1k1/4n3/4P3/8/8/8/8/4R1K1 w - - 0 1"), WHITE),
            ScorePair(5 - 2 - 28, 5 - 30));
  EXPECT_EQ(record.potential[BLACK][WING_CENTRE][POTENTIAL_DEFENCE], 2);
  // Free stop square above the middle, enemy rook behind the pawn; the same for Black, from
  // Black's view.
  Board free = FromFen("6k1/8/8/4P3/8/8/8/4r1K1 w - - 0 1");
  EXPECT_EQ(DetailsOfEPawn(record, free, WHITE), ScorePair(6 - 4, 8 - 2));
  EXPECT_EQ(record.potential[WHITE][WING_CENTRE][POTENTIAL_ATTACK], 1);
  EXPECT_EQ(DetailsOfEPawn(record, Mirrored(free), BLACK), ScorePair(2, 6));
  // On the fourth rank a free stop square gives nothing.
  EXPECT_EQ(DetailsOfEPawn(record, FromFen("6k1/8/8/8/4P3/8/8/6K1 w - - 0 1"), WHITE), ScorePair());
}

TEST(PassedPawns, SimpleValueByRankRooksBlockerAndKings) {
  // d5: 85 * 7 / 8 = 74, +6 for the free stop square; kings: d1 to d5 4 and to d8 7, h8 to d5 4
  // and to d8 4: -2 - 6 - 0 + 5.
  Board board = FromFen("7k/8/8/3P4/8/8/8/3K4 w - - 0 1");
  EvaluationRecord record = PassedOf(board);
  EXPECT_EQ(SimplePassedPawns(record, board), 74 + 6 - 2 - 6 + 5);
  EXPECT_EQ(record.pawns[WHITE].passed_front, SquareSet({"d5"}));

  // A knight on the stop square: -(27 * 8) / 8; a White rook behind +12, a Black rook ahead -4.
  Board blocked = FromFen("3r3k/8/3n4/3P4/8/8/8/3RK3 w - - 0 1");
  record = PassedOf(blocked);
  const int kings = -2 - 6 - 0 + 5;  // e1 is 4 from d5 and 7 from d8, h8 4 from both
  EXPECT_EQ(SimplePassedPawns(record, blocked), 74 - 27 + 12 - 4 + kings);
}

// The king catches an a-pawn on the fifth rank from e5 only with the move; from f5 never. The
// pawn's side has a knight: without pieces on both sides it would be a pawn ending.
TEST(BareKingRunners, TheKingCatchesThePawnByOneTempoOrNot) {
  const std::tuple<const char*, int, RunnerCase> cases[] = {
      {"8/8/8/P3k3/8/8/8/K6N w - - 0 1", 760, RunnerCase::NONE},  // out of the square
      {"8/8/8/P3k3/8/8/8/K6N b - - 0 1", 0, RunnerCase::NONE},    // caught; no bitbase win
      {"8/3k4/1K6/1P6/8/8/8/7N b - - 0 1", 225, RunnerCase::NONE},  // caught, but king and pawn win
      {"8/P7/8/8/8/7k/8/K6N w - - 0 1", 920, RunnerCase::NONE},   // seventh rank, to move
      // Two runners: the higher rank counts.
      {"8/8/P7/7P/8/4k3/8/K6N w - - 0 1", 800, RunnerCase::NONE},
      // Caught, and Black has a passer of its own: left to the simple evaluator.
      {"8/8/8/P2k4/8/8/7p/K5N1 w - - 0 1", 0, RunnerCase::WHITE_PAWNS_AGAINST_BLACK_PASSERS},
  };
  for (const auto& [fen, expected, expected_case] : cases) {
    SCOPED_TRACE(fen);
    Board board = FromFen(fen);
    EvaluationRecord record = PassedOf(board);
    FindPassedFronts(record);
    RunnerCase runner_case;
    EXPECT_EQ(BareKingRunners(record, board, runner_case), expected);
    EXPECT_EQ(runner_case, expected_case);

    Board mirror = Mirrored(board);
    EvaluationRecord mirrored = PassedOf(mirror);
    FindPassedFronts(mirrored);
    EXPECT_EQ(BareKingRunners(mirrored, mirror, runner_case), -expected);
    EXPECT_EQ(runner_case, expected_case == RunnerCase::NONE ? RunnerCase::NONE
                                                             : RunnerCase::BLACK_PAWNS_AGAINST_WHITE_PASSERS);
  }
}

}  // namespace
