#include "evaluation/knight_evaluation.h"

#include <algorithm>

#include "board/bitboard.h"
#include "evaluation/piece_tables.h"
#include "evaluation/side_view.h"

namespace {

// What the opening and middlegame variants give for the same features.
struct KnightWeights {
  const PairTable* table;
  ScorePair beside_knight;  // the knight guards another own knight
  int beside_knight_attack;
  int beside_knight_defence;
  ScorePair pawn_defended;
  ScorePair can_be_chased;  // an enemy pawn can still come and attack the square
  ScorePair chasers_restrained;  // only pawns that are held back can
  int chasers_restrained_attack;
  ScorePair outpost;  // no enemy pawn can ever attack the square
  int support_defence;  // beyond rank four: the defence for no or a weak pawn support
  ScorePair weak_support[2];  // by one or two defending pawns
  int strong_support_attack;
  int strong_support_defence;
  ScorePair strong_support[2];
};

constexpr KnightWeights OPENING_WEIGHTS = {
    &KNIGHT_OPENING_TABLE, ScorePair(0, 0), 0, 1, ScorePair(2, 0), ScorePair(-2, -4),
    ScorePair(2, 10), 3, ScorePair(9, 14), 2, {ScorePair(3, 7), ScorePair(5, 12)},
    6, 3, {ScorePair(13, 18), ScorePair(21, 27)}};

constexpr KnightWeights MIDDLEGAME_WEIGHTS = {
    &KNIGHT_MIDDLEGAME_TABLE, ScorePair(1, -2), -2, 4, ScorePair(2, 2), ScorePair(2, 4),
    ScorePair(3, 10), 2, ScorePair(13, 23), 3, {ScorePair(2, 10), ScorePair(6, 14)},
    7, 4, {ScorePair(13, 20), ScorePair(25, 32)}};

// Middlegame: by openness / 2, what a knight gains in the dynamic half and in attack. Knights like
// closed positions.
constexpr int OPENNESS_DYNAMIC[8] = {15, 12, 6, 3, 2, 0, -2, -5};
constexpr int OPENNESS_ATTACK[8] = {6, 5, 3, 2, 1, 1, 0, 0};

// Safe mobility by the number of safe squares, 4 or more counting as 4.
constexpr ScorePair MOBILITY_PAIR[5] = {ScorePair(-6, -12), ScorePair(-2, -4), ScorePair(2, 4), ScorePair(3, 6),
                                        ScorePair(4, 8)};
constexpr int MOBILITY_POTENTIAL[5] = {-6, -3, 0, 1, 2};

// The middlegame knight pays for its distance from the enemy king, unless it is already close on
// the king's wing.
ScorePair KingDistancePenalty(const EvaluationRecord& record, const Board& board, Color colour, Square s,
                              int wing) {
  Color enemy = colour ^ 1;
  int d = Tables.king_distance[s][board.sides[enemy].king_square];
  if (d <= 4 && wing == KingWing(record, enemy)) return ScorePair();
  return ScorePair(d, 8 * d);
}

// A knight on rank five or beyond that no enemy pawn can chase away, by its own pawn support.
ScorePair OutpostSupport(EvaluationRecord& record, const Board& board, Color colour, Square s, int wing,
                         Bitboard supporters, const KnightWeights& weights) {
  if (supporters == 0) {
    AddAttack(record, colour, wing, 4);
    AddDefence(record, colour, wing, weights.support_defence);
    return ScorePair();
  }
  int n = std::min(SparsePopCount(supporters), 2);
  Color enemy = colour ^ 1;
  bool pawn_in_front = (Tables.front_span[colour][s] & board.sides[enemy].pawns) != 0;
  bool only_passed = (supporters & ~record.pawns[colour].passed) == 0;
  if (pawn_in_front || only_passed) {
    AddAttack(record, colour, wing, 4);
    AddDefence(record, colour, wing, weights.support_defence);
    return weights.weak_support[n - 1];
  }
  AddAttack(record, colour, wing, weights.strong_support_attack);
  AddDefence(record, colour, wing, weights.strong_support_defence);
  return weights.strong_support[n - 1];
}

// From rank four on: whether enemy pawns can still come to attack the square.
ScorePair ChaseAndOutpost(EvaluationRecord& record, const Board& board, Color colour, Square s, int wing,
                          Bitboard supporters, const KnightWeights& weights) {
  Color enemy = colour ^ 1;
  Bitboard chasers = Tables.attack_span[enemy][s] & board.sides[enemy].pawns;
  if (chasers != 0) {
    if ((chasers & ~record.pawns[enemy].restrained) != 0) return weights.can_be_chased;
    AddAttack(record, colour, wing, weights.chasers_restrained_attack);
    return weights.chasers_restrained;
  }
  ScorePair pair = weights.outpost;
  if (RelativeRank(s, colour) >= 4) pair += OutpostSupport(record, board, colour, s, wing, supporters, weights);
  return pair;
}

ScorePair EvaluateKnight(EvaluationRecord& record, const Board& board, Color colour, Square s,
                         EvaluationVariant variant) {
  const bool middlegame = variant == EvaluationVariant::MIDDLEGAME;
  const KnightWeights& weights = middlegame ? MIDDLEGAME_WEIGHTS : OPENING_WEIGHTS;
  const BoardSide& own = board.sides[colour];
  const Square r = RelativeSquare(s, colour);
  const int wing = KNIGHT_WING_OF_FILE[FileOf(s)];
  const int value = KnightValue(board);

  ScorePair pair = ScorePair(value, value) + weights.table->At(r);
  AddAttack(record, colour, wing, KNIGHT_ATTACK_TABLE[r]);
  if (middlegame) {
    pair -= KingDistancePenalty(record, board, colour, s, wing);
    int o = std::min(record.openness >> 1, 7);
    pair += ScorePair(0, OPENNESS_DYNAMIC[o]);
    AddAttack(record, colour, wing, OPENNESS_ATTACK[o]);
  }
  record.side_facts[colour].attacks |= Tables.knight_attacks[s];

  if ((Tables.knight_attacks[s] & own.knights) != 0) {
    pair += weights.beside_knight;
    AddAttack(record, colour, wing, weights.beside_knight_attack);
    AddDefence(record, colour, wing, weights.beside_knight_defence);
  }
  // The own pawns that guard the square: those standing where an enemy pawn on s would attack.
  Bitboard supporters = Tables.pawn_attacks[colour ^ 1][s] & own.pawns;
  if (supporters != 0) {
    pair += weights.pawn_defended;
    AddDefence(record, colour, wing, 1);
  }
  if (RelativeRank(s, colour) >= 3) pair += ChaseAndOutpost(record, board, colour, s, wing, supporters, weights);
  return pair;
}

ScorePair KnightMobility(EvaluationRecord& record, const Board& board, Color colour) {
  Color enemy = colour ^ 1;
  const PawnFacts& own_pawns = record.pawns[colour];
  Bitboard unsafe = board.occupied | record.pawns[enemy].attacks |
                    (record.side_facts[enemy].attacks_without_queens & ~own_pawns.attacks);
  ScorePair pair;
  for (Bitboard knights = board.sides[colour].knights; knights != 0;) {
    Square s = PopFirstBit(knights);
    int c = std::min(PopCount(Tables.knight_attacks[s] & ~unsafe), 4);
    pair += MOBILITY_PAIR[c];
    AddAttack(record, colour, WING_CENTRE, MOBILITY_POTENTIAL[c]);
    AddDefence(record, colour, WING_CENTRE, MOBILITY_POTENTIAL[c]);
  }
  return pair;
}

}  // namespace

ScorePair EvaluateKnights(EvaluationRecord& record, const Board& board, Color colour,
                          EvaluationVariant variant) {
  return SumOverPieces(board.sides[colour].knights,
                       [&](Square s) { return EvaluateKnight(record, board, colour, s, variant); });
}

ScorePair EvaluateKnightMobility(EvaluationRecord& record, const Board& board) {
  return KnightMobility(record, board, WHITE) - KnightMobility(record, board, BLACK);
}
