// The rooks of one colour.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// The pair of one colour's rooks, from its own view: file mobility, connection, the kind of file,
// the seventh rank and the enemy king's and queen's files. Adds their attacks, potentials and
// endgame terms.
ScorePair EvaluateRooks(EvaluationRecord& record, const Board& board, Color colour);
