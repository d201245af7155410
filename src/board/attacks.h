// Attack queries on a position: who attacks a square, check, pins and discovered-check pieces.
#pragma once

#include "board/board.h"

// All pieces of both colours attacking s, kings included.
Bitboard Attackers(const Board& board, Square s);
// Pawns of `by` and IsAttackedByPieces.
bool IsSquareAttacked(const Board& board, Square s, Color by);
// Knights, king, bishops, rooks and queens of side attacking s; pawns are not looked at.
bool IsAttackedByPieces(const Board& board, Square s, const BoardSide& side);
bool IsInCheck(const Board& board);          // the side to move's king is attacked
bool IsOpponentInCheck(const Board& board);  // the other king is attacked
// Tries the move on a copy: whether the mover's king is then attacked. For moves that haven't
// come from the generator.
bool WouldLeaveOwnKingInCheck(const Board& board, Move move);
// Rooks and queens (d = 1..4) or bishops and queens (d = 5..8) of both colours seen from s in
// direction d; empty for any other d.
Bitboard SlidersOnRay(const Board& board, Square s, int d);
// The candidates behind which a slider of side stands, looking from k.
Bitboard FindBlockers(const Board& board, Bitboard candidates, const BoardSide& side, Square k);
// FindBlockers with the pieces of own on k's queen lines as candidates; only the sliders of side
// inside mask count.
Bitboard Blockers(const Board& board, Square k, Bitboard own, const BoardSide& side, Bitboard mask);
// Whether a queen of the side to move is attacked by a pawn, knight, bishop or rook.
bool QueenUnderAttack(const Board& board);
