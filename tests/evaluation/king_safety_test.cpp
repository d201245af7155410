#include "evaluation/king_safety.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "board/bitboard.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/score_mix.h"
#include "evaluation/side_view.h"
#include "evaluation_test_support.h"

namespace {

using evaluation_test::FromFen;
using evaluation_test::Mirrored;

// The record as the full evaluator has it when king safety runs, with every potential 0 unless a
// case sets one, openness 8 (scale 8/8) and a full middlegame (endgame scale 1.2).
EvaluationRecord Prepare(const Board& board) {
  EvaluationRecord record;
  ClearEvaluationRecord(record);
  BuildPawnSquares(record, board);
  FindPassedPawns(record, board);
  ComputeFileSets(record, board);
  StartSideFacts(record, board);
  ComputePawnFacts(record, board);
  record.openness = 8;
  record.endgame_factor = 0.0;
  return record;
}

// The same record for the colour-flipped board, with the hand-set fields exchanged.
EvaluationRecord PrepareMirror(const Board& mirror, const EvaluationRecord& original) {
  EvaluationRecord record = Prepare(mirror);
  record.openness = original.openness;
  record.endgame_factor = original.endgame_factor;
  for (Color c : {WHITE, BLACK}) {
    record.side_facts[c ^ 1].attacks = FlipRanks(original.side_facts[c].attacks);
    for (int wing = 0; wing < WING_COUNT; ++wing) {
      for (int kind : {POTENTIAL_ATTACK, POTENTIAL_DEFENCE}) {
        record.potential[c ^ 1][wing][kind] = original.potential[c][wing][kind];
      }
    }
  }
  return record;
}

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
};

// Runs a case, and its mirror image, which must give the negated pair and the same danger to the
// exchanged kings.
void ExpectCase(const Case& c, EvaluationRecord& record, const Board& board) {
  EvaluationRecord mirror_record = PrepareMirror(Mirrored(board), record);
  Board mirror = Mirrored(board);
  // Each call changes the potentials of a side with castling rights: one call per record.
  const ScorePair pair = EvaluateKingSafety(record, board);
  EXPECT_EQ(pair, c.expected) << c.name << ": " << pair.Positional() << "/" << pair.Dynamic();
  EXPECT_EQ(record.king_danger[WHITE].attack, c.white_attack) << c.name;
  EXPECT_EQ(record.king_danger[WHITE].shelter, c.white_shelter) << c.name;
  EXPECT_EQ(EvaluateKingSafety(mirror_record, mirror), -c.expected) << c.name << " mirrored";
  for (Color colour : {WHITE, BLACK}) {
    EXPECT_EQ(mirror_record.king_danger[colour ^ 1].attack, record.king_danger[colour].attack) << c.name;
    EXPECT_EQ(mirror_record.king_danger[colour ^ 1].shelter, record.king_danger[colour].shelter) << c.name;
  }
}

void RunCase(const Case& c) {
  Board board = FromFen(c.fen);
  EvaluationRecord record = Prepare(board);
  ExpectCase(c, record, board);
}

TEST(KingSafety, PawnShieldHolesAndStorms) {
  const Case cases[] = {
      // Three pawns in front: 6/2 + 3 * 20/28 + 6/12 for no half-open file + 15/26, the same for
      // both kings.
      {"full shield", std::string(BLACK_SIDE) + "Q7/8/PPP2PPP/6K1 w - - 0 1", ScorePair(0, 0), -6, 14},
      // No g-pawn and a black pawn on g4: a hole on g2 (-12/-14 and -20/-30), the pawn storm on
      // rank four (-5/-13) met on g3 (-3/-8): 12/5 for the shelter, -8/-95 with the base, then
      // scaled; the negative dynamic half by the attack factor of attack 11.
      {"hole and storm", std::string(BLACK_SIDE) + "Q5p1/8/PPP2P1P/6K1 w - - 0 1", ScorePair(-82, -85), 11, -20},
      // As before with a doubled isolated pawn h2/h3 beside the hole (-18/-25), which brings the
      // far pawn h3 (+13/22) and meets the stormer on g4 itself (-4/-12 instead of -3/-8).
      {"doubled isolated pawn beside the hole", std::string(BLACK_SIDE) + "Q5p1/7P/PPP2P1P/6K1 w - - 0 1",
       ScorePair(-89, -100), 13, -30},
      // A loose black pawn right in front of the king: 200/240 on top of the shelter, and the
      // attack falls by 10.
      {"loose pawn in front", std::string(BLACK_SIDE) + "Q7/8/PPP2PpP/6K1 w - - 0 1", ScorePair(167, 192), -12, -18},
      // King on g2 behind pawns on f3, g3 and h3: judged on g1 (-6/-14, shelter -8) by the far
      // pawns, since no near square holds one.
      {"king on rank two", std::string(BLACK_SIDE) + "Q7/5PPP/PPP3K1/8 w - - 0 1", ScorePair(-32, -31), -6, 6},
      // King on c1: three quarters of b1 (83/124) and one of d1 (-72/-104); b1's danger stays.
      {"king on c1", std::string(BLACK_SIDE) + "Q7/8/PPP2PPP/2K5 w - - 0 1", ScorePair(-51, -37), -6, 14},
  };
  for (const Case& c : cases) RunCase(c);
}

TEST(KingSafety, KingsAwayFromTheirHomeRanks) {
  // A king on rank three: -120/-200 without any look at the pawns, and an attack of all wings
  // plus 10. Its dynamic half grows by min(AttackCurve(22) + 0.2, 1.2).
  Board board = FromFen(std::string(BLACK_SIDE) + "Q7/4K3/PPP2PPP/8 w - - 0 1");
  EvaluationRecord record = Prepare(board);
  for (int wing = 0; wing < WING_COUNT; ++wing) record.potential[BLACK][wing][POTENTIAL_ATTACK] = std::int16_t(3 + wing);
  record.potential[WHITE][WING_CENTRE][POTENTIAL_DEFENCE] = 7;
  EvaluationRecord open_record = record;
  ExpectCase({"king on e3", "", ScorePair(-167 - 80, -397 - 29), 22, 7}, record, board);
  EXPECT_DOUBLE_EQ(record.king_danger[WHITE].attack_factor, AttackCurve(22));

  // Openness 15 weighs both kings by 11/8 before the endgame scale.
  open_record.openness = 15;
  ExpectCase({"king on e3, open position", "", ScorePair(-229 - 110, -545 - 40), 22, 7}, open_record, board);

  // Without Black's queen White's king counts 3/8; Black's doesn't change.
  Board no_queen = FromFen("6k1/ppp2ppp/8/8/Q7/4K3/PPP2PPP/8 w - - 0 1");
  EvaluationRecord no_queen_record = Prepare(no_queen);
  for (int wing = 0; wing < WING_COUNT; ++wing) {
    no_queen_record.potential[BLACK][wing][POTENTIAL_ATTACK] = std::int16_t(3 + wing);
  }
  no_queen_record.potential[WHITE][WING_CENTRE][POTENTIAL_DEFENCE] = 7;
  ExpectCase({"king on e3, no enemy queen", "", ScorePair(-61 - 80, -147 - 29), 22, 7}, no_queen_record,
             no_queen);
}

TEST(KingSafety, CastlingRightsJudgeTheKingWhereItWouldGo) {
  const std::string fen = std::string(BLACK_SIDE) + "Q7/8/PPP2PPP/R3K2R w KQ - 0 1";
  Board board = FromFen(fen);

  // Both rights usable: b1 gives 83/124, g1 87/124 and wins the tie-break of (p + d) / 2; the
  // empty path earns 4/8, the rights cost -65/-75 and take 4 and 6 off the own centre potentials.
  EvaluationRecord record = Prepare(board);
  ExpectCase({"both castlings open", fen, ScorePair(-73, -39), -6, 11}, record, board);
  EXPECT_EQ(record.potential[WHITE][WING_CENTRE][POTENTIAL_ATTACK], -4);
  EXPECT_EQ(record.potential[WHITE][WING_CENTRE][POTENTIAL_DEFENCE], -6);
  EXPECT_EQ(record.potential[BLACK][WING_CENTRE][POTENTIAL_DEFENCE], 0);

  // Black attacking b1 and f1 leaves no usable right: the king is judged on e1 with two open
  // files and two missing pawns before it, and still pays for the rights.
  record = Prepare(board);
  record.side_facts[BLACK].attacks |= SquareSet({"b1", "f1"});
  const int dynamic = int(std::lround(-334 * (AttackCurve(9) + 0.2)));
  EXPECT_EQ(dynamic, -204);
  ExpectCase({"castling paths attacked", fen, ScorePair(-187 - 80, dynamic - 29), 9, -35}, record, board);

  // Only f1 attacked: long castling, judged on b1 alone, with a piece in the way (-4/-8).
  const std::string blocked = std::string(BLACK_SIDE) + "Q7/8/PPP2PPP/RN2K2R w KQ - 0 1";
  Board long_only = FromFen(blocked);
  record = Prepare(long_only);
  record.side_facts[BLACK].attacks |= SquareSet({"f1"});
  // -20/-100 - 65/-75 + 83/124 - 4/8 = -6/-59; times 1.2 plus 0.5, truncated: -6/-70, then 0.2 on
  // the dynamic half.
  ExpectCase({"long castling only", blocked, ScorePair(-6 - 80, -14 - 29), -6, 11}, record, long_only);
}

TEST(KingSafety, BackRankReachedByAHeavyPiece) {
  // No step forward for the king and a black rook that reaches d1: -6/-12 and shelter -6.
  const std::string fen = "3r2k1/ppp2ppp/8/q7/Q7/8/PPP2PPP/6K1 w - - 0 1";
  Board board = FromFen(fen);
  EvaluationRecord record = Prepare(board);
  record.side_facts[BLACK].attacks |= FileMask(3);
  ExpectCase({"rook on the back rank", fen, ScorePair(-7, -15), -6, 8}, record, board);

  // A square of the back rank that the rook doesn't reach counts for nothing.
  record = Prepare(board);
  record.side_facts[BLACK].attacks |= SquareSet({"c1"});
  ExpectCase({"back rank attacked by no rook", fen, ScorePair(0, 0), -6, 14}, record, board);
}

}  // namespace
