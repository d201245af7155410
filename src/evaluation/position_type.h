// The classification of a position, which chooses the evaluator and steers the search.
#pragma once

#include "board/board.h"

using PositionType = int;

constexpr PositionType POSITION_OPENING = 0;            // enough pieces, development not done
constexpr PositionType POSITION_MIDDLEGAME = 1;         // enough pieces
constexpr PositionType POSITION_EQUAL_PIECES = 2;       // endgame with equal pieces on both sides
constexpr PositionType POSITION_ROOK_ENDING = 3;        // same number of rooks, nothing else
constexpr PositionType POSITION_QUEEN_ENDING = 4;       // one queen each, nothing else
constexpr PositionType POSITION_KNIGHT_KNIGHT = 5;
constexpr PositionType POSITION_KNIGHT_BISHOP = 6;
constexpr PositionType POSITION_SAME_BISHOPS = 7;       // bishops on squares of one colour
constexpr PositionType POSITION_OPPOSITE_BISHOPS = 8;
constexpr PositionType POSITION_ROOK_MINOR = 9;         // rook against a minor piece
constexpr PositionType POSITION_QUEEN_ROOK = 10;        // queen against rook
constexpr PositionType POSITION_LONE_KNIGHT = 11;       // its owner has no pawn
constexpr PositionType POSITION_LONE_BISHOP = 12;
constexpr PositionType POSITION_LONE_ROOK = 13;
constexpr PositionType POSITION_LONE_QUEEN = 14;
constexpr PositionType POSITION_PAWN_ENDING = 15;       // kings and pawns only
constexpr PositionType POSITION_MATING = 16;            // no pawn, or a pawnless side far behind
constexpr PositionType POSITION_OTHER_ENDGAME = 17;
constexpr PositionType NO_POSITION_TYPE = 18;           // "no parent" for ClassifyPosition

constexpr Bitboard LIGHT_SQUARES = 0x55aa55aa55aa55aaULL;
constexpr Bitboard DARK_SQUARES = 0xaa55aa55aa55aa55ULL;

// 5 per major unit and 1 per minor unit: knight and bishop 3, rook 5, queen 10.
inline int SidePoints(const BoardSide& side) { return 5 * side.major_units + side.minor_units; }

// The larger side's points, plus 3 when a queen is on the board. Middlegames start at 22.
int MaterialTestValue(const Board& board);

// previous_type is the parent's type, NO_POSITION_TYPE when there is none. A line of play never
// leads from the middlegame back to the opening.
PositionType ClassifyPosition(const Board& board, PositionType previous_type);
