#include "evaluation/score_mix.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "board/bitboard.h"

namespace {

constexpr int ABSOLUTE_PERSONALITY = 999;
constexpr int FULL_MIX = 16;

// The material part of the mix: a big imbalance leans to the dynamic half.
int MaterialBase(int material, bool is_middlegame) {
  int a = std::abs(material);
  if (a >= 255) return is_middlegame ? 6 : 4;
  if (a >= 50) return is_middlegame ? 1 : -1;
  return is_middlegame ? -1 : -3;
}

// Queens make a position sharp, all the more with many minor pieces beside them.
int QueenBase(const Board& board) {
  Bitboard white_queens = board.sides[WHITE].queens;
  Bitboard black_queens = board.sides[BLACK].queens;
  if ((white_queens | black_queens) == 0) return -3;
  int base = (white_queens == 0) != (black_queens == 0) ? 2 : 0;
  int minors = board.sides[WHITE].minor_units + board.sides[BLACK].minor_units;
  if (minors > 23) return base + 1;
  if (minors >= 18) return base;
  if (minors >= 12) return base - 1;
  return base - 2;
}

// Kings in the centre, kings that have left their home rows and kings on opposite wings.
double KingPlacement(const EvaluationRecord& record, const Board& board) {
  double k = 4.0;
  double f = 1.0 - record.endgame_factor;
  Square white_king = board.sides[WHITE].king_square;
  Square black_king = board.sides[BLACK].king_square;
  for (Square king : {white_king, black_king}) {
    int file = FileOf(king);
    if (file >= 3 && file <= 5) k += 0.8 * f;
  }
  if (white_king > 15) k += 3.0 * f;
  if (black_king < 48) k += 3.0 * f;
  int white_file = FileOf(white_king);
  int black_file = FileOf(black_king);
  if ((white_file <= 2 && black_file >= 6) || (black_file <= 2 && white_file >= 6)) k += 1.2;
  return k;
}

// The danger to both kings, with the king placement, as a number of sixteenths up to 20.
double DangerTerm(const EvaluationRecord& record, double k) {
  const KingDanger& white = record.king_danger[WHITE];
  const KingDanger& black = record.king_danger[BLACK];
  double a = ShelterCurve(white.shelter) * AttackCurve(white.attack);
  double b = ShelterCurve(black.shelter) * AttackCurve(black.attack);
  double d = ((1 + a) * b + a) * 8 + k;
  double g = std::max({a, b, b * a + 0.25});
  return std::min(d * g, 20.0);
}

}  // namespace

double ShelterCurve(int shelter) {
  if (shelter < -9) return 1.0;
  if (shelter > 4) return 0.0;
  double x = shelter;
  return std::clamp((-1.71074236e-05 * x - 0.0347771834536) * x + 0.172185814, 0.0, 1.0);
}

double AttackCurve(int attack) {
  if (attack < -4) return 0.0;
  if (attack > 29) return 1.0;
  double x = attack;
  double y = ((-1.9645048633650176e-05 * x + 0.0006210098320527342) * x + 0.0337458699134167) * x +
             0.07126673933070571;
  return std::clamp(y, 0.0, 1.0);
}

int MixOfPair(const EvaluationRecord& record, bool is_middlegame, const Board& board) {
  int base = MaterialBase(board.State().material, is_middlegame) + QueenBase(board) +
             record.openness / 4;
  double v = DangerTerm(record, KingPlacement(record, board));
  return int(std::trunc(v + 0.5)) + base + record.settings->personality;
}

int MixPair(const EvaluationRecord& record, ScorePair pair, bool is_middlegame, const Board& board) {
  int p = pair.Positional();
  int y = pair.Dynamic();
  int q = record.settings->personality;
  if (q > ABSOLUTE_PERSONALITY) return y;
  if (q < -ABSOLUTE_PERSONALITY) return p;
  int mix = MixOfPair(record, is_middlegame, board);
  if (mix <= 0) return p;
  if (mix >= FULL_MIX) return y;
  return ((FULL_MIX - mix) * p + mix * y) / FULL_MIX;
}
