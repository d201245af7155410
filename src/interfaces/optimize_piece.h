// A debugging aid: the square on which one piece would evaluate best, the rest of the position
// kept.
#pragma once

#include <string>

#include "board/board.h"

namespace ZephrinInterfaces {

// Tries the piece on `square_text` on the empty squares it might stand on (a pawn: its own square
// and the squares ahead of it on its file and the neighbouring ones; a bishop: its colour of
// squares; any other piece: all squares), keeping the position legal and, off its own square, the
// exchange value there at least -10. Writes each improvement, then the best square; "Error:
// Invalid square" when no piece stands on square_text.
void OptimizePiece(const Board& board, int personality, const std::string& square_text);

}  // namespace ZephrinInterfaces
