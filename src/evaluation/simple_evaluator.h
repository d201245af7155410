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

// The facts that the terms after the lazy test read: pawn lists, file sets, attacks, pawn facts
// and, on a pawn table miss, the pawn structure value. Needs `passed_front`.
void PrepareSimpleFacts(EvaluationRecord& record, const Board& board);

// White's view: a wing majority far from the enemy king makes a passed pawn; next to it, four
// files against three pawns still count. Needs the majorities of the pawn facts.
int WingMajorities(const EvaluationRecord& record, const Board& board);
