// The front door of the evaluation. Evaluate is a test against a bound: the search only needs to
// know whether a position's static score reaches a bound, so it may answer early.
#pragma once

#include <string>

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/position_type.h"

// Scores are in hundredths of a pawn; beyond +-MATE_BOUND only mate values lie, which no static
// score reaches.
constexpr int SCORE_INFINITE = 32767;
constexpr int MATE_BOUND = 31766;

// The result r is from the side to move's view, and r >= bound exactly when the position's score
// is at least bound (an answer of a lazy test being taken as exact). When no early answer was
// taken, r is the score itself. Uses the evaluation table and, except for the mating type, the
// pawn table. `record.settings` must be set.
int Evaluate(EvaluationRecord& record, const Board& board, int bound, PositionType position_type);

// The score itself, found by bisection over Evaluate.
int ExactEvaluation(EvaluationRecord& record, const Board& board, PositionType position_type);

// The static evaluation from the side to move's view, as the commands see it: a fresh record
// with draw score 0 and the given personality.
int StaticEvaluation(const Board& board, int personality);
// The `eval` command's text, "eval: <score>\n", with StaticEvaluation.
std::string EvaluationCommandText(const Board& board, int personality);
