// Rook and pawn against rook: how well the pawn's side stands, from the king cut off, the
// defending king in front of the pawn and the attacking king's shelter.
#pragma once

#include "board/types.h"

// The pawn is White's; squares of White's rook, Black's rook, White's king, Black's king and the
// pawn. At least 0, for White.
int RookAndPawn(Square wr, Square br, Square wk, Square bk, Square p);
