// The pawn structure value of the simple evaluator, kept in the pawn table like the full
// evaluator's pair.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"

// Writes `pawn_summary.simple`, White minus Black, on a pawn table miss. Needs the pawn facts and
// `passed_front`.
void SimplePawnStructure(EvaluationRecord& record, const Board& board);
