#include "board/static_exchange.h"

// UNFINISHED placeholder: returns the captured piece's value.
int StaticExchange(const Board& board, Move move, Bitboard& involved) {
  (void)board;
  involved = 0;
  return SEE_VALUE[MoveCaptured(move) + 6];
}
