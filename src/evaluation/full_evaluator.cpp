#include "evaluation/full_evaluator.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "board/bitboard.h"
#include "evaluation/king_safety.h"
#include "evaluation/passed_pawns.h"
#include "evaluation/pawn_structure.h"
#include "evaluation/piece_evaluation.h"
#include "evaluation/position_type.h"
#include "evaluation/score_mix.h"

namespace {

constexpr int OPENING_LAZY_MARGIN = 285;
constexpr int MIDDLEGAME_LAZY_MARGIN = 275;
constexpr ScorePair BISHOP_PAIR_BONUS(50, 50);
constexpr int ENDGAME_TERM_MATERIAL_LIMIT = 150;

constexpr std::array<double, 14> MakeEndgameFactors() {
  std::array<double, 14> factors{};
  for (int i = 0; i < 14; ++i) {
    double x = (13 - i) * 0.07692307692307693;
    double y = ((x * 0.24875006018 + 0.11095692200031873) * x + 0.7854795236172942) * x -
               0.07369495345398903;
    factors[i] = std::clamp(y, 0.0, 1.0);
  }
  return factors;
}

// The white-view value of a position's material.
int WhiteMaterial(const Board& board) {
  int material = board.State().material;
  return board.side_to_move == WHITE ? material : -material;
}

// Material plus one half of the pair, from the side to move's view.
int SideToMoveEstimate(const Board& board, int half) {
  int material = board.State().material;
  return board.side_to_move == WHITE ? material + half : material - half;
}

// Answers without the expensive terms when both halves of the pair, added to the material, lie
// beyond the margin on the same side of the bound.
bool LazyPairExit(EvaluationRecord& record, const Board& board, int bound, ScorePair pair, int margin,
                  int& answer) {
  if (!record.allow_lazy_exits) return false;
  int d_positional = bound - SideToMoveEstimate(board, pair.Positional());
  int d_dynamic = bound - SideToMoveEstimate(board, pair.Dynamic());
  bool far = std::abs(d_positional) > margin && std::abs(d_dynamic) > margin;
  if (!far || (d_positional >= 1) != (d_dynamic >= 1)) return false;
  record.lazy = true;
  answer = d_positional >= 1 ? bound - 1 : bound;
  return true;
}

void AddPawnPotentials(EvaluationRecord& record) {
  for (Color c : {WHITE, BLACK}) {
    for (int wing = 0; wing < WING_COUNT; ++wing) {
      for (int kind : {POTENTIAL_ATTACK, POTENTIAL_DEFENCE}) {
        record.potential[c][wing][kind] =
            std::int16_t(record.potential[c][wing][kind] + record.pawn_summary.potential[c][wing][kind]);
      }
    }
  }
}

ScorePair EvaluatePieceKind(EvaluationRecord& record, const Board& board, PieceType type, Color colour,
                            EvaluationVariant variant) {
  switch (type) {
    case KNIGHT: return EvaluateKnights(record, board, colour, variant);
    case BISHOP: return EvaluateBishops(record, board, colour);
    case ROOK: return EvaluateRooks(record, board, colour);
    default: return EvaluateQueens(record, board, colour, variant);
  }
}

// Each kind in turn, White before Black; a side without the kind is skipped. The queens come last,
// after the attacks of everything else have been noted.
ScorePair EvaluatePieces(EvaluationRecord& record, const Board& board, EvaluationVariant variant) {
  ScorePair pair;
  for (PieceType type : {KNIGHT, BISHOP, ROOK, QUEEN}) {
    if (type == QUEEN) {
      for (EvaluationSideFacts& facts : record.side_facts) facts.attacks_without_queens = facts.attacks;
    }
    for (Color c : {WHITE, BLACK}) {
      if (board.sides[c].Pieces(type) == 0) continue;
      ScorePair term = EvaluatePieceKind(record, board, type, c, variant);
      pair = c == WHITE ? pair + term : pair - term;
    }
  }
  return pair;
}

// The terms that count only as far as the endgame is near, with half the material advantage.
ScorePair EndgameTerm(EvaluationRecord& record, const Board& board) {
  int w = std::clamp(WhiteMaterial(board), -ENDGAME_TERM_MATERIAL_LIMIT, ENDGAME_TERM_MATERIAL_LIMIT);
  record.endgame_term = std::int16_t(record.endgame_term + w / 2);
  int x = int(std::lround(record.endgame_term * record.endgame_factor));
  return ScorePair(x, x / 8);
}

int SumOfAttackPotentials(const EvaluationRecord& record, Color colour) {
  int sum = 0;
  for (int wing = 0; wing < WING_COUNT; ++wing) sum += record.potential[colour][wing][POTENTIAL_ATTACK];
  return sum;
}

// For the side a pawn up, against the other side's attack potential.
ScorePair PawnUpPair(int own_attack, int other_attack) {
  if (other_attack < 0) return ScorePair(20, 12);
  if (own_attack < (other_attack >> 1) && other_attack > own_attack + 20) return ScorePair(4, -10);
  if (other_attack > own_attack + 10) return ScorePair(13, -4);
  return ScorePair(16, 0);
}

}  // namespace

const std::array<double, 14> ENDGAME_FACTOR = MakeEndgameFactors();

double EndgameFactor(const Board& board) {
  int t = MaterialTestValue(board);
  if (t >= 36) return 0.0;
  if (t < 22) return 1.0;
  return ENDGAME_FACTOR[t - 22];
}

ScorePair MaterialImbalance(const Board& board) {
  const BoardSide& white = board.sides[WHITE];
  const BoardSide& black = board.sides[BLACK];
  int mu = white.major_units - black.major_units;
  int mi = white.minor_units - black.minor_units;
  int d = 5 * mu + mi;
  if (d >= 4) return ScorePair(400, 180);
  if (d <= -4) return ScorePair(-400, -180);
  if (mu == 0 && mi == 3) return white.pawns == 0 ? ScorePair(-120, -120) : ScorePair(160, 160);
  if (mu == 0 && mi == -3) return black.pawns == 0 ? ScorePair(120, 120) : ScorePair(-160, -160);
  if (mi == 6 && mu == -1) return ScorePair(130, 180);
  if (mi == -6 && mu == 1) return ScorePair(-130, -180);
  if (mi == 9 && mu == -2) return ScorePair(50, 100);
  if (mi == -9 && mu == 2) return ScorePair(-50, -100);
  return ScorePair();
}

ScorePair PawnUpCompensation(const EvaluationRecord& record, const Board& board) {
  int wa = SumOfAttackPotentials(record, WHITE);
  int ba = SumOfAttackPotentials(record, BLACK);
  int e = PopCount(board.sides[WHITE].pawns) - PopCount(board.sides[BLACK].pawns);
  if (e == 1) return PawnUpPair(wa, ba);
  if (e == -1) return -PawnUpPair(ba, wa);
  return ScorePair();
}

int EvaluateFull(EvaluationRecord& record, const Board& board, int bound, EvaluationVariant variant) {
  const bool middlegame = variant == EvaluationVariant::MIDDLEGAME;

  SetBishopPairs(record, board);
  ScorePair pair = EvaluatePassedPawns(record, board) + MaterialImbalance(board);
  if (record.side_facts[WHITE].bishop_pair) pair += BISHOP_PAIR_BONUS;
  if (record.side_facts[BLACK].bishop_pair) pair -= BISHOP_PAIR_BONUS;

  int lazy_answer;
  int margin = middlegame ? MIDDLEGAME_LAZY_MARGIN : OPENING_LAZY_MARGIN;
  if (LazyPairExit(record, board, bound, pair, margin, lazy_answer)) return lazy_answer;

  // A pawn table hit left the lists to be built here.
  if (record.pawn_summary.from_hash != 0) BuildPawnSquares(record, board);
  ComputeFileSets(record, board);
  StartSideFacts(record, board);
  record.endgame_factor = EndgameFactor(board);

  ComputePawnFacts(record, board);
  if (record.pawn_summary.from_hash == 0) {
    if (middlegame) {
      EvaluatePawnStructure(record, board, MIDDLEGAME_PAWN_POSITIONAL, MIDDLEGAME_PAWN_DYNAMIC);
    } else {
      EvaluatePawnStructure(record, board, OPENING_PAWN_POSITIONAL, OPENING_PAWN_DYNAMIC);
    }
  }
  AddPawnPotentials(record);
  pair += ScorePair(record.pawn_summary.positional, record.pawn_summary.dynamic);
  pair += EvaluatePawnExtras(record, board);

  pair += EvaluatePieces(record, board, variant);
  pair += EvaluateDevelopment(record, board, variant);
  pair += EvaluateSpace(record, board);
  if (middlegame) pair += EndgameTerm(record, board);
  pair += EvaluateKingSafety(record, board);
  pair += EvaluateKnightMobility(record, board);
  pair += PawnUpCompensation(record, board);

  return SideToMoveEstimate(board, MixPair(record, pair, middlegame, board));
}
