// A position of at most four men as plain squares: slot 0 the white king, slot 1 the black king,
// the others behind them. The table maker moves and un-moves men on it; the kinds and colours of
// the men belong to the ending (`Material`), the squares to the position.
#pragma once

#include <array>
#include <cstdint>

#include "board/attack_tables.h"
#include "board/bitboard.h"
#include "board/types.h"

namespace ZephrinTablegen {

constexpr int MAX_MEN = 4;
constexpr Square GONE = 64;  // the square of a man just captured

struct Material {
  int count = 2;
  PieceType type[MAX_MEN] = {KING, KING};
  Color colour[MAX_MEN] = {WHITE, BLACK};
};

bool HasPawns(const Material& material);

// The squares a man of this kind attacks from s, with occ the occupied squares.
Bitboard AttacksFrom(PieceType type, Color colour, Square s, Bitboard occ);
// Whether a man of this kind on s attacks t; a quick line test before the blockers.
bool Attacks(PieceType type, Color colour, Square s, Square t, Bitboard occ);

Bitboard Occupancy(const Material& material, const Square* squares);
// Whether a man of colour `by` attacks t; captured men (GONE) don't.
bool IsAttacked(const Material& material, const Square* squares, Square t, Color by, Bitboard occ);
inline bool IsKingAttacked(const Material& material, const Square* squares, Color king) {
  return IsAttacked(material, squares, squares[king], king ^ 1, Occupancy(material, squares));
}

// The eight symmetries of the board by number: bit 0 mirrors the files, bit 1 the ranks, bit 2
// swaps file and rank, in that order.
constexpr Square Transform(Square s, int symmetry) {
  if (symmetry & 1) s ^= 7;
  if (symmetry & 2) s ^= 56;
  if (symmetry & 4) s = MakeSquare(RankOf(s), FileOf(s));
  return s;
}

namespace symmetry_detail {
constexpr bool InTriangle(Square s) { return FileOf(s) <= 3 && FileOf(s) >= RankOf(s); }
// By pawns (0 or 1) and square: the first symmetry that brings the square into the region.
constexpr std::array<std::array<std::int8_t, 64>, 2> MakeNormalSymmetries() {
  std::array<std::array<std::int8_t, 64>, 2> table{};
  for (Square s = 0; s < 64; ++s) {
    table[0][s] = -1;
    for (int symmetry = 0; symmetry < 8 && table[0][s] < 0; ++symmetry)
      if (InTriangle(Transform(s, symmetry))) table[0][s] = std::int8_t(symmetry);
    table[1][s] = FileOf(s) <= 3 ? 0 : 1;
  }
  return table;
}
inline constexpr auto NORMAL_SYMMETRY = MakeNormalSymmetries();
}  // namespace symmetry_detail

// The symmetry that brings a white king on s into the normal region: the triangle a1-d1-d4
// without pawns, files a to d with them. 0 (none) for squares of the region.
constexpr int NormalSymmetry(Square white_king, bool pawns) {
  return symmetry_detail::NORMAL_SYMMETRY[pawns ? 1 : 0][white_king];
}
constexpr bool InRegion(Square white_king, bool pawns) { return NormalSymmetry(white_king, pawns) == 0; }

struct MoveRecord {
  int man;
  Square to;
  int captured;         // slot of the captured man, -1 for none
  PieceType promotion;  // NO_PIECE for none
};

// Calls visit(MoveRecord, squares after the move) for every legal move of `side`; the captured
// man's square reads GONE. A promotion comes once for each of queen, rook, bishop and knight.
template <class Visit>
void ForEachLegalMove(const Material& m, const Square* squares, Color side, Visit&& visit) {
  const Bitboard occ = Occupancy(m, squares);
  Bitboard own = 0, enemy = 0;
  for (int i = 0; i < m.count; ++i) (m.colour[i] == side ? own : enemy) |= SquareBit(squares[i]);
  for (int i = 0; i < m.count; ++i) {
    if (m.colour[i] != side) continue;
    const Square from = squares[i];
    Bitboard targets;
    if (m.type[i] == PAWN) {
      const Square push = side == WHITE ? from + 8 : from - 8;
      targets = Tables.pawn_attacks[side][from] & enemy;
      if (!(occ & SquareBit(push))) {
        targets |= SquareBit(push);
        const int start_rank = side == WHITE ? 1 : 6;
        const Square jump = side == WHITE ? from + 16 : from - 16;
        if (RankOf(from) == start_rank && !(occ & SquareBit(jump))) targets |= SquareBit(jump);
      }
    } else {
      targets = AttacksFrom(m.type[i], side, from, occ) & ~own;
    }
    while (targets) {
      const Square to = PopFirstBit(targets);
      Square after[MAX_MEN];
      int captured = -1;
      for (int j = 0; j < m.count; ++j) {
        after[j] = squares[j];
        if (squares[j] == to) captured = j;
      }
      after[i] = to;
      if (captured >= 0) after[captured] = GONE;
      const Bitboard occ_after = (occ & ~SquareBit(from)) | SquareBit(to);
      if (IsAttacked(m, after, after[side], side ^ 1, occ_after)) continue;
      if (m.type[i] == PAWN && (RankOf(to) == 0 || RankOf(to) == 7)) {
        for (PieceType promotion : {QUEEN, ROOK, BISHOP, KNIGHT}) visit(MoveRecord{i, to, captured, promotion}, after);
      } else {
        visit(MoveRecord{i, to, captured, NO_PIECE}, after);
      }
    }
  }
}

// Calls visit(man, from) for every square from which a man of `mover` could have come to where it
// stands by a move that took nothing and promoted nothing; only the white king when kings_only.
// Whether the earlier position is legal is the caller's question.
template <class Visit>
void ForEachUnmove(const Material& m, const Square* squares, Color mover, bool kings_only, Visit&& visit) {
  const Bitboard occ = Occupancy(m, squares);
  for (int i = 0; i < m.count; ++i) {
    if (m.colour[i] != mover || (kings_only && i != WHITE)) continue;
    const Square to = squares[i];
    Bitboard sources;
    if (m.type[i] == PAWN) {
      const int rank = mover == WHITE ? RankOf(to) : 7 - RankOf(to);
      const Square back = mover == WHITE ? to - 8 : to + 8;
      const Square back2 = mover == WHITE ? to - 16 : to + 16;
      sources = 0;
      if (rank >= 2 && !(occ & SquareBit(back))) {
        sources |= SquareBit(back);
        if (rank == 3 && !(occ & SquareBit(back2))) sources |= SquareBit(back2);
      }
    } else {
      sources = AttacksFrom(m.type[i], mover, to, occ) & ~occ;
    }
    while (sources) visit(i, PopFirstBit(sources));
  }
}

}  // namespace ZephrinTablegen
