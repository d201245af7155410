#include "board/attacks.h"

#include "board/bitboard.h"

Bitboard Attackers(const Board& board, Square s) {
  const BoardSide& white = board.sides[WHITE];
  const BoardSide& black = board.sides[BLACK];
  Bitboard kings = SquareBit(white.king_square) | SquareBit(black.king_square);
  return (Tables.pawn_attacks[BLACK][s] & white.pawns) | (Tables.pawn_attacks[WHITE][s] & black.pawns) |
         (Tables.knight_attacks[s] & (white.knights | black.knights)) | (Tables.king_attacks[s] & kings) |
         (board.BishopAttacks(s) & (white.DiagonalSliders() | black.DiagonalSliders())) |
         (board.RookAttacks(s) & (white.StraightSliders() | black.StraightSliders()));
}

bool IsAttackedByPieces(const Board& board, Square s, const BoardSide& side) {
  if (Tables.knight_attacks[s] & side.knights) return true;
  if (Tables.king_attacks[s] & SquareBit(side.king_square)) return true;
  if (Tables.bishop_lines[s] & side.DiagonalSliders() && board.BishopAttacks(s) & side.DiagonalSliders())
    return true;
  return Tables.rook_lines[s] & side.StraightSliders() && board.RookAttacks(s) & side.StraightSliders();
}

bool IsSquareAttacked(const Board& board, Square s, Color by) {
  return (Tables.pawn_attacks[by ^ 1][s] & board.sides[by].pawns) ||
         IsAttackedByPieces(board, s, board.sides[by]);
}

bool IsInCheck(const Board& board) {
  Color us = board.side_to_move;
  return IsSquareAttacked(board, board.sides[us].king_square, us ^ 1);
}

bool IsOpponentInCheck(const Board& board) {
  Color them = board.side_to_move ^ 1;
  return IsSquareAttacked(board, board.sides[them].king_square, them ^ 1);
}

bool WouldLeaveOwnKingInCheck(const Board& board, Move move) {
  Board trial(board);
  if (trial.ply >= Board::MAX_PLIES - 1) trial.Rebase();
  trial.MakeMove(move);
  return IsOpponentInCheck(trial);
}

Bitboard SlidersOnRay(const Board& board, Square s, int d) {
  if (d < DIR_WEST || d > DIR_SOUTH_EAST) return 0;
  const BoardSide& white = board.sides[WHITE];
  const BoardSide& black = board.sides[BLACK];
  Bitboard sliders = IsStraightDirection(d) ? white.StraightSliders() | black.StraightSliders()
                                            : white.DiagonalSliders() | black.DiagonalSliders();
  return board.LineAttacks(s, d) & Tables.rays[d - 1][s] & sliders;
}

namespace {

// A candidate blocks when it is the only piece between k and one of the sliders on k's lines;
// looping over those few sliders is cheaper than looking along the line of every candidate.
Bitboard FindBlockersAmong(const Board& board, Bitboard candidates, Bitboard straight, Bitboard diagonal,
                           Square k) {
  Bitboard snipers = (straight & Tables.rook_lines[k]) | (diagonal & Tables.bishop_lines[k]);
  Bitboard result = 0;
  while (snipers) {
    const Bitboard between = Tables.between[k][PopFirstBit(snipers)] & board.occupied;
    if (between && !HasMoreThanOne(between)) result |= between;
  }
  return result & candidates;
}

}  // namespace

Bitboard FindBlockers(const Board& board, Bitboard candidates, const BoardSide& side, Square k) {
  return FindBlockersAmong(board, candidates, side.StraightSliders(), side.DiagonalSliders(), k);
}

Bitboard Blockers(const Board& board, Square k, Bitboard own, const BoardSide& side, Bitboard mask) {
  Bitboard candidates = board.QueenAttacks(k) & own;
  return FindBlockersAmong(board, candidates, side.StraightSliders() & mask, side.DiagonalSliders() & mask, k);
}

bool QueenUnderAttack(const Board& board) {
  Color us = board.side_to_move;
  const BoardSide& them = board.sides[us ^ 1];
  for (Bitboard queens = board.sides[us].queens; queens;) {
    Square q = PopFirstBit(queens);
    if (Tables.pawn_attacks[us][q] & them.pawns) return true;
    if (Tables.knight_attacks[q] & them.knights) return true;
    if (board.BishopAttacks(q) & them.bishops) return true;
    if (board.RookAttacks(q) & them.rooks) return true;
  }
  return false;
}
