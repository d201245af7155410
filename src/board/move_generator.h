// The legal move generator. Every move comes out legal and with its direct- and discovered-check
// bits set; a mask says which classes of move are wanted. In check, all evasions are generated
// whatever the mask.
#pragma once

#include <vector>

#include "board/board.h"

constexpr int GEN_CAPTURES = 0x01;           // captures, en passant included
constexpr int GEN_DIRECT_CHECKS = 0x02;      // quiet moves, castling and promotions giving direct check
constexpr int GEN_DISCOVERED_CHECKS = 0x04;  // quiet moves that uncover a check
constexpr int GEN_DOUBLE_CHECKS = 0x08;      // quiet moves that give both
constexpr int GEN_QUEEN_PROMOTIONS = 0x10;   // promotions to a queen, capturing or not
constexpr int GEN_UNDERPROMOTIONS = 0x20;    // all four pieces of every promotion
constexpr int GEN_CASTLING = 0x40;           // castling, with or without check
constexpr int GEN_QUIET = 0x80;              // all other quiet moves
constexpr int GEN_CHECKS = GEN_DIRECT_CHECKS | GEN_DISCOVERED_CHECKS | GEN_DOUBLE_CHECKS;
constexpr int GEN_ALL = 0xff;

constexpr int MAX_MOVES = 256;

// The pre-built castling moves, without and with the direct-check bit.
constexpr Move CASTLE_WHITE_SHORT_MOVE = 0x6184;
constexpr Move CASTLE_WHITE_LONG_MOVE = 0x6084;
constexpr Move CASTLE_BLACK_SHORT_MOVE = 0x6fbc;
constexpr Move CASTLE_BLACK_LONG_MOVE = 0x6ebc;

// Writes the moves of the position that the mask asks for at list (room for MAX_MOVES entries)
// and returns the end of what it wrote. The order is a fixed function of position and mask:
// castling (short first), knights, bishops, rooks, queens, pawn pushes, double steps, pawn captures
// towards the a-file, then towards the h-file, en passant, king; each piece from the lowest square,
// each target from the lowest square; promotions as queen, rook, bishop, knight.
// Without GEN_QUIET or GEN_UNDERPROMOTIONS a promotion is emitted as a queen when the mask has
// GEN_QUEEN_PROMOTIONS (or GEN_CAPTURES, for a capturing one), and as each piece that gives direct
// check when the mask asks for such checks.
Move* GenerateMoves(Move* list, const Board& board, int mask);

// All legal moves (mask 0xff) into moves, which is cleared first.
void GenerateLegalMoves(const Board& board, std::vector<Move>& moves);

// Whether this exact word (all 23 bits) is a legal move of the position.
bool IsLegalMove(const Board& board, Move move);
