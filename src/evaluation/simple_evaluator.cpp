#include "evaluation/simple_evaluator.h"

#include <algorithm>
#include <cstdlib>

#include "board/bitboard.h"
#include "evaluation/bare_king_runners.h"
#include "evaluation/full_evaluator.h"
#include "evaluation/passed_pawns.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/position_type.h"
#include "evaluation/simple_pawn_structure.h"
#include "evaluation/simple_pieces.h"
#include "evaluation/wrong_bishop_ending.h"

namespace {

constexpr int SIMPLE_LAZY_MARGIN = 700;
constexpr int BISHOP_PAIR_BONUS = 55;
// Below this material difference the score is scaled.
constexpr int SCALE_MATERIAL_LIMIT = 500;
// Scaling by the stronger side's pawns, and with opposite bishops alone by the weaker side's pawns
// on the colour of the stronger side's bishop; both in eighths.
constexpr int PAWN_SCALE[9] = {2, 4, 5, 6, 7, 8, 9, 9, 9};
constexpr int OPPOSITE_BISHOP_SCALE[9] = {2, 4, 5, 6, 6, 6, 6, 6, 6};
// The phase of a bishop each and nothing else.
constexpr int BISHOPS_ONLY_PHASE = 2 * PHASE_VALUE[BISHOP];

enum class CantWin { NONE, WHITE_SIDE, BLACK_SIDE };

int WhiteView(const Board& board, int v) { return board.side_to_move == WHITE ? v : -v; }

// A lone bishop with pawns against the bare king, in the side to move's view; false when the
// position isn't that ending.
bool WrongBishop(const Board& board, int& score) {
  if (board.phase != PHASE_VALUE[BISHOP]) return false;
  for (Color weak : {WHITE, BLACK}) {
    const BoardSide& strong = board.sides[weak ^ 1];
    if (board.sides[weak].pawns != 0 || strong.bishops == 0) continue;
    int v = WrongBishopEnding(strong, board.sides[weak].king_square, weak == WHITE);
    score = board.side_to_move == weak ? -v : v;
    return true;
  }
  return false;
}

// No pawn, no rook or queen, and at most a knight pair or a single minor piece.
bool CannotWin(const BoardSide& side) {
  if (side.pawns != 0 || side.major_units != 0) return false;
  return side.minor_units < 6 || (side.minor_units == 6 && side.bishops == 0);
}

CantWin WhoCannotWin(const Board& board) {
  if (CannotWin(board.sides[WHITE])) return CantWin::WHITE_SIDE;
  if (CannotWin(board.sides[BLACK])) return CantWin::BLACK_SIDE;
  return CantWin::NONE;
}

int LimitByDraw(int score, CantWin cant_win, int white_draw_score) {
  if (cant_win == CantWin::WHITE_SIDE) return std::min(score, white_draw_score);
  if (cant_win == CantWin::BLACK_SIDE) return std::max(score, white_draw_score);
  return score;
}

bool OppositeBishops(const EvaluationRecord& record, const Board& board) {
  const Bitboard white = board.sides[WHITE].bishops;
  const Bitboard black = board.sides[BLACK].bishops;
  if (white == 0 || black == 0) return false;
  if (record.side_facts[WHITE].bishop_pair || record.side_facts[BLACK].bishop_pair) return false;
  bool white_light = (white & LIGHT_SQUARES) != 0;
  bool black_light = (black & LIGHT_SQUARES) != 0;
  return white_light != black_light;
}

// Whether every leading passed pawn of colour meets, on its way to promotion, an enemy piece other
// than the king or a square that the enemy attacks away from its king.
bool PassersStopped(const EvaluationRecord& record, const Board& board, Color colour) {
  const Color enemy = colour ^ 1;
  const BoardSide& other = board.sides[enemy];
  const Bitboard guards = (other.all & ~SquareBit(other.king_square)) |
                          (record.side_facts[enemy].attacks & ~Tables.king_attacks[other.king_square]);
  for (Bitboard fronts = record.pawns[colour].passed_front; fronts != 0;) {
    Square s = PopFirstBit(fronts);
    Bitboard way = Tables.front_span[colour][s] & FileMask(FileOf(s));
    if (RelativeRank(s, colour) == 1) way &= ~StepForward(SquareBit(s), colour);
    if ((way & guards) == 0) return false;
  }
  return true;
}

}  // namespace

int WingMajorities(const EvaluationRecord& record, const Board& board) {
  int v = 0;
  for (int wing : {WING_QUEENSIDE, WING_KINGSIDE}) {
    const WingMajority& majority = record.majority[wing];
    if (majority.owner == 0) continue;
    Color c = Color(majority.owner - 1);
    int king_wing = FileOf(board.sides[c ^ 1].king_square) <= 3 ? WING_QUEENSIDE : WING_KINGSIDE;
    int term = 0;
    if (king_wing != wing) term = 18;
    else if (majority.owner_files == 4 && majority.other_pawns == 3) term = 14;
    v += c == WHITE ? term : -term;
  }
  return v;
}

void PrepareSimpleFacts(EvaluationRecord& record, const Board& board) {
  if (record.pawn_summary.from_hash != 0) BuildPawnSquares(record, board);
  ComputeFileSets(record, board);
  StartSideFacts(record, board);
  ComputePawnFacts(record, board);
  if (record.pawn_summary.from_hash == 0) SimplePawnStructure(record, board);
}

int ScaleSimple(const EvaluationRecord& record, const Board& board, int score, bool opposite_bishops) {
  const Color strong = score >= 0 ? WHITE : BLACK;
  const int x = std::abs(score);
  const int n = std::min<int>(record.pawns[strong].pawn_count, 8);
  int scaled = std::max(x * PAWN_SCALE[n] / 8, x - 50);
  if (opposite_bishops) {
    int y = scaled * 6 / 8;
    if (board.phase == BISHOPS_ONLY_PHASE) {
      Bitboard colour = (board.sides[strong].bishops & LIGHT_SQUARES) != 0 ? LIGHT_SQUARES : DARK_SQUARES;
      int c = std::min(PopCount(board.sides[strong ^ 1].pawns & colour), 8);
      y = y * OPPOSITE_BISHOP_SCALE[c] / 8;
    }
    scaled = std::max(y, scaled - 250);
  }
  return score >= 0 ? scaled : -scaled;
}

int EvaluateSimple(EvaluationRecord& record, const Board& board, int bound) {
  int wrong_bishop;
  if (WrongBishop(board, wrong_bishop)) {
    // The pawn table keeps what a miss computes here, so the entry must be complete.
    if (record.pawn_summary.from_hash == 0) {
      FindPassedFronts(record);
      PrepareSimpleFacts(record, board);
    }
    return wrong_bishop;
  }

  const int m = board.State().material;
  const int w = WhiteView(board, m);
  const int white_draw_score = record.settings->white_draw_score;

  SetBishopPairs(record, board);
  RunnerCase runner_case;
  // The runners read the passed pawns' fronts, so the passed pawns come first.
  int score = SimplePassedPawns(record, board);
  score += MaterialImbalance(board).Positional();
  score += BareKingRunners(record, board, runner_case);
  if (record.side_facts[WHITE].bishop_pair) score += BISHOP_PAIR_BONUS;
  if (record.side_facts[BLACK].bishop_pair) score -= BISHOP_PAIR_BONUS;

  const CantWin cant_win = WhoCannotWin(board);
  int lazy_answer;
  int estimate = WhiteView(board, LimitByDraw(w + score, cant_win, white_draw_score));
  if (TakeLazyExit(record, bound, estimate, SIMPLE_LAZY_MARGIN, lazy_answer)) return lazy_answer;

  PrepareSimpleFacts(record, board);
  score += WingMajorities(record, board);
  score += record.pawn_summary.simple + SimpleKnights(record, board) + SimpleBishops(record, board) +
           SimpleRooks(record, board) + SimpleQueens(record, board);
  const bool opposite_bishops = OppositeBishops(record, board);
  score += SimpleKingPlacement(board);

  if (runner_case == RunnerCase::WHITE_PAWNS_AGAINST_BLACK_PASSERS && PassersStopped(record, board, BLACK)) {
    score += KingPawnSum(record, board, WHITE);
  } else if (runner_case == RunnerCase::BLACK_PAWNS_AGAINST_WHITE_PASSERS && PassersStopped(record, board, WHITE)) {
    score -= KingPawnSum(record, board, BLACK);
  }

  score += w;
  if (std::abs(m) < SCALE_MATERIAL_LIMIT) score = ScaleSimple(record, board, score, opposite_bishops);
  score = LimitByDraw(score, cant_win, white_draw_score);
  return WhiteView(board, score);
}
