#include "evaluation/special_endings.h"

#include "evaluation/simple_evaluator.h"

int EvaluateRookEnding(EvaluationRecord& record, const Board& board, int bound) {
  return EvaluateSimple(record, board, bound);  // Not written yet: the rook ending terms.
}

int EvaluateQueenEnding(EvaluationRecord& record, const Board& board, int bound) {
  return EvaluateSimple(record, board, bound);  // Not written yet: the queen ending terms.
}

int EvaluatePawnEnding(EvaluationRecord&, const Board& board, int) {
  return 3 * board.State().material;  // Not written yet: material alone, at triple scale.
}

int EvaluateMating(const Board& board) {
  return board.State().material;  // Not written yet: material alone.
}
