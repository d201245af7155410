#include "evaluation/king_safety.h"

#include <gtest/gtest.h>

#include <string>

#include "board/bitboard.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/score_mix.h"
#include "evaluation/side_view.h"
#include "evaluation_test_support.h"

namespace {

using evaluation_test::FromFen;

// Black's king in every case: g8 behind f7, g7 and h7, queen present, facing White pawns on the
// f-, g- and h-files. Its own pair is 87/124 for the shelter plus -20/-100, scaled by 1.2: 80/29,
// or 73/7 when White has no g-pawn (one half-open file: -6/-18 before scaling).
constexpr const char* BLACK_SIDE = "6k1/ppp2ppp/8/q7/";

struct Case {
  const char* name;
  std::string fen;
  ScorePair expected;
  int white_attack;
  int white_shelter;
  Bitboard black_attacks = 0;  // added to what Black's king and pawns attack
  int openness = 8;
  bool potentials = false;  // Black's attack potentials 3, 4 and 5 by wing, White's centre defence 7
};

// The record as the full evaluator has it when king safety runs, with every potential 0 unless the
// case sets some, and a full middlegame (endgame scale 1.2).
EvaluationRecord Prepare(const Board& board, const Case& c) {
  EvaluationRecord record = evaluation_test::FactsOf(board);
  record.openness = std::uint16_t(c.openness);
  record.endgame_factor = 0.0;
  record.side_facts[BLACK].attacks |= c.black_attacks;
  if (c.potentials) {
    for (int wing = 0; wing < WING_COUNT; ++wing) record.potential[BLACK][wing][POTENTIAL_ATTACK] = std::int16_t(3 + wing);
    record.potential[WHITE][WING_CENTRE][POTENTIAL_DEFENCE] = 7;
  }
  return record;
}

// Runs a case and returns the record after the run. Colour symmetry is the invariant of the whole
// evaluation's test.
EvaluationRecord RunCase(const Case& c) {
  Board board = FromFen(c.fen);
  EvaluationRecord record = Prepare(board, c);
  const ScorePair pair = EvaluateKingSafety(record, board);
  EXPECT_EQ(pair, c.expected) << c.name << ": " << pair.Positional() << "/" << pair.Dynamic();
  EXPECT_EQ(record.king_danger[WHITE].attack, c.white_attack) << c.name;
  EXPECT_EQ(record.king_danger[WHITE].shelter, c.white_shelter) << c.name;
  return record;
}

TEST(KingSafety, ShieldsStormsAndKingsAwayFromHome) {
  const std::string side = BLACK_SIDE;
  const Case cases[] = {
      // Three pawns in front: 6/2 + 3 * 20/28 + 6/12 for no half-open file + 15/26, the same for
      // both kings.
      {"full shield", side + "Q7/8/PPP2PPP/6K1 w - - 0 1", ScorePair(0, 0), -6, 14},
      // No g-pawn and a black pawn on g4: a hole on g2 (-12/-14 and -20/-30), the pawn storm on
      // rank four (-5/-13) met on g3 (-3/-8): 12/5 for the shelter, -8/-95 with the base, then
      // scaled; the negative dynamic half by the attack factor of attack 11.
      {"hole and storm", side + "Q5p1/8/PPP2P1P/6K1 w - - 0 1", ScorePair(-82, -85), 11, -20},
      // A loose black pawn right in front of the king: 200/240 on top of the shelter, and the
      // attack falls by 10.
      {"loose pawn in front", side + "Q7/8/PPP2PpP/6K1 w - - 0 1", ScorePair(167, 192), -12, -18},
      // A king on rank three: -120/-200 without any look at the pawns, and an attack of all wings
      // plus 10. Its dynamic half grows by min(AttackCurve(22) + 0.2, 1.2).
      {"king on e3", side + "Q7/4K3/PPP2PPP/8 w - - 0 1", ScorePair(-167 - 80, -397 - 29), 22, 7, 0, 8, true},
      // Openness 15 weighs both kings by 11/8 before the endgame scale.
      {"king on e3, open position", side + "Q7/4K3/PPP2PPP/8 w - - 0 1", ScorePair(-229 - 110, -545 - 40), 22,
       7, 0, 15, true},
      // No step forward for the king and a black rook that reaches d1: -6/-12 and shelter -6.
      {"rook on the back rank", "3r2k1/ppp2ppp/8/q7/Q7/8/PPP2PPP/6K1 w - - 0 1", ScorePair(-7, -15), -6, 8,
       FileMask(3)},
      // A square of the back rank that the rook doesn't reach counts for nothing.
      {"back rank attacked by no rook", "3r2k1/ppp2ppp/8/q7/Q7/8/PPP2PPP/6K1 w - - 0 1", ScorePair(0, 0), -6, 14,
       SquareSet({"c1"})},
  };
  for (const Case& c : cases) {
    EvaluationRecord record = RunCase(c);
    if (c.potentials) {
      EXPECT_DOUBLE_EQ(record.king_danger[WHITE].attack_factor, AttackCurve(22)) << c.name;
    }
  }
}

TEST(KingSafety, CastlingRightsJudgeTheKingWhereItWouldGo) {
  const std::string fen = std::string(BLACK_SIDE) + "Q7/8/PPP2PPP/R3K2R w KQ - 0 1";
  // Both rights usable: b1 gives 83/124, g1 87/124 and wins the tie-break of (p + d) / 2; the
  // empty path earns 4/8, the rights cost -65/-75 and take 4 and 6 off the own centre potentials.
  EvaluationRecord record = RunCase({"both castlings open", fen, ScorePair(-73, -39), -6, 11});
  EXPECT_EQ(record.potential[WHITE][WING_CENTRE][POTENTIAL_ATTACK], -4);
  EXPECT_EQ(record.potential[WHITE][WING_CENTRE][POTENTIAL_DEFENCE], -6);
  EXPECT_EQ(record.potential[BLACK][WING_CENTRE][POTENTIAL_DEFENCE], 0);

  // Only f1 attacked: long castling, judged on b1 alone, with a piece in the way (-4/-8).
  // -20/-100 - 65/-75 + 83/124 - 4/8 = -6/-59; times 1.2 plus 0.5, truncated: -6/-70, then 0.2 on
  // the dynamic half.
  RunCase({"long castling only", std::string(BLACK_SIDE) + "Q7/8/PPP2PPP/RN2K2R w KQ - 0 1",
       ScorePair(-6 - 80, -14 - 29), -6, 11, SquareSet({"f1"})});
}

}  // namespace
