// Passed pawns as pair terms of the full evaluator.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// White's passed pawns minus Black's; sets `passed_front` and `passed_front_rank`.
ScorePair EvaluatePassedPawns(EvaluationRecord& record, const Board& board);

// The details of colour's leading passed pawn on the file that depend on the pieces: rooks on its
// file and what stands on its stop square. From that colour's point of view; adds to `potential`.
ScorePair PassedPawnDetails(EvaluationRecord& record, const Board& board, Color colour, int file);
