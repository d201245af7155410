#include "evaluation/queen_evaluation.h"

#include "board/attacks.h"
#include "board/bitboard.h"
#include "evaluation/piece_tables.h"
#include "evaluation/side_view.h"

namespace {

constexpr int RANK_SEVEN = 6;  // counted from 0
constexpr Bitboard FIRST_RANK = RankMask(0);
constexpr Bitboard FIRST_TWO_RANKS = RankMask(0) | RankMask(1);

// The attack that a queen adds on the enemy king's wing, by its Manhattan distance 1 to 14.
constexpr int KING_DISTANCE_ATTACK[14] = {18, 14, 12, 6, 2, 1, 0, -1, -2, -3, -4, -5, -6, -7};

// Own pieces between the queen and an enemy slider: each of them is pinned to the queen.
ScorePair Screens(const Board& board, Color colour, Square s, Bitboard attacks) {
  Bitboard screens = FindBlockers(board, attacks & board.sides[colour].all, board.sides[colour ^ 1], s);
  int n = PopCount(screens);
  return ScorePair(-30 * n, -30 * n);
}

// An advanced queen that has few squares where no enemy pawn or piece attacks it.
ScorePair SafeSquares(EvaluationRecord& record, const Board& board, Color colour, int wing, Bitboard attacks,
                      bool middlegame) {
  Bitboard safe = attacks & ~board.occupied & ~record.side_facts[colour ^ 1].attacks_without_queens;
  if (safe == 0) {
    AddAttack(record, colour, WING_CENTRE, -16);
    AddDefence(record, colour, wing, -10);
    return ScorePair(-70, -110);
  }
  if (!HasMoreThanOne(safe)) {
    AddAttack(record, colour, WING_CENTRE, -12);
    AddDefence(record, colour, wing, -8);
    return ScorePair(-40, -70);
  }
  if ((safe & RelativeSet(colour, FIRST_TWO_RANKS)) == 0) {
    AddDefence(record, colour, wing, -4);
    return middlegame ? ScorePair(-12, -20) : ScorePair(-18, -30);
  }
  if ((safe & RelativeSet(colour, FIRST_RANK)) == 0) {
    AddDefence(record, colour, wing, middlegame ? -1 : -2);
    return middlegame ? ScorePair(-8, -14) : ScorePair(-8, -10);
  }
  return ScorePair();
}

// Middlegame: the queen near an enemy king that has castled or lost its rights, and far from an
// own king that can't castle any more.
ScorePair KingDistances(EvaluationRecord& record, const Board& board, Color colour, Square s, Bitboard attacks) {
  const Color enemy = colour ^ 1;
  const int castling = board.State().castling;
  ScorePair pair;
  if ((castling & CASTLE_RIGHTS_OF[enemy]) == 0) {
    int m = Tables.manhattan_distance[s][board.sides[enemy].king_square];
    pair -= ScorePair(m, 3 * m);
    AddAttack(record, colour, KingWing(record, enemy), KING_DISTANCE_ATTACK[m - 1]);
  }
  if ((castling & CASTLE_RIGHTS_OF[colour]) == 0) {
    Square king = board.sides[colour].king_square;
    Bitboard safe = attacks & ~record.side_facts[enemy].attacks_without_queens;
    bool far = Tables.manhattan_distance[s][king] > 8;
    bool guards_king = (attacks & Tables.king_attacks[king]) != 0;
    bool can_return = (safe & board.QueenAttacks(king)) != 0;
    if (far && !guards_king && !can_return) {
      pair -= ScorePair(8, 20);
      AddDefence(record, colour, KingWing(record, colour), -16);
    }
  }
  return pair;
}

ScorePair EvaluateQueen(EvaluationRecord& record, const Board& board, Color colour, Square s,
                        EvaluationVariant variant) {
  const bool middlegame = variant == EvaluationVariant::MIDDLEGAME;
  const Color enemy = colour ^ 1;
  const Square enemy_king = board.sides[enemy].king_square;
  const int enemy_wing = KingWing(record, enemy);
  const int wing = WING_OF_FILE[FileOf(s)];
  const int rank = RelativeRank(s, colour);
  const Bitboard attacks = board.QueenAttacks(s);
  record.side_facts[colour].attacks |= attacks;

  ScorePair pair = (middlegame ? QUEEN_MIDDLEGAME_TABLE : QUEEN_OPENING_TABLE).At(RelativeSquare(s, colour));
  AddAttack(record, colour, WING_CENTRE, 6);
  AddAttack(record, colour, wing, middlegame ? 12 : 10);
  pair += Screens(board, colour, s, attacks);
  if (middlegame && (attacks & Tables.king_attacks[enemy_king]) != 0) {
    pair += ScorePair(0, 8);
    AddAttack(record, colour, enemy_wing, 4);
    AddDefence(record, enemy, enemy_wing, -4);
  }
  if (rank >= 2) {
    if (!middlegame) pair -= ScorePair(5, 2);
    pair += SafeSquares(record, board, colour, wing, attacks, middlegame);
  }
  if (middlegame) pair += KingDistances(record, board, colour, s, attacks);
  if (rank == RANK_SEVEN && RelativeRank(enemy_king, colour) >= RANK_SEVEN) {
    pair += middlegame ? ScorePair(15, 25) : ScorePair(10, 18);
    AddAttack(record, colour, enemy_wing, middlegame ? 8 : 6);
  }
  return pair;
}

}  // namespace

ScorePair EvaluateQueens(EvaluationRecord& record, const Board& board, Color colour,
                         EvaluationVariant variant) {
  return SumOverPieces(board.sides[colour].queens,
                       [&](Square s) { return EvaluateQueen(record, board, colour, s, variant); });
}
