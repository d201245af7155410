// The position record: piece bitboards, four occupancy orientations, a piece per square, and per
// ply a small state record and a position key.
//
// Operations on the position itself are member functions (SetPosition, MakeMove, IsDraw, ...;
// make and undo live in make_move.cpp). Questions asked about a position are free functions taking
// a const Board& (attacks.h, static_exchange.h, move_generator.h, pseudo_legal.h, king_flood.h).
#pragma once

#include <cstdint>
#include <string>

#include "board/attack_tables.h"
#include "board/types.h"

struct BoardSide {
  Bitboard pawns;
  Bitboard knights;
  Bitboard bishops;
  Bitboard rooks;
  Bitboard queens;
  Bitboard all;  // every piece of this colour, the king included
  std::int32_t king_square;
  std::int32_t minor_units;  // 3 per knight and bishop
  std::int32_t major_units;  // 1 per rook, 2 per queen

  // The bitboard of a piece type from pawn to queen; the king has only its square.
  Bitboard& Pieces(PieceType type) {
    switch (type) {
      case PAWN: return pawns;
      case KNIGHT: return knights;
      case BISHOP: return bishops;
      case ROOK: return rooks;
      default: return queens;
    }
  }
  Bitboard Pieces(PieceType type) const { return const_cast<BoardSide*>(this)->Pieces(type); }
  Bitboard DiagonalSliders() const { return bishops | queens; }
  Bitboard StraightSliders() const { return rooks | queens; }
};

struct BoardPlyState {
  std::int16_t material;            // PIECE_VALUE of the side to move minus the opponent's
  std::uint16_t reversible_count;   // plies since the last pawn move or capture
  std::uint16_t ep_square;          // square behind a pawn that just double-stepped, 0 for none
  std::uint8_t castling;            // CASTLE_WHITE_SHORT | ... bits
  std::uint8_t in_check;            // nonzero when the side to move is in check
  std::uint64_t pawn_key;           // Zobrist key over the pawns alone
};

struct Board {
  static constexpr int MAX_PLIES = 80;        // a line from the root has at most 79 moves
  static constexpr int KEY_STORE_SIZE = 180;  // 100 plies of reversible history + MAX_PLIES
  static constexpr int MAX_HISTORY = KEY_STORE_SIZE - MAX_PLIES;

  std::int32_t ply;
  std::int32_t side_to_move;
  std::int32_t phase;  // sum of PHASE_VALUE over all pieces; 62 at the start
  Bitboard occupied;
  Bitboard occupied_diag;
  Bitboard occupied_file;
  Bitboard occupied_anti;
  BoardSide sides[2];
  Piece squares[64];
  std::uint64_t* key_history;  // key_history[i]: key of ply i; negative i reaches before the root
  BoardPlyState plies[MAX_PLIES];
  std::uint64_t key_store[KEY_STORE_SIZE];

  // A default Board holds the initial position. Copies go through CopyFrom, which repairs
  // key_history; the copy constructor and assignment do exactly that.
  Board();
  Board(const Board& other) { CopyFrom(other); }
  Board& operator=(const Board& other) {
    if (this != &other) CopyFrom(other);
    return *this;
  }
  void CopyFrom(const Board& other);

  // Sets up a position. Returns false for bad arguments (record untouched) or a position that
  // Validate refuses (record filled but unusable).
  bool SetPosition(const Piece squares_in[64], int side, int ep_square, int castling);
  void SetInitialPosition();
  bool Validate() const;

  // Prints the diagram (and, with details, castling, side and en-passant square) through Out.
  void Display(bool show_details) const;
  std::string DisplayText(bool show_details) const;
  std::string CastlingText() const;  // "KQkq", a subset, or "none"
  std::string EpText() const;        // "e3" or "none"

  // Make and undo. The Move must come from the generator of this position (check bits right).
  void MakeMove(Move move);
  void UnmakeMove(Move move);
  void MakeNullMove();
  void UnmakeNullMove();
  std::uint64_t KeyAfterMove(Move move) const;
  std::uint64_t PawnKeyAfterMove(Move move) const;

  // Repetition (one earlier occurrence), fifty moves (100 plies) or bare minors.
  bool IsDraw() const;
  // Makes the current position ply 0, keeping the keys of the reversible history.
  void Rebase();
  // Pretends that n (0..100) reversible plies precede the position.
  void SetReversibleCount(int n);
  // Hands the move to the other side; returns Validate() afterwards.
  bool ToggleSide();

  std::uint64_t ComputeKey() const;
  std::uint64_t ComputePawnKey() const;

  // Recomputes everything from scratch and compares; for tests after every make and undo.
  bool IsConsistent() const;

  const BoardPlyState& State() const { return plies[ply]; }
  BoardPlyState& State() { return plies[ply]; }
  std::uint64_t Key() const { return key_history[ply]; }
  std::uint64_t PawnKey() const { return plies[ply].pawn_key; }
  bool InCheck() const { return plies[ply].in_check != 0; }
  const BoardSide& Own() const { return sides[side_to_move]; }
  const BoardSide& Enemy() const { return sides[side_to_move ^ 1]; }
  PieceType TypeOn(Square s) const { return squares[s] < 0 ? -squares[s] : squares[s]; }

  // Sliding attacks in the present occupancy: every square up to and including the first
  // occupied one on each side, whatever stands there.
  Bitboard RankAttacks(Square s) const {
    return Tables.rank_attacks[s][(occupied >> (s & 56)) & 255];
  }
  Bitboard FileAttacks(Square s) const {
    return Tables.file_attacks[s][(occupied_file >> ((7 - (s & 7)) * 8)) & 255];
  }
  Bitboard DiagAttacks(Square s) const {
    return Tables.diag_attacks[s][(occupied_diag >> Tables.diag_shift[s]) & Tables.diag_mask[s]];
  }
  Bitboard AntiAttacks(Square s) const {
    return Tables.anti_attacks[s][(occupied_anti >> Tables.anti_shift[s]) & Tables.anti_mask[s]];
  }
  Bitboard BishopAttacks(Square s) const { return DiagAttacks(s) | AntiAttacks(s); }
  Bitboard RookAttacks(Square s) const { return RankAttacks(s) | FileAttacks(s); }
  Bitboard QueenAttacks(Square s) const { return BishopAttacks(s) | RookAttacks(s); }
  // The attacks along the one line that direction code d belongs to; empty for code 0.
  Bitboard LineAttacks(Square s, int d) const {
    if (IsRankDirection(d)) return RankAttacks(s);
    if (IsFileDirection(d)) return FileAttacks(s);
    if (IsAntiDirection(d)) return AntiAttacks(s);
    if (IsDiagDirection(d)) return DiagAttacks(s);
    return 0;
  }

 private:
  void ToggleOccupancy(Square s);
  void MoveCastlingRook(Square king_to, Color mover);
  void RemoveEpPawn(Square victim, Color victim_color);
  void Promote(Square to, PieceType promotion, Color mover);
};

// Piece helpers.
constexpr Piece MakePiece(Color c, PieceType t) { return Piece(c == WHITE ? t : -t); }
constexpr Color ColorOf(Piece p) { return p < 0 ? BLACK : WHITE; }
constexpr PieceType TypeOf(Piece p) { return p < 0 ? -p : p; }

// The 64 bytes of the initial position, a1 first.
extern const Piece INITIAL_SQUARES[64];
