// The bishops of one colour.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// The pair of one colour's bishops, from its own view: squares, long diagonals, mobility, bad and
// hemmed-in bishops, and the bishop pair. Adds their attacks, potentials and endgame terms.
ScorePair EvaluateBishops(EvaluationRecord& record, const Board& board, Color colour);
