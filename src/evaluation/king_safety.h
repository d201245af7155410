// King safety of the full evaluator: a pair per king from the enemy's attack potential, the own
// defence potential and the king's pawn cover; also fills `king_danger` for the mix.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// White's king minus Black's king.
ScorePair EvaluateKingSafety(EvaluationRecord& record, const Board& board);
