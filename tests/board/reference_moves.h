// A slow, table-free reference for tests: attacks by walking offsets, and legal moves by trying
// every pseudo-legal move on a copy.
#pragma once

#include <cstdlib>
#include <set>
#include <tuple>

#include "board/board.h"

namespace reference {

inline bool OnBoard(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

// Whether a piece of colour `by` attacks s, walking the board square by square.
inline bool Attacks(const Board& b, Square s, Color by) {
  static const int knight[8][2] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
  static const int king[8][2] = {{0, 1}, {1, 1}, {1, 0}, {1, -1}, {0, -1}, {-1, -1}, {-1, 0}, {-1, 1}};
  const int f = FileOf(s), r = RankOf(s);
  const int pawn_rank = by == WHITE ? r - 1 : r + 1;
  for (int df : {-1, 1})
    if (OnBoard(f + df, pawn_rank) && b.squares[MakeSquare(f + df, pawn_rank)] == MakePiece(by, PAWN)) return true;
  for (auto& o : knight)
    if (OnBoard(f + o[0], r + o[1]) && b.squares[MakeSquare(f + o[0], r + o[1])] == MakePiece(by, KNIGHT))
      return true;
  for (auto& o : king) {
    if (OnBoard(f + o[0], r + o[1]) && b.squares[MakeSquare(f + o[0], r + o[1])] == MakePiece(by, KING))
      return true;
    const bool diagonal = o[0] != 0 && o[1] != 0;
    for (int ff = f + o[0], rr = r + o[1]; OnBoard(ff, rr); ff += o[0], rr += o[1]) {
      const Piece p = b.squares[MakeSquare(ff, rr)];
      if (p == 0) continue;
      if (p == MakePiece(by, QUEEN) || p == MakePiece(by, diagonal ? BISHOP : ROOK)) return true;
      break;
    }
  }
  return false;
}

// Whether the piece standing on `from` attacks s (walking the board).
inline bool PieceAttacks(const Board& b, Square from, Square s) {
  const Piece p = b.squares[from];
  if (p == 0 || from == s) return false;
  const int df = FileOf(s) - FileOf(from), dr = RankOf(s) - RankOf(from);
  const int adf = std::abs(df), adr = std::abs(dr);
  switch (TypeOf(p)) {
    case PAWN: return adf == 1 && dr == (p > 0 ? 1 : -1);
    case KNIGHT: return (adf == 1 && adr == 2) || (adf == 2 && adr == 1);
    case KING: return adf <= 1 && adr <= 1;
    default: break;
  }
  const bool straight = df == 0 || dr == 0, diagonal = adf == adr;
  if (!(TypeOf(p) == QUEEN ? straight || diagonal : TypeOf(p) == ROOK ? straight : diagonal)) return false;
  const int sf = (df > 0) - (df < 0), sr = (dr > 0) - (dr < 0);
  for (int f = FileOf(from) + sf, r = RankOf(from) + sr; MakeSquare(f, r) != s; f += sf, r += sr)
    if (b.squares[MakeSquare(f, r)] != 0) return false;
  return true;
}

using MoveKey = std::tuple<Square, Square, PieceType>;  // from, to, promotion

// The legal moves of the position as (from, to, promotion), by trying each pseudo-legal move.
inline std::set<MoveKey> LegalMoves(const Board& b) {
  std::set<MoveKey> result;
  const Color us = b.side_to_move, them = us ^ 1;
  const int ep = b.plies[b.ply].ep_square;
  auto try_move = [&](Square from, Square to, PieceType promotion) {
    Board copy(b);
    PieceType moved = TypeOf(b.squares[from]);
    PieceType captured = TypeOf(b.squares[to]);
    if (moved == PAWN && to == ep && ep != 0 && FileOf(from) != FileOf(to)) captured = PAWN;
    copy.MakeMove(Move(from) | Move(to) << 6 | Move(moved) << 12 | Move(captured) << 15 | Move(promotion) << 18);
    if (!Attacks(copy, copy.sides[us].king_square, them)) result.insert({from, to, promotion});
  };
  auto add = [&](Square from, Square to) {
    const bool promotes = TypeOf(b.squares[from]) == PAWN && (RankOf(to) == 0 || RankOf(to) == 7);
    if (!promotes) return try_move(from, to, NO_PIECE);
    for (PieceType p : {QUEEN, ROOK, BISHOP, KNIGHT}) try_move(from, to, p);
  };
  for (Square from = 0; from < 64; ++from) {
    const Piece p = b.squares[from];
    if (p == 0 || ColorOf(p) != us) continue;
    const int f = FileOf(from), r = RankOf(from);
    if (TypeOf(p) == PAWN) {
      const int up = us == WHITE ? 1 : -1;
      if (OnBoard(f, r + up) && b.squares[MakeSquare(f, r + up)] == 0) {
        add(from, MakeSquare(f, r + up));
        const int start = us == WHITE ? 1 : 6;
        if (r == start && b.squares[MakeSquare(f, r + 2 * up)] == 0) add(from, MakeSquare(f, r + 2 * up));
      }
      for (int df : {-1, 1}) {
        if (!OnBoard(f + df, r + up)) continue;
        const Square to = MakeSquare(f + df, r + up);
        if ((b.squares[to] != 0 && ColorOf(b.squares[to]) == them) || (ep != 0 && to == ep)) add(from, to);
      }
      continue;
    }
    for (Square to = 0; to < 64; ++to)
      if (PieceAttacks(b, from, to) && (b.squares[to] == 0 || ColorOf(b.squares[to]) == them)) add(from, to);
  }
  // Castling: right held, squares between empty, king not in check and not passing an attack.
  const int rights = b.plies[b.ply].castling;
  const Square e = us == WHITE ? 4 : 60;
  if (b.squares[e] == MakePiece(us, KING) && !Attacks(b, e, them)) {
    const int short_right = us == WHITE ? CASTLE_WHITE_SHORT : CASTLE_BLACK_SHORT;
    const int long_right = us == WHITE ? CASTLE_WHITE_LONG : CASTLE_BLACK_LONG;
    if ((rights & short_right) && !b.squares[e + 1] && !b.squares[e + 2] && !Attacks(b, e + 1, them))
      try_move(e, e + 2, NO_PIECE);
    if ((rights & long_right) && !b.squares[e - 1] && !b.squares[e - 2] && !b.squares[e - 3] &&
        !Attacks(b, e - 1, them))
      try_move(e, e - 2, NO_PIECE);
  }
  return result;
}

}  // namespace reference
