// A bishop and pawns against the bare king: pawns on one rook file with the bishop of the wrong
// colour draw when the defending king reaches the corner.
#pragma once

#include "board/board.h"

// The value for the strong side, which has one bishop and its pawns; the weak side has only its
// king. is_black tells that the strong side is Black.
int WrongBishopEnding(const BoardSide& strong, Square weak_king, bool is_black);
