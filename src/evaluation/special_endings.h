// The endings with an evaluator of their own: rook endings, queen endings, pawn endings (at three
// times the usual scale) and the positions without pawns or with a pawnless side far behind.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"

// Scores from the side to move's view. The first three may answer by a lazy test, as
// EvaluateSimple does.
int EvaluateRookEnding(EvaluationRecord& record, const Board& board, int bound);
int EvaluateQueenEnding(EvaluationRecord& record, const Board& board, int bound);
int EvaluatePawnEnding(EvaluationRecord& record, const Board& board, int bound);  // in pawn_ending.cpp
// Uses neither the record nor a hash table.
int EvaluateMating(const Board& board);  // in mating_evaluation.cpp
