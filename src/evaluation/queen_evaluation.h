// The queens of one colour.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// The pair of one colour's queens, from its own view: squares, pieces that screen the queen, safe
// squares of an advanced queen, and in the middlegame its distances to both kings. Adds their
// attacks and potentials. Reads the enemy's `attacks_without_queens`.
ScorePair EvaluateQueens(EvaluationRecord& record, const Board& board, Color colour,
                         EvaluationVariant variant);
