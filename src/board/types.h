// The basic vocabulary of the chess code: squares, colours, pieces and the move word.
#pragma once

#include <cstdint>

using Bitboard = std::uint64_t;
using Square = int;  // 0..63, a1 = 0, h1 = 7, a8 = 56, h8 = 63
using Color = int;   // 0 white, 1 black
using Piece = std::int8_t;  // +1..+6 white pawn..king, negative for black, 0 empty
using PieceType = int;      // 1..6 pawn..king, 0 none
using Move = std::uint32_t;

constexpr Color WHITE = 0;
constexpr Color BLACK = 1;

constexpr PieceType NO_PIECE = 0;
constexpr PieceType PAWN = 1;
constexpr PieceType KNIGHT = 2;
constexpr PieceType BISHOP = 3;
constexpr PieceType ROOK = 4;
constexpr PieceType QUEEN = 5;
constexpr PieceType KING = 6;

constexpr int PIECE_VALUE[8] = {0, 100, 305, 315, 500, 1020, 0, 0};
constexpr int PHASE_VALUE[8] = {0, 0, 3, 3, 5, 9, 0, 0};

constexpr int FileOf(Square s) { return s & 7; }
constexpr int RankOf(Square s) { return s >> 3; }
constexpr Square MakeSquare(int file, int rank) { return rank * 8 + file; }
constexpr Bitboard SquareBit(Square s) { return Bitboard{1} << s; }

// Move word: from (bits 0-5), to (6-11), moved type (12-14), captured type (15-17),
// promotion type (18-20), direct check (21), discovered check (22); bits 23-31 carry the
// sort value inside a move list.
constexpr Move MOVE_INVALID = 0;
constexpr Move MOVE_DIRECT_CHECK = 1u << 21;
constexpr Move MOVE_DISCOVERED_CHECK = 1u << 22;
constexpr Move MOVE_CHECK_FLAGS = MOVE_DIRECT_CHECK | MOVE_DISCOVERED_CHECK;
constexpr Move MOVE_MASK = 0x7fffff;

constexpr Square MoveFrom(Move m) { return m & 63; }
constexpr Square MoveTo(Move m) { return (m >> 6) & 63; }
constexpr PieceType MoveMoved(Move m) { return (m >> 12) & 7; }
constexpr PieceType MoveCaptured(Move m) { return (m >> 15) & 7; }
constexpr PieceType MovePromotion(Move m) { return (m >> 18) & 7; }
constexpr bool MoveGivesCheck(Move m) { return (m & MOVE_CHECK_FLAGS) != 0; }

constexpr Move MakeMoveWord(Square from, Square to, PieceType moved, PieceType captured = NO_PIECE,
                            PieceType promotion = NO_PIECE) {
  return Move(from) | Move(to) << 6 | Move(moved) << 12 | Move(captured) << 15 | Move(promotion) << 18;
}
