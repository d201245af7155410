#include "evaluation/pawn_structure.h"

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <string>
#include <utility>

#include "board/bitboard.h"
#include "evaluation/passed_pawns.h"
#include "evaluation/side_view.h"
#include "evaluation_test_support.h"

namespace {

using namespace evaluation_test;

// The record after the pawn structure of the middlegame variant was scored, the leading passers
// marked first as the passed pawn term does.
EvaluationRecord StructureOf(const Board& board) {
  EvaluationRecord record = FactsOf(board);
  FindPassedFronts(record);
  EvaluatePawnStructure(record, board, MIDDLEGAME_PAWN_POSITIONAL, MIDDLEGAME_PAWN_DYNAMIC);
  return record;
}

struct ExpectedPotential {
  Color colour;
  int wing;
  int attack, defence;
};

// The pair and every potential; the potentials not listed must be 0.
void ExpectSummary(const char* fen, int positional, int dynamic,
                   std::initializer_list<ExpectedPotential> potentials) {
  PawnSummary summary = StructureOf(FromFen(fen)).pawn_summary;
  EXPECT_EQ(summary.positional, positional) << fen;
  EXPECT_EQ(summary.dynamic, dynamic) << fen;
  int expected[2][WING_COUNT][2] = {};
  for (const ExpectedPotential& p : potentials) {
    expected[p.colour][p.wing][POTENTIAL_ATTACK] = p.attack;
    expected[p.colour][p.wing][POTENTIAL_DEFENCE] = p.defence;
  }
  for (Color c : {WHITE, BLACK}) {
    for (int wing = 0; wing < WING_COUNT; ++wing) {
      for (int kind : {POTENTIAL_ATTACK, POTENTIAL_DEFENCE}) {
        EXPECT_EQ(summary.potential[c][wing][kind], expected[c][wing][kind])
            << fen << " colour " << c << " wing " << wing << " kind " << kind;
      }
    }
  }
}

TEST(PawnFacts, BlockedRestrainedAndRammedPawns) {
  // White: a2 b3 d4 e4 e5(doubled) g2; Black: b4 d5 e6 g6 h7, a knight on g3.
  Board board = FromFen("4k3/7p/4p1p1/3pP3/1p1PP3/1P4n1/P5P1/4K3 w - - 0 1");
  EvaluationRecord record = FactsOf(board);
  const PawnFacts& white = record.pawns[WHITE];
  const PawnFacts& black = record.pawns[BLACK];
  EXPECT_EQ(white.blocked, SquareSet({"b3", "d4", "e4", "e5", "g2"}));
  EXPECT_EQ(black.blocked, SquareSet({"b4", "d5", "e6"}));
  // a2's stop square a3 is attacked by b4.
  EXPECT_EQ(white.restrained, white.blocked | SquareSet({"a2"}));
  // g6's stop square g5 is free and unattacked; h7's h6 likewise.
  EXPECT_EQ(black.restrained, black.blocked);
  // Both pawns of a white-black ram, and a white pawn behind a white pawn; the knight holds g2 but
  // doesn't ram it.
  EXPECT_EQ(record.rammed, SquareSet({"b3", "b4", "d4", "d5", "e4", "e5", "e6"}));
  EXPECT_EQ(white.doubled, SquareSet({"e4", "e5"}));
  EXPECT_EQ(white.defended, SquareSet({"b3", "e5"}));
  EXPECT_EQ(black.defended, SquareSet({"d5", "g6"}));
  EXPECT_EQ(white.duos, SquareSet({"d4", "e4"}));
  EXPECT_EQ(white.isolated, SquareSet({"g2"}));
  EXPECT_EQ(black.isolated, SquareSet({"b4"}));
  // Two free files each, none free of both; 11 pawns, 5 central, 7 rammed of which 5 central.
  EXPECT_EQ(record.openness, 1);
}

TEST(PawnFacts, SafeAdvanceAndBackwardPawns) {
  // e4 against d6 and f6: e5 belongs to Black, so e4 can't move and no pawn will ever guard e5.
  // Black's pawns face the same on d5 and f5, and are still on their third rank: weak.
  EvaluationRecord record = FactsOf(FromFen("4k3/8/3p1p2/8/4P3/8/8/4K3 w - - 0 1"));
  EXPECT_EQ(record.pawns[WHITE].safe_advance, 0u);
  EXPECT_EQ(record.pawns[WHITE].backward, SquareSet({"e4"}));
  EXPECT_EQ(record.pawns[WHITE].backward_weak, 0u);
  EXPECT_EQ(record.pawns[BLACK].safe_advance, 0u);
  EXPECT_EQ(record.pawns[BLACK].backward, SquareSet({"d6", "f6"}));
  EXPECT_EQ(record.pawns[BLACK].backward_weak, SquareSet({"d6", "f6"}));

  // A pawn on its third rank held by two enemy pawns is weak.
  record = FactsOf(FromFen("4k3/8/8/1p1p4/8/2P5/8/4K3 w - - 0 1"));
  EXPECT_EQ(record.pawns[WHITE].backward, SquareSet({"c3"}));
  EXPECT_EQ(record.pawns[WHITE].backward_weak, SquareSet({"c3"}));
}

// Owner (0 none, 1 White, 2 Black), owner's files and the other side's pawns, per wing.
std::string Majorities(const EvaluationRecord& record) {
  std::string text;
  for (const WingMajority& m : record.majority) {
    text += std::to_string(m.owner) + " " + std::to_string(m.owner_files) + " " + std::to_string(m.other_pawns) + ";";
  }
  return text;
}

TEST(PawnFacts, WingMajorities) {
  const std::pair<const char*, const char*> rows[] = {
      // Three files against two pawns and nothing on the c-file.
      {"4k3/pp6/8/8/8/8/PPP5/4K3 w - - 0 1", "1 3 2;0 0 0;"},
      // The next file's pawns count against the majority: Black's f7 holds White off on g.
      {"4k3/5ppp/8/8/8/8/6PP/4K3 w - - 0 1", "0 0 0;2 3 2;"},
      // Four files against three pawns, a pawn of the fifth file counted too.
      {"4k3/pp1p4/8/8/8/8/PPPP4/4K3 w - - 0 1", "1 4 3;0 0 0;"},
  };
  for (const auto& [fen, expected] : rows) EXPECT_EQ(Majorities(FactsOf(FromFen(fen))), expected) << fen;
}

TEST(PawnFacts, Openness) {
  // 12 + 2 + 2 for the free files, 4 pawns on the centre files: 14. A rammed pair off the centre
  // files changes nothing, on them it closes by 4 (and its pawns count as central ones).
  EXPECT_EQ(FactsOf(FromFen("4k3/2p2p2/p7/8/8/P7/2P2P2/4K3 w - - 0 1")).openness, 14);
  EXPECT_EQ(FactsOf(FromFen("4k3/2p2p2/8/p7/P7/8/2P2P2/4K3 w - - 0 1")).openness, 14);
  EXPECT_EQ(FactsOf(FromFen("4k3/2p2p2/8/3p4/3P4/8/2P2P2/4K3 w - - 0 1")).openness, 9);
  // A lone rammed pawn, behind its own, opens by one.
  EXPECT_EQ(FactsOf(FromFen("4k3/2p2p1p/8/8/8/P7/P1P2P2/4K3 w - - 0 1")).openness, 15);
  // Every file holds a pawn: two less; 8 pawns, 4 of them central: 16 - 2 - 1 - 2.
  EXPECT_EQ(FactsOf(FromFen("4k3/1p1p1p1p/8/8/8/8/P1P1P1P1/4K3 w - - 0 1")).openness, 11);
}

// Each position is worked out by hand, term by term, with the middlegame tables.
TEST(PawnStructure, HandWorkedPositions) {
  // a2 a3, both passed: the tables (-15/-25, -14/-25), the doubled isolated pair with nothing ahead
  // (-50/-30), and the queenside majority (18/10). PawnIsolated is not called for them.
  ExpectSummary("4k3/8/8/8/8/P7/P7/4K3 w - - 0 1", -61, -70, {{WHITE, WING_QUEENSIDE, 0, -10}});
  // c2 c3 c4 against c6: tripled and isolated with c6 two ranks ahead of the front pawn (-85/-82);
  // c6 is isolated (14/4 with d = 2); d4 is White's, Black can come to attack it (2/4).
  ExpectSummary("4k3/8/2p5/8/2P5/2P5/2P5/4K3 w - - 0 1", -69, -76,
                {{WHITE, WING_CENTRE, 2, -8}, {BLACK, WING_CENTRE, 0, -2}});
  // e4 backward but not weak (10/5) and isolated (18/6); d6 and f6 weak backward (15/12 each) and
  // isolated; White holds d5 and Black e5 for good (4/12 each).
  ExpectSummary("4k3/8/3p1p2/8/4P3/8/8/4K3 w - - 0 1", 41, 50,
                {{WHITE, WING_CENTRE, 5, -7}, {BLACK, WING_CENTRE, 0, -24}});
  // a2 b3 c4, all passed. The walk over the files pairs b with a (9 * 16/11 / 8) and then skips
  // to d, so c and b are not paired. b3 and c4 are guarded by sound bases (3/0 each). Each side
  // has a majority (18/10), of passed pawns only, h7 is isolated (18/6), and White holds d5.
  ExpectSummary("4k3/7p/8/8/2P5/1P6/P7/4K3 w - - 0 1", 45, 17,
                {{WHITE, WING_QUEENSIDE, 5, 2},
                 {WHITE, WING_CENTRE, 6, 0},
                 {BLACK, WING_QUEENSIDE, 0, -5},
                 {BLACK, WING_KINGSIDE, 2, -4}});
}

// The facts and the pawn structure of a position and of its mirror are the same with the colours
// exchanged, the pair negated.
TEST(PawnStructure, MirrorGivesTheMirroredFactsAndNegatedPair) {
  int scored = 0;
  for (const auto& start : WalkStarts()) {
    Board board = FromFen(start.fen);
    ForEachNode(board, start.depth - 1, [&](const Board& node) {
      EvaluationRecord a = StructureOf(node);
      EvaluationRecord b = StructureOf(Mirrored(node));
      ASSERT_EQ(a.rammed, FlipRanks(b.rammed)) << start.fen;
      ASSERT_EQ(a.openness, b.openness) << start.fen;
      for (int wing = 0; wing < 2; ++wing) {
        ASSERT_EQ(a.majority[wing].owner, (3 - b.majority[wing].owner) % 3);
        ASSERT_EQ(a.majority[wing].owner_files, b.majority[wing].owner_files);
        ASSERT_EQ(a.majority[wing].other_pawns, b.majority[wing].other_pawns);
      }
      ASSERT_EQ(a.pawn_summary.positional, -b.pawn_summary.positional) << start.fen;
      ASSERT_EQ(a.pawn_summary.dynamic, -b.pawn_summary.dynamic) << start.fen;
      for (Color c : {WHITE, BLACK}) {
        std::array<Bitboard, 14> flipped = KeptSets(b.pawns[c ^ 1]);
        for (Bitboard& set : flipped) set = FlipRanks(set);
        ASSERT_EQ(KeptSets(a.pawns[c]), flipped) << start.fen;
        ASSERT_EQ(a.pawns[c].advance_attacks, FlipRanks(b.pawns[c ^ 1].advance_attacks));
        for (int wing = 0; wing < WING_COUNT; ++wing) {
          for (int kind : {POTENTIAL_ATTACK, POTENTIAL_DEFENCE}) {
            ASSERT_EQ(a.pawn_summary.potential[c][wing][kind], b.pawn_summary.potential[c ^ 1][wing][kind]);
          }
        }
      }
      scored += a.pawn_summary.positional != 0 || a.pawn_summary.dynamic != 0;
    });
  }
  EXPECT_GT(scored, 100);
}

// EvaluatePawnExtras on a record prepared as the full evaluator does before the pieces.
struct Extras {
  ScorePair pair;
  EvaluationRecord record;
};
Extras ExtrasOf(const char* fen) {
  Board board = FromFen(fen);
  Extras extras{ScorePair(), FactsOf(board)};
  FindPassedFronts(extras.record);
  extras.pair = EvaluatePawnExtras(extras.record, board);
  return extras;
}
TEST(PawnExtras, MajoritiesAgainstTheKing) {
  // The queenside majority far from the black king.
  Extras far = ExtrasOf("6k1/8/8/8/8/8/PP6/4K3 w - - 0 1");
  EXPECT_EQ(far.pair, ScorePair(20, 7));
  EXPECT_EQ(far.record.potential[WHITE][WING_QUEENSIDE][POTENTIAL_ATTACK], 2);
  EXPECT_EQ(far.record.endgame_term, 12);
}

TEST(PawnExtras, BlockedCentrePawnsAndTheIsolatedQueenPawn) {
  // e2 behind a bishop (-18/-28), c2 behind a knight with d4 and d5 locked (-25/-25), the queenside
  // majority far from the king (20/7); Black's isolated d5 with only minor pieces left on the board:
  // -18/-16 for Black.
  Extras blocked = ExtrasOf("4k3/8/8/3p4/3P4/2N1B3/2PPP3/4K3 w - - 0 1");
  EXPECT_EQ(blocked.pair, ScorePair(-5, -30));
  EXPECT_EQ(blocked.record.potential[WHITE][WING_CENTRE][POTENTIAL_ATTACK], -10);
  EXPECT_EQ(blocked.record.potential[WHITE][WING_CENTRE][POTENTIAL_DEFENCE], -4);
  EXPECT_EQ(blocked.record.endgame_term, 12);
  // White's isolated d4 with a rook behind it (6/6) and a bishop of its colour guarding it (0/-2);
  // the pawn is passed, and the rook behind it adds 5/5 to its details.
  Extras iqp = ExtrasOf("4k3/8/8/8/3P4/4B3/8/3RK3 w - - 0 1");
  EXPECT_EQ(iqp.pair, ScorePair(-7, -7));
  EXPECT_EQ(iqp.record.potential[WHITE][WING_CENTRE][POTENTIAL_DEFENCE], 4);
}

}  // namespace
