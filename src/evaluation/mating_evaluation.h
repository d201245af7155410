// Positions without pawns, or where a side with pieces is far ahead of one with little left: drive
// the weaker king to the edge (to the right corner for bishop and knight), keep the kings close and
// the weaker side's pieces away from their king.
#pragma once

#include "board/board.h"

// Side to move's view. Uses neither the record nor a hash table.
int EvaluateMating(const Board& board);

// The parts, each as a value for the colour that is ahead; `material` is the absolute material
// difference.
int MatingAttack(const Board& board, Color strong, int material);
int MaterialEdge(const Board& board, Color strong, int material);
int BishopAndKnight(const Board& board, Color strong);
// White's view, for material within a pawn's fifth: who presses whose king.
int KingsAndPieces(const Board& board);

// Higher in the centre, for both colours.
int KingCentrality(Square s);
