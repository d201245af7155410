// Bit primitives on Bitboard sets. Sets are always walked from the lowest square upwards.
#pragma once

#include <bit>

#include "board/types.h"

// Index of the lowest set bit; the set must not be empty.
inline Square FirstBit(Bitboard b) { return std::countr_zero(b); }

// Index of the highest set bit; the set must not be empty.
inline Square LastBit(Bitboard b) { return 63 - std::countl_zero(b); }

// Branch-free count of the set bits.
constexpr int PopCount(Bitboard b) {
  b -= (b >> 1) & 0x5555555555555555ULL;
  b = (b & 0x3333333333333333ULL) + ((b >> 2) & 0x3333333333333333ULL);
  b = (b + (b >> 4)) & 0x0f0f0f0f0f0f0f0fULL;
  return int((b * 0x0101010101010101ULL) >> 56);
}

// Count for sets that hold at most a few bits.
constexpr int SparsePopCount(Bitboard b) {
  int count = 0;
  for (; b != 0; b &= b - 1) ++count;
  return count;
}

// Removes the lowest set bit from b and returns its index; b must not be empty.
inline Square PopFirstBit(Bitboard& b) {
  Square s = FirstBit(b);
  b &= b - 1;
  return s;
}

constexpr bool HasMoreThanOne(Bitboard b) { return (b & (b - 1)) != 0; }

constexpr Bitboard RANK_1 = 0xffULL;
constexpr Bitboard RANK_8 = 0xffULL << 56;
constexpr Bitboard FILE_A = 0x0101010101010101ULL;
constexpr Bitboard FILE_H = FILE_A << 7;
constexpr Bitboard RankMask(int rank) { return RANK_1 << (8 * rank); }
constexpr Bitboard FileMask(int file) { return FILE_A << file; }
