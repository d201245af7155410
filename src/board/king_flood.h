// The squares each king can reach in a race, for pawn endings.
#pragma once

#include "board/board.h"

// result[c]: the squares c's king can come to, the side to move going first, the kings keeping
// their distance, and each king staying in the square of the other side's runners.
void KingFlood(const Board& board, Bitboard result[2], Bitboard white_runners, Bitboard black_runners);
