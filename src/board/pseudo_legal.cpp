#include "board/pseudo_legal.h"

#include "board/move_generator.h"

// UNFINISHED placeholder: a full legality test instead of the fast one.
bool IsMovePseudoLegal(const Board& board, Move move) { return IsLegalMove(board, move); }
