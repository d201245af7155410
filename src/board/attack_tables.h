// The global read-only tables: sliding attacks on rotated occupancies, rays and lines, distances,
// pawn masks and the Zobrist numbers of the position key.
//
// `Tables` is filled by InitAttackTables(), which main calls before anything else. The call is
// idempotent and cheap after the first time; Board::SetPosition makes it too, so any code that
// builds a Board (tests, tools) finds the tables ready. Nothing writes the tables afterwards.
#pragma once

#include <array>
#include <cstdint>

#include "board/types.h"

// Direction codes between two squares on a common line.
constexpr int DIR_NONE = 0;
constexpr int DIR_WEST = 1;        // same rank, lower file; step 1
constexpr int DIR_EAST = 2;        // same rank, higher file; step 1
constexpr int DIR_NORTH = 3;       // same file, higher rank; step 8
constexpr int DIR_SOUTH = 4;       // same file, lower rank; step 8
constexpr int DIR_NORTH_WEST = 5;  // anti-diagonal, step 7
constexpr int DIR_NORTH_EAST = 6;  // diagonal, step 9
constexpr int DIR_SOUTH_WEST = 7;  // diagonal, step 9
constexpr int DIR_SOUTH_EAST = 8;  // anti-diagonal, step 7

// Which of the four line kinds a direction code runs along.
constexpr bool IsRankDirection(int d) { return d == DIR_WEST || d == DIR_EAST; }
constexpr bool IsFileDirection(int d) { return d == DIR_NORTH || d == DIR_SOUTH; }
constexpr bool IsAntiDirection(int d) { return d == DIR_NORTH_WEST || d == DIR_SOUTH_EAST; }
constexpr bool IsDiagDirection(int d) { return d == DIR_NORTH_EAST || d == DIR_SOUTH_WEST; }
constexpr bool IsStraightDirection(int d) { return d >= DIR_WEST && d <= DIR_SOUTH; }
constexpr bool IsDiagonalDirection(int d) { return d >= DIR_NORTH_WEST && d <= DIR_SOUTH_EAST; }

// Fixed key terms for the side to move and the castling rights.
constexpr std::uint64_t SIDE_KEY = 0x81dcf975a1cf4147ULL;
constexpr std::uint64_t CASTLE_KEY_WK = 0x517cc1b727220a94ULL;
constexpr std::uint64_t CASTLE_KEY_WQ = 0x229a1869d1b6232eULL;
constexpr std::uint64_t CASTLE_KEY_BK = 0x5c6b34adbf4e8e53ULL;
constexpr std::uint64_t CASTLE_KEY_BQ = 0x11489e10d9ad68f5ULL;
// By castling bit index: white short, white long, black short, black long.
constexpr std::uint64_t CASTLE_KEYS[4] = {CASTLE_KEY_WK, CASTLE_KEY_WQ, CASTLE_KEY_BK, CASTLE_KEY_BQ};

// Castling rights bits.
constexpr int CASTLE_WHITE_SHORT = 1;
constexpr int CASTLE_WHITE_LONG = 2;
constexpr int CASTLE_BLACK_SHORT = 4;
constexpr int CASTLE_BLACK_LONG = 8;
constexpr int CASTLE_RIGHTS_OF[2] = {CASTLE_WHITE_SHORT | CASTLE_WHITE_LONG,
                                     CASTLE_BLACK_SHORT | CASTLE_BLACK_LONG};

namespace rotation_detail {
constexpr int DiagonalLength(int d) { return d <= 7 ? d + 1 : 15 - d; }
constexpr int DiagonalStart(int d) {
  int start = 0;
  for (int i = 0; i < d; ++i) start += DiagonalLength(i);
  return start;
}
constexpr std::array<std::uint8_t, 64> MakeRotDiag() {
  std::array<std::uint8_t, 64> r{};
  for (int s = 0; s < 64; ++s) {
    int f = s & 7, rank = s >> 3, d = 7 - f + rank;
    r[s] = std::uint8_t(DiagonalStart(d) + (d <= 7 ? rank : f));
  }
  return r;
}
constexpr std::array<std::uint8_t, 64> MakeRotAnti() {
  std::array<std::uint8_t, 64> r{};
  for (int s = 0; s < 64; ++s) {
    int f = s & 7, rank = s >> 3, d = f + rank;
    r[s] = std::uint8_t(DiagonalStart(d) + (d <= 7 ? f : 7 - rank));
  }
  return r;
}
constexpr std::array<std::uint8_t, 64> MakeRotFile() {
  std::array<std::uint8_t, 64> r{};
  for (int s = 0; s < 64; ++s) r[s] = std::uint8_t((7 - (s & 7)) * 8 + (s >> 3));
  return r;
}
constexpr std::array<std::uint8_t, 64> Inverse(const std::array<std::uint8_t, 64>& p) {
  std::array<std::uint8_t, 64> r{};
  for (int s = 0; s < 64; ++s) r[p[s]] = std::uint8_t(s);
  return r;
}
}  // namespace rotation_detail

// Square -> bit position in the rotated occupancies, and the inverse lists for the diagonals.
constexpr std::array<std::uint8_t, 64> ROT_DIAG = rotation_detail::MakeRotDiag();
constexpr std::array<std::uint8_t, 64> ROT_ANTI = rotation_detail::MakeRotAnti();
constexpr std::array<std::uint8_t, 64> ROT_FILE = rotation_detail::MakeRotFile();
constexpr std::array<std::uint8_t, 64> DIAG_SQUARES = rotation_detail::Inverse(ROT_DIAG);
constexpr std::array<std::uint8_t, 64> ANTI_SQUARES = rotation_detail::Inverse(ROT_ANTI);

struct AttackTables {
  std::uint8_t diag_shift[64];
  std::uint8_t anti_shift[64];
  std::uint16_t diag_mask[64];
  std::uint16_t anti_mask[64];
  Bitboard diag_attacks[64][256];
  Bitboard anti_attacks[64][256];
  Bitboard rank_attacks[64][256];
  Bitboard file_attacks[64][256];
  Bitboard knight_attacks[64];
  Bitboard king_attacks[64];
  std::uint8_t direction[64][64];
  Bitboard between[64][64];
  std::uint8_t king_distance[64][64];
  std::uint8_t manhattan_distance[64][64];
  Bitboard rays[8][64];  // by direction code - 1
  Bitboard bishop_lines[64];
  Bitboard rook_lines[64];
  Bitboard queen_lines[64];
  Bitboard pawn_attacks[2][64];
  Bitboard front_span[2][64];
  Bitboard attack_span[2][64];
  Bitboard pawn_square[2][2][64];          // [pawn colour][side to move][pawn square]
  Bitboard king_outside_square[2][64][2];  // [pawn colour][king square][side to move]
  std::uint64_t piece_keys[64][13];        // [square][Piece + 6]
  std::uint64_t ep_keys[2][8];             // [0: target on rank three, 1: rank six][file]
};

extern AttackTables Tables;

// Fills Tables on the first call; later calls return at once.
void InitAttackTables();
