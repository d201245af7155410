#include "board/pseudo_legal.h"

#include "board/attacks.h"
#include "board/move_generator.h"
#include "frame/checked_assert.h"

namespace {

// The attack set of a piece of this type standing on s, in the present occupancy.
Bitboard AttacksOf(const Board& board, PieceType type, Square s) {
  switch (type) {
    case KNIGHT: return Tables.knight_attacks[s];
    case BISHOP: return board.BishopAttacks(s);
    case ROOK: return board.RookAttacks(s);
    case QUEEN: return board.QueenAttacks(s);
    default: return 0;
  }
}

bool GeometryFits(const Board& board, PieceType moved, Square from, Square to) {
  const int d = Tables.direction[from][to];
  switch (moved) {
    case KNIGHT: return Tables.knight_attacks[from] & SquareBit(to);
    case BISHOP: return IsDiagonalDirection(d) && !(Tables.between[from][to] & board.occupied);
    case ROOK: return IsStraightDirection(d) && !(Tables.between[from][to] & board.occupied);
    case QUEEN: return d != DIR_NONE && !(Tables.between[from][to] & board.occupied);
    case KING: return Tables.king_attacks[from] & SquareBit(to);
    default: return false;
  }
}

// Pawn pushes and captures by their squares; en passant is handled by the caller.
bool PawnGeometryFits(const Board& board, Color us, Square from, Square to, PieceType captured) {
  const int forward = us == WHITE ? 8 : -8;
  if (captured) return Tables.pawn_attacks[us][from] & SquareBit(to);
  if (to == from + forward) return board.squares[to] == 0;
  const int start_rank = us == WHITE ? 1 : 6;
  return to == from + 2 * forward && RankOf(from) == start_rank && board.squares[from + forward] == 0 &&
         board.squares[to] == 0;
}

bool DirectCheckFits(const Board& board, Move move, Square q) {
  const Square from = MoveFrom(move), to = MoveTo(move);
  const PieceType moved = MoveMoved(move), promotion = MovePromotion(move);
  const Color us = board.side_to_move;
  if (moved == KING) return false;
  if (moved == PAWN && !promotion) return Tables.pawn_attacks[us ^ 1][q] & SquareBit(to);
  const PieceType arriving = promotion ? promotion : moved;
  const Bitboard attacks = AttacksOf(board, arriving, q);
  if (attacks & SquareBit(to)) return true;
  // A promoted slider may check along the line the pawn came up, through its own from square.
  return promotion && (attacks & SquareBit(from)) && Tables.direction[q][from] == Tables.direction[from][to];
}

bool DiscoveredCheckFits(const Board& board, Move move, Square q) {
  const Square from = MoveFrom(move), to = MoveTo(move);
  const int d = Tables.direction[q][from];
  if (d == DIR_NONE || d == Tables.direction[q][to]) return false;
  const BoardSide& own = board.sides[board.side_to_move];
  const Bitboard sliders = IsStraightDirection(d) ? own.StraightSliders() : own.DiagonalSliders();
  const Bitboard line = board.LineAttacks(from, d);
  return (line & SquareBit(q)) && (line & sliders);
}

}  // namespace

bool IsMovePseudoLegal(const Board& board, Move move) {
  constexpr Move INVALID = MOVE_INVALID;
  CHECKED_ASSERT(move != INVALID, "board", "IsMovePseudoLegal: move == INVALID test is necessary!");
  if (move & ~MOVE_MASK) return false;
  const Square from = MoveFrom(move), to = MoveTo(move);
  const PieceType moved = MoveMoved(move), captured = MoveCaptured(move), promotion = MovePromotion(move);
  const Color us = board.side_to_move, them = us ^ 1;
  if (moved < PAWN || moved > KING || captured > QUEEN || from == to) return false;
  if (board.squares[from] != MakePiece(us, moved)) return false;
  // A promotion is a pawn reaching the last rank, and every such pawn move promotes.
  const bool last_rank = RankOf(to) == (us == WHITE ? 7 : 0);
  if (moved == PAWN && last_rank != (promotion != NO_PIECE)) return false;
  if (promotion && (moved != PAWN || promotion < KNIGHT || promotion > QUEEN)) return false;

  const int ep = board.plies[board.ply].ep_square;
  // En passant and castling are rare: the full generator decides them, flags included.
  if (moved == PAWN && captured == PAWN && ep && to == ep && board.squares[to] == 0)
    return IsLegalMove(board, move);
  if (moved == KING && (from - to == 2 || to - from == 2)) return IsLegalMove(board, move);

  const Piece target = captured ? MakePiece(them, captured) : Piece(0);
  if (board.squares[to] != target) return false;
  if (moved == PAWN ? !PawnGeometryFits(board, us, from, to, captured) : !GeometryFits(board, moved, from, to))
    return false;

  const Square q = board.sides[them].king_square;
  if (((move & MOVE_DIRECT_CHECK) != 0) != DirectCheckFits(board, move, q)) return false;
  return ((move & MOVE_DISCOVERED_CHECK) != 0) == DiscoveredCheckFits(board, move, q);
}
