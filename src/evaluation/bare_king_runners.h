// Passed pawns against a king without pieces: runners that the king can't catch, and pawns that
// king and pawn against king win.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"

// What BareKingRunners leaves for the simple evaluator to finish once the attacks are known.
enum class RunnerCase {
  NONE,
  WHITE_PAWNS_AGAINST_BLACK_PASSERS,  // Black has no pieces, but has passed pawns of its own
  BLACK_PAWNS_AGAINST_WHITE_PASSERS,  // the mirror
};

// For each `passed_front` pawn of colour that king and this pawn alone win against the enemy
// king, 210 to 250 by its rank; the sum stops at 400.
int KingPawnSum(const EvaluationRecord& record, const Board& board, Color colour);

// The value of colour's most advanced `passed_front` pawn that the enemy king can't catch, by its
// rank and by whether colour is to move: 520 to 920. 0 when the king catches every one.
int RunnerValue(const EvaluationRecord& record, const Board& board, Color colour);

// White's view: passed pawns against a side without pieces. Needs `passed_front`.
int BareKingRunners(const EvaluationRecord& record, const Board& board, RunnerCase& runner_case);
