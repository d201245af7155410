// The piece terms of the full evaluator: one evaluator per piece kind for one colour, and the
// development, space and knight mobility terms for both colours at once (White minus Black).
// The piece kinds have their own files; this one holds the terms over the whole board.
#pragma once

#include "board/board.h"
#include "evaluation/bishop_evaluation.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/knight_evaluation.h"
#include "evaluation/queen_evaluation.h"
#include "evaluation/rook_evaluation.h"
#include "evaluation/score_pair.h"

// White minus Black: minor pieces still at home, clumsy fianchetto set-ups, the move, and in the
// opening knights in front of the c- and f-pawns.
ScorePair EvaluateDevelopment(EvaluationRecord& record, const Board& board, EvaluationVariant variant);

// White minus Black: the squares each side attacks, and where its pieces and attacks stand.
ScorePair EvaluateSpace(EvaluationRecord& record, const Board& board);
