// The tables behind the Nalimov index functions: numbers for the pairs of kings in normal form,
// the usable squares of each kind of man next to the other king, and running offsets per king
// pair, so that an index is a handful of look-ups.
#pragma once

#include <cstdint>

namespace NalimovTablebases {

constexpr int PAWNLESS_KING_PAIRS = 462;  // first king in the triangle a1-d1-d4
constexpr int PAWN_KING_PAIRS = 1806;     // first king on the files a to d
constexpr std::int16_t NO_KING_PAIR = 4000;
constexpr std::uint8_t NOT_USABLE = 255;

// Kinds of men for square_rank: a pawn that may attack the other king, a pawn that may not, and
// the pieces, none of which may attack the other king.
constexpr int KIND_ANY_PAWN = 0;
constexpr int KIND_PAWN = 1;
constexpr int KIND_KNIGHT = 2;
constexpr int KIND_BISHOP = 3;
constexpr int KIND_ROOK = 4;
constexpr int KIND_QUEEN = 5;
constexpr int KIND_COUNT = 6;

// Running offsets for one table of king pairs; entry [pairs] holds the total.
template <int PAIRS>
struct PairOffsets {
  std::uint32_t pair_offset[KIND_COUNT][PAIRS + 1];
  std::uint32_t pair_offset2[KIND_COUNT][KIND_COUNT][PAIRS + 1];
};

extern std::int16_t KK_PAWNLESS[64][64];
extern std::int16_t KK_PAWN[64][64];
extern std::uint8_t square_rank[KIND_COUNT][64][64];  // [kind][other king][square]
extern std::uint8_t usable[KIND_COUNT][64];           // [kind][other king]
extern PairOffsets<PAWNLESS_KING_PAIRS> PAWNLESS_OFFSETS;
extern PairOffsets<PAWN_KING_PAIRS> PAWN_OFFSETS;

// Builds the tables; idempotent. They are built before main runs, so callers need not.
void InitIndexTables();

// The squares a man of this kind may use next to king O, less one if the mover's king M stands
// on one of them: the number of values of its rank in an index.
inline int UsableBeside(int kind, int m, int o) {
  return usable[kind][o] - (square_rank[kind][o][m] != NOT_USABLE);
}

}  // namespace NalimovTablebases
