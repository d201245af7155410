// The piece terms of the full evaluator: one evaluator per piece kind for one colour, and the
// development, space and knight mobility terms for both colours at once (White minus Black).
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

ScorePair EvaluateKnights(EvaluationRecord& record, const Board& board, Color colour,
                          EvaluationVariant variant);
ScorePair EvaluateBishops(EvaluationRecord& record, const Board& board, Color colour);
ScorePair EvaluateRooks(EvaluationRecord& record, const Board& board, Color colour);
ScorePair EvaluateQueens(EvaluationRecord& record, const Board& board, Color colour,
                         EvaluationVariant variant);
ScorePair EvaluateDevelopment(EvaluationRecord& record, const Board& board, EvaluationVariant variant);
ScorePair EvaluateSpace(EvaluationRecord& record, const Board& board);
ScorePair EvaluateKnightMobility(EvaluationRecord& record, const Board& board);
