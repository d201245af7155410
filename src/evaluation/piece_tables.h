// The square tables of the piece terms. Each is stated for White and indexed by square (a1 = 0);
// Black reads it at square ^ 56.
#pragma once

#include <array>
#include <cstdint>

#include "board/board.h"
#include "evaluation/score_pair.h"

using SquareTable = std::array<std::int16_t, 64>;

// A positional and a dynamic table read together.
struct PairTable {
  SquareTable positional;
  SquareTable dynamic;

  ScorePair At(Square s) const { return ScorePair(positional[s], dynamic[s]); }
};

extern const PairTable KNIGHT_OPENING_TABLE;
extern const PairTable KNIGHT_MIDDLEGAME_TABLE;
extern const PairTable BISHOP_TABLE;  // both variants
extern const PairTable QUEEN_OPENING_TABLE;
extern const PairTable QUEEN_MIDDLEGAME_TABLE;

// The attack potential that a knight brings to its wing, both variants.
extern const SquareTable KNIGHT_ATTACK_TABLE;

// The average pawn count of the two sides, at most 8.
int AveragePawnCount(const Board& board);

// Piece values that shift with the pawns: knights lose value as pawns go, rooks gain. With avg the
// AveragePawnCount, a knight is worth (avg * 3 - 15) * 2 in both halves, a rook
// (5 - avg) * 12 + 15 / (5 - avg) * 12 - 15.
int KnightValue(const Board& board);
ScorePair RookValue(const Board& board);
