#include "evaluation/piece_evaluation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "board/bitboard.h"
#include "evaluation/pawn_structure.h"
#include "evaluation/piece_tables.h"
#include "evaluation/side_view.h"
#include "evaluation_test_support.h"

namespace {

using namespace evaluation_test;

constexpr EvaluationVariant OPENING = EvaluationVariant::OPENING;
constexpr EvaluationVariant MIDDLEGAME = EvaluationVariant::MIDDLEGAME;

// The record as the full evaluator has it when the piece terms start. The openness is fixed, so
// that the expected values don't depend on the pawn structure code.
EvaluationRecord Prepare(const Board& board, int openness = 8) {
  EvaluationRecord record = evaluation_test::FactsOf(board);
  record.openness = std::uint16_t(openness);
  return record;
}

int Attack(const EvaluationRecord& record, Color c, int wing) { return record.potential[c][wing][POTENTIAL_ATTACK]; }
int Defence(const EvaluationRecord& record, Color c, int wing) { return record.potential[c][wing][POTENTIAL_DEFENCE]; }

// One potential that a term is expected to leave.
struct Potential {
  Color colour;
  int wing;
  int kind;  // ATTACK or DEFENCE
  int value;
};
constexpr int ATTACK = POTENTIAL_ATTACK;
constexpr int DEFENCE = POTENTIAL_DEFENCE;

using Term = std::function<ScorePair(EvaluationRecord&, const Board&)>;
using RecordEdit = std::function<void(EvaluationRecord&)>;

// Runs a term on the prepared position, after `setup` if one is given, and checks its pair and the
// listed potentials. Returns the record for further checks.
EvaluationRecord ExpectTerm(const Term& term, const char* fen, ScorePair expected,
                            std::initializer_list<Potential> potentials,
                            const RecordEdit& setup = {}) {
  Board board = FromFen(fen);
  EvaluationRecord record = Prepare(board);
  if (setup) setup(record);
  const ScorePair pair = term(record, board);
  EXPECT_EQ(pair, expected) << fen << ": " << pair.Positional() << "/" << pair.Dynamic();
  for (const Potential& p : potentials) {
    EXPECT_EQ(record.potential[p.colour][p.wing][p.kind], p.value)
        << fen << " colour " << p.colour << " wing " << p.wing << " kind " << p.kind;
  }
  return record;
}

Term Knights(EvaluationVariant variant) {
  return [variant](EvaluationRecord& r, const Board& b) { return EvaluateKnights(r, b, WHITE, variant); };
}
Term Development(EvaluationVariant variant) {
  return [variant](EvaluationRecord& r, const Board& b) { return EvaluateDevelopment(r, b, variant); };
}
const Term ROOKS = [](EvaluationRecord& r, const Board& b) { return EvaluateRooks(r, b, WHITE); };
const Term BISHOPS = [](EvaluationRecord& r, const Board& b) { return EvaluateBishops(r, b, WHITE); };

// A record with the fields a term writes, colour for colour: the potentials, the attacks and the
// endgame term, the latter negated for the mirror.
void ExpectMirroredOutputs(const EvaluationRecord& record, const EvaluationRecord& mirror,
                           const std::string& context) {
  for (Color c : {WHITE, BLACK}) {
    EXPECT_EQ(FlipRanks(record.side_facts[c].attacks), mirror.side_facts[c ^ 1].attacks) << context;
    for (int wing = 0; wing < WING_COUNT; ++wing) {
      EXPECT_EQ(Attack(record, c, wing), Attack(mirror, c ^ 1, wing)) << context << " wing " << wing;
      EXPECT_EQ(Defence(record, c, wing), Defence(mirror, c ^ 1, wing)) << context << " wing " << wing;
    }
  }
  EXPECT_EQ(record.endgame_term, -mirror.endgame_term) << context;
}

TEST(PieceTables, ValuesFollowThePawns) {
  EXPECT_EQ(KnightValue(FromFen("4k3/pppp4/p7/8/8/8/PPPPP3/4K3 w - - 0 1")), 0);  // 10 pawns, avg 5
  const Board full = FromFen("4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - - 0 1");
  EXPECT_EQ(KnightValue(full), 18);
  EXPECT_EQ(RookValue(full), ScorePair(-21, -51));
  const Board bare = FromFen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
  EXPECT_EQ(KnightValue(bare), -30);
  EXPECT_EQ(RookValue(bare), ScorePair(75, 45));
}

// Each term evaluated for White in a position and for Black in its mirror gives the same pair, and
// the same potentials and attacks, colour for colour.
TEST(PieceEvaluation, EveryTermMirrorsForBlack) {
  // As the full evaluator calls them: a piece kind's term only for a side that has the kind.
  struct ColourTerm {
    const char* name;
    std::function<ScorePair(EvaluationRecord&, const Board&, Color)> term;  // from the colour's view
    PieceType kind = NO_PIECE;

    ScorePair run(EvaluationRecord& record, const Board& board, Color c) const {
      if (kind != NO_PIECE && board.sides[c].Pieces(kind) == 0) return ScorePair();
      return term(record, board, c);
    }
  };
  // A term of both sides, White's minus Black's.
  auto both = [](Term term) {
    return [term](EvaluationRecord& r, const Board& b, Color c) { return c == WHITE ? term(r, b) : -term(r, b); };
  };
  const ColourTerm terms[] = {
      {"knights opening", [](auto& r, auto& b, Color c) { return EvaluateKnights(r, b, c, OPENING); }, KNIGHT},
      {"knights middlegame", [](auto& r, auto& b, Color c) { return EvaluateKnights(r, b, c, MIDDLEGAME); }, KNIGHT},
      {"bishops", [](auto& r, auto& b, Color c) { return EvaluateBishops(r, b, c); }, BISHOP},
      {"rooks", [](auto& r, auto& b, Color c) { return EvaluateRooks(r, b, c); }, ROOK},
      {"queens opening", [](auto& r, auto& b, Color c) { return EvaluateQueens(r, b, c, OPENING); }, QUEEN},
      {"queens middlegame", [](auto& r, auto& b, Color c) { return EvaluateQueens(r, b, c, MIDDLEGAME); }, QUEEN},
      {"development opening", both(Development(OPENING))},
      {"development middlegame", both(Development(MIDDLEGAME))},
      {"space", both(EvaluateSpace)},
      {"knight mobility", both(EvaluateKnightMobility)},
  };
  int checked = 0;
  for (const auto& start : WalkStarts()) {
    Board board = FromFen(start.fen);
    ForEachNode(board, std::min(start.depth, 1), [&](const Board& node) {
      Board mirror = Mirrored(node);
      for (const ColourTerm& term : terms) {
        EvaluationRecord record = Prepare(node, 5);
        EvaluationRecord mirrored = Prepare(mirror, 5);
        // The queens and the knights' mobility read the attacks of the other pieces.
        for (Color c : {WHITE, BLACK}) {
          record.side_facts[c].attacks_without_queens = record.side_facts[c].attacks | record.pawns[c ^ 1].attacks;
          mirrored.side_facts[c].attacks_without_queens =
              mirrored.side_facts[c].attacks | mirrored.pawns[c ^ 1].attacks;
        }
        std::string context = std::string(term.name) + " in " + start.fen;
        EXPECT_EQ(term.run(record, node, WHITE), term.run(mirrored, mirror, BLACK)) << context;
        EXPECT_EQ(term.run(record, node, BLACK), term.run(mirrored, mirror, WHITE)) << context;
        ExpectMirroredOutputs(record, mirrored, context);
        ++checked;
      }
    });
  }
  EXPECT_GT(checked, 1000);
}

TEST(Knights, OutpostsBySupport) {
  // A knight on e5 that no black pawn can chase; the black king is on the other wing, three
  // squares away. Middlegame, 4 pawns: value -18; square 26/44; distance 3: -3/-24; openness 8:
  // 0/2; outpost 13/23. Attack: square 10, openness 1, no support 4.
  const char* alone = "6k1/pp6/8/4N3/8/8/PP6/6K1 w - - 0 1";
  EvaluationRecord record = ExpectTerm(Knights(MIDDLEGAME), alone, ScorePair(18, 27),
                                       {{WHITE, WING_CENTRE, ATTACK, 10 + 1 + 4}, {WHITE, WING_CENTRE, DEFENCE, 3}});
  EXPECT_EQ(record.side_facts[WHITE].attacks, Prepare(FromFen(alone)).side_facts[WHITE].attacks |
                                                  Tables.knight_attacks[Sq("e5")]);
  // Supported by a passed pawn: weak support.
  ExpectTerm(Knights(MIDDLEGAME), "6k1/pp6/8/4N3/3P4/8/PP6/6K1 w - - 0 1", ScorePair(18 + 2 + 2, 27 + 2 + 10),
             {{WHITE, WING_CENTRE, ATTACK, 10 + 1 + 4}, {WHITE, WING_CENTRE, DEFENCE, 1 + 3}});
  // Opening: the same outpost without support gives 9/14 and no distance or openness terms.
  ExpectTerm(Knights(OPENING), alone, ScorePair(-18 + 22 + 9, -18 + 38 + 14),
             {{WHITE, WING_CENTRE, ATTACK, 10 + 4}, {WHITE, WING_CENTRE, DEFENCE, 2}});
}

TEST(Knights, SafeMobilityIgnoresQueensAndCountsPawnCover) {
  const Term mobility = EvaluateKnightMobility;
  // Knight e4; c3 is attacked by the pawn b4, f2 is taken by the own king, d2 and g5 are covered by
  // black pieces, d6 too but the pawn e5 guards it, g3 is attacked by the pawn h4: c5, d6, f6 remain.
  const char* fen = "7k/8/8/4P3/1p2N2p/8/5K2/8 w - - 0 1";
  ExpectTerm(mobility, fen, ScorePair(3, 6), {{WHITE, WING_CENTRE, ATTACK, 1}, {WHITE, WING_CENTRE, DEFENCE, 1}},
             [](EvaluationRecord& r) { r.side_facts[BLACK].attacks_without_queens = SquareSet({"d2", "d6", "g5"}); });
  // Five or more safe squares count as four; Black's knight in the corner has none, its squares
  // being attacked by the pawns a5 and d6.
  ExpectTerm(mobility, "n6k/8/3P4/P7/4N3/8/8/7K w - - 0 1", ScorePair(4, 8) - ScorePair(-6, -12),
             {{BLACK, WING_CENTRE, ATTACK, -6}, {BLACK, WING_CENTRE, DEFENCE, -6}});
}

TEST(Bishops, FianchettoSeesThroughItsKnight) {
  // g2 with the pawn on g3 and no pawn on h1-a8: the knight on f3 lets the bishop count e4 to a8.
  // Square 20/22, no enemy bishop 8/10, empty diagonal 24/24; reach g2 f3 e4 d5 c6 b7: c 6 gives
  // -2/-6, ce 2, ri 2 and fa 3 (c6, b7, a8) give 3/15; one defended enemy pawn on light squares
  // 0/-2.
  const char* fen = "6k1/5p1p/6p1/8/8/5NP1/5PBP/6K1 w - - 0 1";
  EvaluationRecord record = ExpectTerm(
      BISHOPS, fen, ScorePair(53, 63),
      {{WHITE, WING_KINGSIDE, DEFENCE, 5}, {WHITE, WING_QUEENSIDE, ATTACK, 6}, {WHITE, WING_CENTRE, ATTACK, 0}},
      [](EvaluationRecord& r) { r.pawns[BLACK].defended = SquareSet({"g6"}); });
  EXPECT_EQ(record.endgame_term, 0);
  // Only the real attacks are noted, not those seen through the knight.
  EXPECT_EQ(record.side_facts[WHITE].attacks,
            Prepare(FromFen(fen)).side_facts[WHITE].attacks | SquareSet({"f1", "h1", "h3", "f3"}));
}

TEST(Rooks, ShutInOpenFilesAndTheSeventhRank) {
  // Value 51/21 with 4 pawns; one square on the file -4/-10; behind the pawn h2 -6/-14; no
  // lateral square -2/-6; shut in -50/-70.
  EvaluationRecord record = ExpectTerm(ROOKS, "6k1/6pp/8/8/8/8/6PP/6KR w - - 0 1", ScorePair(-11, -79),
                                       {{WHITE, WING_KINGSIDE, ATTACK, -4 - 5 - 8}, {WHITE, WING_KINGSIDE, DEFENCE, -5}});
  EXPECT_EQ(record.endgame_term, 24);
  // Rooks on c7 and e7 against the king on g8: the lower sees the higher on the seventh rank. Per
  // rook 75/45 and seven squares of the open file 4/10; both on another open file, m = 1 > 0:
  // 7/15. c7: connected 15/28 and attack 10; both: seventh rank 28/50 and attack 14. e7 is no
  // neighbour of the g-file; the c-file is on the queenside (knight wing 0).
  ExpectTerm(ROOKS, "6k1/2R1R3/8/8/8/8/8/6K1 w - - 0 1",
             ScorePair(2 * (75 + 4 + 7 + 28) + 15, 2 * (45 + 10 + 15 + 50) + 28),
             {{WHITE, WING_CENTRE, ATTACK, 10 + 2 * 14 + 6}, {WHITE, WING_QUEENSIDE, ATTACK, 6}});
  // On f7 next to the king's file, with a black queen on f8 in front: 12/33, 8/25.
  ExpectTerm(ROOKS, "5qk1/5R2/8/8/8/8/8/6K1 w - - 0 1",
             ScorePair(75 + 4 + 7 + 28 + 12 + 8, 45 + 10 + 15 + 50 + 33 + 25),
             {{WHITE, WING_KINGSIDE, ATTACK, 6 + 11 + 4}, {BLACK, WING_KINGSIDE, DEFENCE, -9}});
}

TEST(Queens, SafeSquaresOfAnAdvancedQueen) {
  // Queen d4 with the kings out of its lines. S is the set of squares the enemy doesn't attack.
  Board board = FromFen("8/8/7k/8/3Q4/7K/8/8 w - - 0 1");
  auto run = [&](Bitboard unattacked, EvaluationVariant variant, int* defence = nullptr) {
    EvaluationRecord record = Prepare(board);
    record.side_facts[BLACK].attacks_without_queens = ~unattacked;
    ScorePair pair = EvaluateQueens(record, board, WHITE, variant);
    if (defence != nullptr) *defence = Defence(record, WHITE, WING_OF_FILE[3]);
    return pair;
  };
  for (EvaluationVariant variant : {OPENING, MIDDLEGAME}) {
    bool middlegame = variant == MIDDLEGAME;
    int reference_defence, defence;
    ScorePair reference = run(SquareSet({"d5", "d1"}), variant, &reference_defence);
    EXPECT_EQ(run(0, variant, &defence) - reference, ScorePair(-70, -110));
    EXPECT_EQ(defence - reference_defence, -10);
    EXPECT_EQ(run(SquareSet({"d5"}), variant, &defence) - reference, ScorePair(-40, -70));
    EXPECT_EQ(defence - reference_defence, -8);
    EXPECT_EQ(run(SquareSet({"d5", "e5"}), variant, &defence) - reference,
              middlegame ? ScorePair(-12, -20) : ScorePair(-18, -30));
    EXPECT_EQ(defence - reference_defence, -4);
    EXPECT_EQ(run(SquareSet({"d5", "d2"}), variant, &defence) - reference,
              middlegame ? ScorePair(-8, -14) : ScorePair(-8, -10));
    EXPECT_EQ(defence - reference_defence, middlegame ? -1 : -2);
  }

  // On rank two no square counts.
  Board low = FromFen("8/7k/8/8/8/7K/3Q4/8 w - - 0 1");
  EvaluationRecord boxed = Prepare(low);
  boxed.side_facts[BLACK].attacks_without_queens = ~Bitboard{0};
  EvaluationRecord open = Prepare(low);
  EXPECT_EQ(EvaluateQueens(boxed, low, WHITE, OPENING), EvaluateQueens(open, low, WHITE, OPENING));
}

TEST(Queens, ScreensAndTheKings) {
  // The knight d4 stands between the queen d1 and the rook d8.
  Board pinned = FromFen("3r2k1/8/8/8/3N4/8/8/3Q2K1 w - - 0 1");
  Board aside = FromFen("2r3k1/8/8/8/3N4/8/8/3Q2K1 w - - 0 1");
  EvaluationRecord record = Prepare(pinned);
  ScorePair with_screen = EvaluateQueens(record, pinned, WHITE, OPENING);
  record = Prepare(aside);
  EXPECT_EQ(with_screen - EvaluateQueens(record, aside, WHITE, OPENING), ScorePair(-30, -30));

}

TEST(Development, MinorsAtHomeAndKnightsBeforeThePawns) {
  // After 1. Nf3 only White's queenside minors and both of Black's pairs are at home.
  ExpectTerm(Development(OPENING), "rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R b KQkq - 1 1",
             ScorePair(14 - 6, 40 - 14),
             {{WHITE, WING_KINGSIDE, ATTACK, 0}, {BLACK, WING_KINGSIDE, DEFENCE, -6},
              {BLACK, WING_CENTRE, ATTACK, 4}, {BLACK, WING_CENTRE, DEFENCE, 6}});
  // Knights on c3 and f3 in front of c2 and f2, e3 against d5, d4 against e4: 4/8 and 25/35. Black
  // still has b8 and c8 at home.
  const char* locked = "rnbqkb1r/ppp2ppp/5n2/3p4/3Pp3/2N1PN2/PPP2PPP/R1BQKB1R w KQkq - 0 1";
  ExpectTerm(Development(OPENING), locked, ScorePair(-29 + 18 + 6, -43 + 45 + 14),
             {{WHITE, WING_CENTRE, ATTACK, -3 + 4}, {WHITE, WING_CENTRE, DEFENCE, 3 + 6}});
  ExpectTerm(Development(MIDDLEGAME), locked, ScorePair(18 + 6, 45 + 14), {});
  // g3 played with the bishop still on f1 (and Ng1 gone): 8/14.
  ExpectTerm(Development(MIDDLEGAME), "4k3/8/8/8/8/6P1/5P1P/5BK1 w - - 0 1", ScorePair(-8 + 6, -14 + 14),
             {{WHITE, WING_KINGSIDE, DEFENCE, -4}});
}

TEST(Space, AttackedSquaresAndTheirMargins) {
  Board board = FromFen("6k1/8/8/1N6/8/5R2/P7/6K1 w - - 0 1");
  auto run = [&](int white_squares, int black_squares) {
    EvaluationRecord record = Prepare(board);
    // The first squares from a4 on; only wing presence, which doesn't touch the centre, sees rank 6.
    const Bitboard from_a4 = Rectangle('a', 'h', 4, 6);
    record.side_facts[WHITE].attacks = from_a4 & ((Bitboard{1} << 24 << white_squares) - 1);
    record.side_facts[BLACK].attacks = from_a4 & ((Bitboard{1} << 24 << black_squares) - 1);
    ScorePair pair = EvaluateSpace(record, board);
    return std::make_pair(pair, Attack(record, WHITE, WING_CENTRE) - Attack(record, BLACK, WING_CENTRE));
  };
  EXPECT_EQ(run(10, 10), std::make_pair(ScorePair(0, 0), 0));
  EXPECT_EQ(run(15, 10), std::make_pair(ScorePair(10, 20), 20));
  EXPECT_EQ(run(8, 7), std::make_pair(ScorePair(2, 4), 12));  // 160 > 147, 56 = 56
}

}  // namespace
