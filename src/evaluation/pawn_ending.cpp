#include "evaluation/pawn_ending.h"

#include <algorithm>

#include "bitbases/bitbase_files.h"
#include "bitbases/bitbase_probes.h"
#include "board/bitboard.h"
#include "board/king_flood.h"
#include "evaluation/bare_king_runners.h"
#include "evaluation/evaluation_settings.h"
#include "evaluation/passed_pawns.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/simple_evaluator.h"
#include "evaluation/special_endings.h"

namespace {

// Decided races exit before the costly terms.
constexpr int PAWN_ENDING_LAZY_MARGIN = 3000;
constexpr int TWO_PAWNS_WIN = 3;
constexpr int TWO_PAWNS_LOSS = 1;
constexpr int RACE_WIN = 150;
constexpr int DOUBLE_STEP_BONUS = 16;
constexpr int PASSERS_ON_BOTH_WINGS = 60;
constexpr int KING_ROOM_WEIGHT = 3;

constexpr Bitboard QUEENSIDE_EDGE = FILE_A | FileMask(1);
constexpr Bitboard KINGSIDE_EDGE = FileMask(6) | FILE_H;

// v from White's view as the side to move sees it, and back.
int ForSideToMove(const Board& board, int v) { return board.side_to_move == WHITE ? v : -v; }

// Colour's passers against a king that has none to race with: a pawn the king can't catch, else
// what king and pawn win. Colour's view.
int LoneRunners(const EvaluationRecord& record, const Board& board, Color colour) {
  const int runner = RunnerValue(record, board, colour);
  return runner != 0 ? runner : KingPawnSum(record, board, colour);
}

// A side that has no pawn can't win, and one whose enemy has none can't lose.
int LimitByDraw(const Board& board, int white_draw_score, int x) {
  if (board.sides[WHITE].pawns == 0) return std::min(x, white_draw_score);
  if (board.sides[BLACK].pawns == 0) return std::max(x, white_draw_score);
  return x;
}

// Colour's pawns on their second rank that can walk both squares ahead: the double step gains a
// tempo in the race.
int DoubleSteppers(const EvaluationRecord& record, const Board& board, Color colour) {
  const Bitboard safe = record.pawns[colour].safe_advance;
  const Bitboard one_ahead = StepBack(safe, colour);
  const Bitboard two_ahead = StepBack(one_ahead, colour);
  return PopCount(board.sides[colour].pawns & RelativeRankMask(1, colour) & one_ahead & two_ahead);
}

bool PassersOnBothWings(const EvaluationRecord& record, Color colour) {
  const Bitboard passed = record.pawns[colour].passed;
  return (passed & QUEENSIDE_EDGE) != 0 && (passed & KINGSIDE_EDGE) != 0;
}

// White's view: the squares each king can still reach, staying in the square of the enemy
// passers.
int KingRoom(const EvaluationRecord& record, const Board& board) {
  Bitboard reach[2];
  KingFlood(board, reach, record.pawns[WHITE].passed_front, record.pawns[BLACK].passed_front);
  return KING_ROOM_WEIGHT * (PopCount(reach[WHITE]) - PopCount(reach[BLACK]));
}

// White's view: the terms that need the pawn facts.
int PawnEndingTerms(const EvaluationRecord& record, const Board& board) {
  int t = 3 * (WingMajorities(record, board) + record.pawn_summary.simple);
  t += DOUBLE_STEP_BONUS * (DoubleSteppers(record, board, WHITE) - DoubleSteppers(record, board, BLACK));
  if (PassersOnBothWings(record, WHITE)) t += PASSERS_ON_BOTH_WINGS;
  if (PassersOnBothWings(record, BLACK)) t -= PASSERS_ON_BOTH_WINGS;
  return t + KingRoom(record, board);
}

}  // namespace

int PassersRace(const EvaluationRecord& record, const Board& board, TwoPawnsLookup lookup) {
  const Square white_king = board.sides[WHITE].king_square;
  const Square black_king = board.sides[BLACK].king_square;
  const int win = ForSideToMove(board, RACE_WIN);
  int best = -32767;
  for (Bitboard white = record.pawns[WHITE].passed_front; white != 0;) {
    const Square white_pawn = LastBit(white);
    white ^= SquareBit(white_pawn);
    int worst = 32767;
    for (Bitboard black = record.pawns[BLACK].passed_front; black != 0;) {
      const int r = lookup(board.side_to_move, white_king, black_king, white_pawn, PopFirstBit(black));
      const int value = r == TWO_PAWNS_WIN ? win : r == TWO_PAWNS_LOSS ? -win : 0;
      worst = std::min(worst, value);
      if (value <= best) break;  // this pawn can't improve on the best one any more
    }
    best = std::max(best, worst);
  }
  return best;
}

int PawnRace(const EvaluationRecord& record, const Board& board) {
  const bool white = record.pawns[WHITE].passed_front != 0;
  const bool black = record.pawns[BLACK].passed_front != 0;
  if (white && !black) return 2 * LoneRunners(record, board, WHITE);
  if (black && !white) return -2 * LoneRunners(record, board, BLACK);
  if (white && black && ZephrinBitbases::TwoPawnsData() != nullptr) return PassersRace(record, board, TwoPawnsRawValue);
  return 0;
}

int EvaluatePawnEnding(EvaluationRecord& record, const Board& board, int bound) {
  const int m = board.State().material;
  const int w = ForSideToMove(board, m);
  // SimplePassedPawns first: it sets `passed_front`, which the race reads.
  const int passers = 3 * SimplePassedPawns(record, board);
  int t = PawnRace(record, board) + passers;

  const int estimate = LimitByDraw(board, record.settings->white_draw_score, w + t);
  int lazy_answer;
  if (TakeLazyExit(record, bound, ForSideToMove(board, estimate), PAWN_ENDING_LAZY_MARGIN, lazy_answer)) {
    return lazy_answer;
  }

  PrepareSimpleFacts(record, board);
  t += PawnEndingTerms(record, board);
  return 3 * m + ForSideToMove(board, t);
}
