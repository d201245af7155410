// The piece terms of the simple evaluator, plain integers from White's view (White minus Black).
// The knights, rooks and queens add their attacks to `side_facts.attacks`.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"

int SimpleKnights(EvaluationRecord& record, const Board& board);
int SimpleBishops(const EvaluationRecord& record, const Board& board);
int SimpleRooks(EvaluationRecord& record, const Board& board);
int SimpleQueens(EvaluationRecord& record, const Board& board);
int SimpleKingPlacement(const Board& board);
