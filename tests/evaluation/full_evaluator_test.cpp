#include "evaluation/full_evaluator.h"

#include <gtest/gtest.h>

#include "evaluation_test_support.h"

using namespace evaluation_test;

TEST(FullEvaluator, EndgameFactorFallsWithMaterial) {
  // Queen and three minors: test value 22.
  EXPECT_DOUBLE_EQ(EndgameFactor(FromFen("4k3/pppppppp/8/8/8/2NBB3/PPPPPPPP/3QK3 w - - 0 1")), 1.0);
  // Two queens on one side: 42, beyond the table.
  EXPECT_DOUBLE_EQ(EndgameFactor(FromFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKQNR w Qkq - 0 1")), 0.0);
}

TEST(FullEvaluator, MaterialImbalanceByTradesOfPieces) {
  const std::pair<const char*, ScorePair> cases[] = {
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", ScorePair(0, 0)},
      {"1nbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQk - 0 1", ScorePair(400, 180)},  // a rook up
      {"1n1bk3/pppp4/8/8/8/8/PPPP4/3QK3 w - - 0 1", ScorePair(400, 180)},  // queen for two minors
      {"r1bqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", ScorePair(160, 160)},  // a knight up
      {"4k2r/pppp4/8/8/8/8/PPPP4/2B1K1N1 w - - 0 1", ScorePair(130, 180)},  // two minors for a rook
      {"3qk3/pppp4/8/8/8/8/PPPP4/1NB1K1N1 w - - 0 1", ScorePair(50, 100)},  // three minors for a queen
      {"1n2k3/pppp4/8/8/8/8/PPPP4/R3K3 w - - 0 1", ScorePair(0, 0)},        // the exchange
  };
  for (const auto& [fen, expected] : cases) {
    EXPECT_EQ(MaterialImbalance(FromFen(fen)), expected) << fen;
    EXPECT_EQ(MaterialImbalance(Mirrored(FromFen(fen))), -expected) << fen;
  }
}

TEST(FullEvaluator, PawnUpCompensationWeighsTheAttackPotentials) {
  struct Case {
    int white_attack[3];
    int black_attack[3];
    ScorePair expected;
  };
  const Case cases[] = {
      {{0, 0, 0}, {0, -1, 0}, ScorePair(20, 12)},
      {{0, 0, 0}, {10, 11, 0}, ScorePair(4, -10)},
      {{9, 0, 0}, {7, 7, 7}, ScorePair(13, -4)},    // 21 isn't more than 9 + 20
      {{25, 0, 0}, {50, 0, 0}, ScorePair(13, -4)},  // 25 isn't below 50 / 2
      {{10, 0, 0}, {20, 0, 0}, ScorePair(16, 0)},
      {{5, 5, 1}, {11, 10, 0}, ScorePair(16, 0)},
  };
  // White a pawn up; Black's view is the colour symmetry of the whole evaluation.
  Board white_up = FromFen("4k3/ppp5/8/8/8/8/PPPP4/4K3 w - - 0 1");
  for (const Case& c : cases) {
    EvaluationRecord record{};
    for (int wing = 0; wing < 3; ++wing) {
      record.potential[WHITE][wing][POTENTIAL_ATTACK] = std::int16_t(c.white_attack[wing]);
      record.potential[BLACK][wing][POTENTIAL_ATTACK] = std::int16_t(c.black_attack[wing]);
      record.potential[WHITE][wing][POTENTIAL_DEFENCE] = 50;  // defence doesn't count
    }
    EXPECT_EQ(PawnUpCompensation(record, white_up), c.expected);
  }
  // Equal pawns or two pawns up: nothing.
  EvaluationRecord record{};
  record.potential[BLACK][0][POTENTIAL_ATTACK] = -1;
  EXPECT_EQ(PawnUpCompensation(record, FromFen("4k3/ppp5/8/8/8/8/PPP5/4K3 w - - 0 1")), ScorePair());
  EXPECT_EQ(PawnUpCompensation(record, FromFen("4k3/pp6/8/8/8/8/PPPP4/4K3 w - - 0 1")), ScorePair());
}
