// Passed pawns: the pair terms of the full evaluator and the plain integer term of the simple
// evaluator. Both first note the leading passed pawn of each file in `passed_front`.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// White's passed pawns minus Black's; sets `passed_front` and `passed_front_rank`.
ScorePair EvaluatePassedPawns(EvaluationRecord& record, const Board& board);

// The details of colour's leading passed pawn on the file that depend on the pieces: rooks on its
// file and what stands on its stop square. From that colour's point of view; adds to `potential`.
ScorePair PassedPawnDetails(EvaluationRecord& record, const Board& board, Color colour, int file);

// The simple evaluator's passed pawn value, White minus Black: rank, rooks on the file, the stop
// square and both kings' distances. Sets `passed_front` and `passed_front_rank`.
int SimplePassedPawns(EvaluationRecord& record, const Board& board);

// `passed_front` and `passed_front_rank` of both colours from `passed`.
void FindPassedFronts(EvaluationRecord& record);
