// Kings and pawns only. The outcome of such an ending decides the game, so its scores run at three
// times the usual scale. EvaluatePawnEnding itself is declared with the other special endings.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"

// The raw outcome of king and pawn against king and pawn: 3 a win for the side to move, 1 a loss
// for it, 0 a draw.
using TwoPawnsLookup = int (*)(Color side_to_move, Square white_king, Square black_king, Square white_pawn,
                               Square black_pawn);

// White's view: who wins the race of the passed pawns. Passers on one side only are worth twice
// their runner value (or what king and pawn win); passers on both sides are looked up pair by pair
// when the two-pawn table is loaded, and count 0 otherwise. Needs `passed_front`.
int PawnRace(const EvaluationRecord& record, const Board& board);

// White's view: passers on both sides, each White pawn (most advanced first) against its best
// answer among the Black pawns; +-150 for a win. PawnRace uses it with the two-pawn table.
int PassersRace(const EvaluationRecord& record, const Board& board, TwoPawnsLookup lookup);
