#include "small_position.h"

namespace ZephrinTablegen {

namespace {

constexpr int BISHOP_DIRECTIONS[4] = {DIR_NORTH_WEST, DIR_NORTH_EAST, DIR_SOUTH_WEST, DIR_SOUTH_EAST};
constexpr int ROOK_DIRECTIONS[4] = {DIR_WEST, DIR_EAST, DIR_NORTH, DIR_SOUTH};

constexpr bool RunsUpwards(int d) {
  return d == DIR_EAST || d == DIR_NORTH || d == DIR_NORTH_WEST || d == DIR_NORTH_EAST;
}

// A ray up to and including its first blocker.
Bitboard Ray(int d, Square s, Bitboard occ) {
  Bitboard ray = Tables.rays[d - 1][s];
  const Bitboard blockers = ray & occ;
  if (blockers) ray ^= Tables.rays[d - 1][RunsUpwards(d) ? FirstBit(blockers) : LastBit(blockers)];
  return ray;
}

Bitboard SliderAttacks(const int (&directions)[4], Square s, Bitboard occ) {
  Bitboard attacks = 0;
  for (int d : directions) attacks |= Ray(d, s, occ);
  return attacks;
}

}  // namespace

bool HasPawns(const Material& material) {
  for (int i = 0; i < material.count; ++i)
    if (material.type[i] == PAWN) return true;
  return false;
}

Bitboard AttacksFrom(PieceType type, Color colour, Square s, Bitboard occ) {
  switch (type) {
    case PAWN: return Tables.pawn_attacks[colour][s];
    case KNIGHT: return Tables.knight_attacks[s];
    case BISHOP: return SliderAttacks(BISHOP_DIRECTIONS, s, occ);
    case ROOK: return SliderAttacks(ROOK_DIRECTIONS, s, occ);
    case QUEEN: return SliderAttacks(BISHOP_DIRECTIONS, s, occ) | SliderAttacks(ROOK_DIRECTIONS, s, occ);
    default: return Tables.king_attacks[s];
  }
}

bool Attacks(PieceType type, Color colour, Square s, Square t, Bitboard occ) {
  const Bitboard target = SquareBit(t);
  switch (type) {
    case PAWN: return Tables.pawn_attacks[colour][s] & target;
    case KNIGHT: return Tables.knight_attacks[s] & target;
    case KING: return Tables.king_attacks[s] & target;
    default: break;
  }
  const Bitboard lines = type == BISHOP ? Tables.bishop_lines[s]
                         : type == ROOK ? Tables.rook_lines[s]
                                        : Tables.queen_lines[s];
  return s != t && (lines & target) && !(Tables.between[s][t] & occ);
}

Bitboard Occupancy(const Material& material, const Square* squares) {
  Bitboard occ = 0;
  for (int i = 0; i < material.count; ++i)
    if (squares[i] != GONE) occ |= SquareBit(squares[i]);
  return occ;
}

bool IsAttacked(const Material& material, const Square* squares, Square t, Color by, Bitboard occ) {
  for (int i = 0; i < material.count; ++i)
    if (material.colour[i] == by && squares[i] != GONE && Attacks(material.type[i], by, squares[i], t, occ))
      return true;
  return false;
}

}  // namespace ZephrinTablegen
