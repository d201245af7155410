#include "evaluation/score_mix.h"

#include <gtest/gtest.h>

#include "evaluation_test_support.h"

namespace {

using evaluation_test::FromFen;

struct MixCase {
  const char* fen;
  bool middlegame;
  int openness;
  double endgame_factor;
  int white_attack, white_shelter, black_attack, black_shelter;
  int expected_mix;
};

// Expected mixes worked out by hand from the rules: material base, queens and minor pieces,
// openness, king placement and the danger of both kings.
const MixCase MIX_CASES[] = {
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", false, 4, 0.0, 0, 0, 0, 0, 0},
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", true, 4, 0.0, 0, 0, 0, 0, 2},
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", true, 4, 0.0, 30, -10, 12, 0, 16},
    {"r1bq1rk1/pppp1ppp/2n2n2/2b1p3/2B1P3/2N2N2/PPPP1PPP/R1BQ1RK1 w - - 0 1", true, 8, 0.3, 5, 2, -3, -12, 3},
    {"8/5pk1/8/3n4/8/4K3/3B1P2/8 w - - 0 1", true, 12, 1.0, 0, 0, 0, 0, 0},
    {"8/5pk1/8/3n4/8/4K3/3B1P2/8 w - - 0 1", true, 12, 0.0, 0, 0, 0, 0, 1},
    {"2kr4/ppp5/8/8/8/8/5PPP/3Q2K1 w - - 0 1", true, 0, 0.5, 20, -3, 7, 1, 8},
    {"2kr4/ppp5/8/8/8/8/5PPP/3Q2K1 w - - 0 1", false, 15, 0.5, 40, -20, 40, -20, 27},
};

EvaluationRecord RecordFor(const MixCase& c, EvaluationSettings& settings) {
  EvaluationRecord record{};
  record.settings = &settings;
  record.openness = std::uint16_t(c.openness);
  record.endgame_factor = c.endgame_factor;
  record.king_danger[WHITE].attack = std::int16_t(c.white_attack);
  record.king_danger[WHITE].shelter = std::int16_t(c.white_shelter);
  record.king_danger[BLACK].attack = std::int16_t(c.black_attack);
  record.king_danger[BLACK].shelter = std::int16_t(c.black_shelter);
  return record;
}

TEST(MixPair, TheSituationDecidesTheMix) {
  for (const MixCase& c : MIX_CASES) {
    EvaluationSettings settings;
    EvaluationRecord record = RecordFor(c, settings);
    EXPECT_EQ(MixOfPair(record, c.middlegame, FromFen(c.fen)), c.expected_mix) << c.fen;
    settings.personality = 5;
    EXPECT_EQ(MixOfPair(record, c.middlegame, FromFen(c.fen)), c.expected_mix + 5) << c.fen;
  }
}

TEST(MixPair, TheMixPicksAPointBetweenTheHalves) {
  const MixCase& c = MIX_CASES[4];  // a mix of 3 without personality
  Board board = FromFen(c.fen);
  EvaluationSettings settings;
  EvaluationRecord record = RecordFor(c, settings);
  const ScorePair pair(-37, 101);
  auto mixed_with_mix = [&](int mix, ScorePair p) {
    settings.personality = std::int16_t(mix - c.expected_mix);
    return MixPair(record, p, c.middlegame, board);
  };
  EXPECT_EQ(mixed_with_mix(0, pair), -37);
  EXPECT_EQ(mixed_with_mix(1, pair), -28);  // (15 * -37 + 101) / 16
  EXPECT_EQ(mixed_with_mix(15, pair), 92);  // (-37 + 15 * 101) / 16
  EXPECT_EQ(mixed_with_mix(16, pair), 101);
  // The division truncates towards zero, also for negative sums.
  EXPECT_EQ(mixed_with_mix(1, ScorePair(-100, -1)), -93);
  EXPECT_EQ(mixed_with_mix(3, ScorePair(-1, -2)), -1);
  EXPECT_EQ(mixed_with_mix(3, ScorePair(1, -2)), 0);

  // The absolute personalities take one half whatever the situation.
  settings.personality = 1000;
  EXPECT_EQ(MixPair(record, pair, true, board), 101);
  settings.personality = -1000;
  EXPECT_EQ(MixPair(record, pair, true, board), -37);
}

TEST(MixPair, CurvesAreLimitedAtTheirEnds) {
  EXPECT_DOUBLE_EQ(ShelterCurve(-10), 1.0);
  EXPECT_DOUBLE_EQ(ShelterCurve(5), 0.0);
  EXPECT_NEAR(ShelterCurve(0), 0.172185814, 1e-12);
  EXPECT_DOUBLE_EQ(AttackCurve(-5), 0.0);
  EXPECT_DOUBLE_EQ(AttackCurve(30), 1.0);
  EXPECT_DOUBLE_EQ(AttackCurve(-4), 0.0);  // the polynomial is negative there
  EXPECT_DOUBLE_EQ(AttackCurve(29), 1.0);  // and above 1 here
  EXPECT_NEAR(AttackCurve(0), 0.07126673933070571, 1e-12);
}

}  // namespace
