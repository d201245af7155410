// The bishops of one colour.
#pragma once

#include "board/bitboard.h"
#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// The pair of one colour's bishops, from its own view: squares, long diagonals, mobility, bad and
// hemmed-in bishops, and the bishop pair. Adds their attacks, potentials and endgame terms.
ScorePair EvaluateBishops(EvaluationRecord& record, const Board& board, Color colour);

// A bishop's attacks as its mobility sees them: on a fianchetto square (a1, b2, g2 or h1 for White)
// the long diagonal goes on through the highest own piece on its central squares; elsewhere the
// attacks as given.
Bitboard XRayAttacks(const Board& board, Color colour, Square s, Bitboard attacks);

// The squares b2 to g7 that a bishop stands on or attacks and no pawn holds, and how many of them
// are centre squares and squares of the ring around the centre.
struct BishopReach {
  int squares;
  int centre;
  int ring;
};
BishopReach BishopReachOf(const Board& board, Square s, Bitboard attacks);
