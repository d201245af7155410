// The evaluator of the endgames without one of their own: plain integer terms, no pair and no mix.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"

// A score from the side to move's view; when its lazy test answers, it sets `record.lazy` and
// returns bound (reached) or bound - 1 (not reached). Needs `passed` (and, on a pawn table hit,
// the restored facts) as Evaluate leaves them.
int EvaluateSimple(EvaluationRecord& record, const Board& board, int bound);

// Scales a White-view score down where a win gets hard: few pawns for the stronger side, and
// bishops on squares of different colours.
int ScaleSimple(const EvaluationRecord& record, const Board& board, int score, bool opposite_bishops);
