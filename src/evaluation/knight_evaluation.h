// The knights of one colour, and the safe mobility of both colours' knights.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// The pair of one colour's knights, from its own view; adds their attacks and potentials.
ScorePair EvaluateKnights(EvaluationRecord& record, const Board& board, Color colour,
                          EvaluationVariant variant);

// White minus Black: how many squares each knight can go to without being taken by a pawn or by a
// piece that no own pawn covers. Reads `attacks_without_queens`, so runs after the queens.
ScorePair EvaluateKnightMobility(EvaluationRecord& record, const Board& board);
