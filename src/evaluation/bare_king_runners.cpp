#include "evaluation/bare_king_runners.h"

#include "bitbases/bitbase_probes.h"
#include "board/bitboard.h"
#include "evaluation/pawn_facts.h"

namespace {

constexpr int KING_PAWN_WIN[7] = {0, 210, 210, 215, 225, 240, 250};
constexpr int KING_PAWN_SUM_LIMIT = 400;
// A runner by the highest rank among them (rank two is 1), by whether its side is to move.
constexpr int RUNNER_TO_MOVE[7] = {0, 640, 640, 720, 760, 800, 920};
constexpr int RUNNER_NOT_TO_MOVE[7] = {0, 520, 520, 640, 720, 760, 800};

// Whether colour's king and its pawn on `pawn` win against the enemy king, the other pieces left
// aside.
bool SinglePawnBitbaseWins(const Board& board, Color colour, Square pawn) {
  return SinglePawnWins(colour, board.side_to_move, pawn, board.sides[colour].king_square,
                        board.sides[colour ^ 1].king_square);
}

int Units(const BoardSide& side) { return side.minor_units + side.major_units; }

// The value of colour's passed pawns against the bare enemy king, from colour's view.
int RunnersAgainstBareKing(const EvaluationRecord& record, const Board& board, Color colour,
                           RunnerCase& runner_case, RunnerCase pending) {
  if (record.pawns[colour].passed_front == 0) return 0;
  const int runner = RunnerValue(record, board, colour);
  if (runner != 0) return runner;
  if (record.pawns[colour ^ 1].passed == 0) return KingPawnSum(record, board, colour);
  runner_case = pending;
  return 0;
}

}  // namespace

int RunnerValue(const EvaluationRecord& record, const Board& board, Color colour) {
  const Square enemy_king = board.sides[colour ^ 1].king_square;
  const Bitboard runners =
      record.pawns[colour].passed_front & Tables.king_outside_square[colour][enemy_king][board.side_to_move];
  if (runners == 0) return 0;
  const int r = RelativeRank(colour == WHITE ? LastBit(runners) : FirstBit(runners), colour);
  return board.side_to_move == colour ? RUNNER_TO_MOVE[r] : RUNNER_NOT_TO_MOVE[r];
}

int KingPawnSum(const EvaluationRecord& record, const Board& board, Color colour) {
  int sum = 0;
  for (Bitboard fronts = record.pawns[colour].passed_front; fronts != 0;) {
    Square s = PopFirstBit(fronts);
    if (!SinglePawnBitbaseWins(board, colour, s)) continue;
    sum += KING_PAWN_WIN[RelativeRank(s, colour)];
    if (sum >= KING_PAWN_SUM_LIMIT) return KING_PAWN_SUM_LIMIT;
  }
  return sum;
}

int BareKingRunners(const EvaluationRecord& record, const Board& board, RunnerCase& runner_case) {
  runner_case = RunnerCase::NONE;
  if (Units(board.sides[BLACK]) == 0) {
    return RunnersAgainstBareKing(record, board, WHITE, runner_case, RunnerCase::WHITE_PAWNS_AGAINST_BLACK_PASSERS);
  }
  if (Units(board.sides[WHITE]) != 0) return 0;
  return -RunnersAgainstBareKing(record, board, BLACK, runner_case, RunnerCase::BLACK_PAWNS_AGAINST_WHITE_PASSERS);
}
