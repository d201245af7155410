// A slow, table-free reference for tests: attacks by walking the board square by square, and legal
// moves by trying every pseudo-legal move on a copy.
#pragma once

#include <cstdlib>
#include <set>
#include <tuple>

#include "board/board.h"

namespace reference {

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

// Whether a piece of colour `by` attacks s.
inline bool Attacks(const Board& b, Square s, Color by) {
  for (Square from = 0; from < 64; ++from)
    if (b.squares[from] != 0 && ColorOf(b.squares[from]) == by && PieceAttacks(b, from, s)) return true;
  return false;
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
    if (b.squares[from] == 0 || ColorOf(b.squares[from]) != us) continue;
    const bool pawn = TypeOf(b.squares[from]) == PAWN;
    for (Square to = 0; to < 64; ++to) {
      const bool empty = b.squares[to] == 0, enemy = !empty && ColorOf(b.squares[to]) == them;
      if (PieceAttacks(b, from, to) && (pawn ? enemy || (ep != 0 && to == ep) : empty || enemy)) add(from, to);
      // Pawn pushes: one step to an empty square, or two from the start rank over an empty one.
      const int step = (RankOf(to) - RankOf(from)) * (us == WHITE ? 1 : -1);
      if (pawn && empty && FileOf(to) == FileOf(from) &&
          (step == 1 || (step == 2 && RankOf(from) == (us == WHITE ? 1 : 6) && b.squares[(from + to) / 2] == 0)))
        add(from, to);
    }
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
