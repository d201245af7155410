// Static exchange evaluation: what a sequence of captures on one square wins for the mover.
#pragma once

#include "board/board.h"

// Exchange value by Piece + 6: PIECE_VALUE with the colour's sign, the king 32767.
constexpr int SEE_VALUE[13] = {-32767, -1020, -500, -315, -305, -100, 0,
                               100,    305,   315,  500,  1020, 32767};

// The exchange value of the move for the mover in centipawns; involved receives every piece that
// takes part, hidden sliders included. Pins and legality are ignored.
int StaticExchange(const Board& board, Move move, Bitboard& involved);
