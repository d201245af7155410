// Passed pawns as pair terms of the full evaluator.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// White's passed pawns minus Black's; sets `passed_front` and `passed_front_rank`.
ScorePair EvaluatePassedPawns(EvaluationRecord& record, const Board& board);
