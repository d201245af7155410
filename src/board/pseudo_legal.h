// The fast test for a stored Move (hash table, killer slot): could the word be played here exactly
// as encoded, check bits included? Pins are not tested.
#pragma once

#include "board/board.h"

// move must not be MOVE_INVALID (a fatal assertion).
bool IsMovePseudoLegal(const Board& board, Move move);
