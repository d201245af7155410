// The fast test for a stored Move (hash table, killer slot): could the word be played here exactly
// as encoded, check bits included? Pins, and king steps onto attacked squares, are not tested
// (WouldLeaveOwnKingInCheck answers that). Castling and en passant, being rare, are tested in full:
// rights, empty and unattacked squares, and every pin. A pawn reaching the last rank must carry a
// promotion piece, and only such a pawn move may.
#pragma once

#include "board/board.h"

// move must not be MOVE_INVALID (a fatal assertion).
bool IsMovePseudoLegal(const Board& board, Move move);
