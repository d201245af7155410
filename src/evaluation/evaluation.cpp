#include "evaluation/evaluation.h"

#include <cstdlib>

#include "evaluation/full_evaluator.h"
#include "evaluation/pawn_hash_entry.h"
#include "evaluation/simple_evaluator.h"
#include "evaluation/special_endings.h"
#include "hash/hash.h"

namespace {

// The pawn facts from the pawn table, or on a miss the lists and passed pawns built here.
void LookUpPawns(EvaluationRecord& record, const Board& board, PositionType position_type) {
  const PAWN_HASH_ENTRY* entry = PawnHashTable.Probe(board.PawnKey(), position_type);
  if (entry != nullptr) {
    RestorePawnHashEntry(*entry, record, board);
    return;
  }
  BuildPawnSquares(record, board);
  FindPassedPawns(record, board);
}

int RunEvaluator(EvaluationRecord& record, const Board& board, int bound, PositionType position_type) {
  switch (position_type) {
    case POSITION_OPENING: return EvaluateFull(record, board, bound, EvaluationVariant::OPENING);
    case POSITION_MIDDLEGAME: return EvaluateFull(record, board, bound, EvaluationVariant::MIDDLEGAME);
    case POSITION_ROOK_ENDING: return EvaluateRookEnding(record, board, bound);
    case POSITION_QUEEN_ENDING: return EvaluateQueenEnding(record, board, bound);
    case POSITION_PAWN_ENDING: return EvaluatePawnEnding(record, board, bound);
    default: return EvaluateSimple(record, board, bound);
  }
}

}  // namespace

int Evaluate(EvaluationRecord& record, const Board& board, int bound, PositionType position_type) {
  if (std::abs(bound) > MATE_BOUND) return bound > 0 ? bound - 1 : bound;
  if (position_type == POSITION_MATING) return EvaluateMating(board);

  switch (EvaluationHashTable.Probe(board.Key(), bound)) {
    case EVALUATION_PROBE_BELOW_BOUND: return bound - 1;
    case EVALUATION_PROBE_AT_LEAST_BOUND: return bound;
    case EVALUATION_PROBE_MISS: break;
  }

  ClearEvaluationRecord(record);
  LookUpPawns(record, board, position_type);
  int result = RunEvaluator(record, board, bound, position_type);
  if (record.lazy) return result;  // no score, so nothing is stored

  if (record.pawn_summary.from_hash == 0) {
    PawnHashTable.Store(ConstructPawnHashEntry(record, board, position_type));
  }
  EvaluationHashTable.Store(board.Key(), result);
  return result;
}

int ExactEvaluation(EvaluationRecord& record, const Board& board, PositionType position_type) {
  int low = -SCORE_INFINITE;
  int high = SCORE_INFINITE;
  while (low < high) {
    int mid = (low + high) / 2;
    int t = mid == low ? high : mid;
    if (Evaluate(record, board, t, position_type) < t) {
      high = t - 1;
    } else {
      low = t;
    }
  }
  return low;
}

int StaticEvaluation(const Board& board, int personality) {
  EvaluationSettings settings;
  settings.white_draw_score = 0;
  settings.personality = std::int16_t(personality);
  EvaluationRecord record;
  record.settings = &settings;
  return ExactEvaluation(record, board, ClassifyPosition(board, NO_POSITION_TYPE));
}

std::string EvaluationCommandText(const Board& board, int personality) {
  return "eval: " + std::to_string(StaticEvaluation(board, personality)) + "\n";
}
