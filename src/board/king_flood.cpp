#include "board/king_flood.h"

// UNFINISHED placeholder.
void KingFlood(const Board& board, Bitboard result[2], Bitboard, Bitboard) {
  result[WHITE] = SquareBit(board.sides[WHITE].king_square);
  result[BLACK] = SquareBit(board.sides[BLACK].king_square);
}
