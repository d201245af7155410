// Make and undo of moves and null moves, the key one move ahead, draws and history keeping.
#include <cstring>
#include <utility>

#include "board/attacks.h"
#include "board/bitboard.h"
#include "board/board.h"

namespace {

constexpr Bitboard CORNERS = 0x8100000000000081ULL;

inline std::uint64_t EpKey(int ep) { return ep < 24 ? Tables.ep_keys[0][ep - 16] : Tables.ep_keys[1][ep - 40]; }

// The pawn key borrows columns 0 (white pawn) and 1 (black pawn) of piece_keys.
inline std::uint64_t PawnKeyOf(Color c, Square s) { return Tables.piece_keys[s][c]; }

inline std::uint64_t PieceKey(Square s, Piece p) { return Tables.piece_keys[s][p + 6]; }

// The castling right lost when a rook leaves or is taken on corner s; 0 for other squares.
inline int CornerRight(Square s) {
  switch (s) {
    case 7: return CASTLE_WHITE_SHORT;
    case 0: return CASTLE_WHITE_LONG;
    case 63: return CASTLE_BLACK_SHORT;
    case 56: return CASTLE_BLACK_LONG;
    default: return 0;
  }
}

inline std::uint64_t CastlingKeys(int rights) {
  std::uint64_t key = 0;
  for (int i = 0; i < 4; ++i)
    if (rights & (1 << i)) key ^= CASTLE_KEYS[i];
  return key;
}

// Rook squares of a castling by the king's destination (g1, c1, g8, c8).
inline void CastlingRookSquares(Square king_to, Square& rook_from, Square& rook_to) {
  bool short_side = FileOf(king_to) == 6;
  rook_from = short_side ? king_to + 1 : king_to - 2;
  rook_to = short_side ? king_to - 1 : king_to + 1;
}

inline bool IsCastlingTarget(Square to) { return to == 6 || to == 2 || to == 62 || to == 58; }

inline int MinorUnits(PieceType t) { return t == KNIGHT || t == BISHOP ? 3 : 0; }
inline int MajorUnits(PieceType t) { return t == ROOK ? 1 : t == QUEEN ? 2 : 0; }

}  // namespace

void Board::ToggleOccupancy(Square s) {
  occupied_diag ^= SquareBit(ROT_DIAG[s]);
  occupied_file ^= SquareBit(ROT_FILE[s]);
  occupied_anti ^= SquareBit(ROT_ANTI[s]);
}

void Board::MoveCastlingRook(Square king_to, Color mover) {
  Square rook_from, rook_to;
  CastlingRookSquares(king_to, rook_from, rook_to);
  Bitboard both = SquareBit(rook_from) | SquareBit(rook_to);
  sides[mover].rooks ^= both;
  sides[mover].all ^= both;
  ToggleOccupancy(rook_from);
  ToggleOccupancy(rook_to);
  // One of the two squares is empty, so a swap moves the rook either way.
  std::swap(squares[rook_from], squares[rook_to]);
}

void Board::RemoveEpPawn(Square victim, Color victim_color) {
  BoardSide& side = sides[victim_color];
  side.pawns &= ~SquareBit(victim);
  side.all &= ~SquareBit(victim);
  ToggleOccupancy(victim);
  squares[victim] = 0;
  plies[ply].pawn_key ^= PawnKeyOf(victim_color, victim);
  key_history[ply] ^= PieceKey(victim, MakePiece(victim_color, PAWN));
}

void Board::Promote(Square to, PieceType promotion, Color mover) {
  BoardPlyState& state = plies[ply];
  BoardSide& own = sides[mover];
  state.pawn_key ^= PawnKeyOf(mover, to);
  key_history[ply] ^= PieceKey(to, MakePiece(mover, PAWN)) ^ PieceKey(to, MakePiece(mover, promotion));
  squares[to] = MakePiece(mover, promotion);
  own.pawns &= ~SquareBit(to);
  own.Pieces(promotion) |= SquareBit(to);
  state.material = std::int16_t(state.material + PIECE_VALUE[PAWN] - PIECE_VALUE[promotion]);
  phase += PHASE_VALUE[promotion];
  own.minor_units += MinorUnits(promotion);
  own.major_units += MajorUnits(promotion);
}

void Board::MakeMove(Move move) {
  const Square from = MoveFrom(move), to = MoveTo(move);
  const PieceType moved = MoveMoved(move), captured = MoveCaptured(move);
  const Color us = side_to_move, them = us ^ 1;
  BoardSide& own = sides[us];
  BoardSide& opp = sides[them];
  const Bitboard from_to = SquareBit(from) | SquareBit(to);

  occupied_diag = (occupied_diag & ~SquareBit(ROT_DIAG[from])) | SquareBit(ROT_DIAG[to]);
  occupied_file = (occupied_file & ~SquareBit(ROT_FILE[from])) | SquareBit(ROT_FILE[to]);
  occupied_anti = (occupied_anti & ~SquareBit(ROT_ANTI[from])) | SquareBit(ROT_ANTI[to]);

  const BoardPlyState& prev = plies[ply];
  ++ply;
  BoardPlyState& state = plies[ply];
  state = prev;
  state.material = std::int16_t(-prev.material);
  state.in_check = (move & MOVE_CHECK_FLAGS) != 0;
  state.ep_square = 0;
  std::uint64_t& key = key_history[ply];
  key = key_history[ply - 1];
  if (prev.ep_square) key ^= EpKey(prev.ep_square);

  const Piece piece = MakePiece(us, moved);
  key ^= PieceKey(from, piece) ^ PieceKey(to, piece);
  squares[from] = 0;
  squares[to] = piece;
  own.all ^= from_to;

  switch (moved) {
    case PAWN:
      own.pawns ^= from_to;
      state.pawn_key ^= PawnKeyOf(us, from) ^ PawnKeyOf(us, to);
      if ((from ^ to) == 16) {  // a double step
        state.ep_square = std::uint16_t((from + to) / 2);
        key ^= EpKey(state.ep_square);
      } else if (MovePromotion(move)) {
        Promote(to, MovePromotion(move), us);
      }
      break;
    case ROOK:
      own.rooks ^= from_to;
      if ((SquareBit(from) & CORNERS) && (state.castling & CornerRight(from))) {
        state.castling &= std::uint8_t(~CornerRight(from));
        key ^= CASTLE_KEYS[FirstBit(CornerRight(from))];
      }
      break;
    case KING:
      own.king_square = to;
      if (state.castling & CASTLE_RIGHTS_OF[us]) {
        key ^= CastlingKeys(state.castling & CASTLE_RIGHTS_OF[us]);
        state.castling &= std::uint8_t(~CASTLE_RIGHTS_OF[us]);
        if (IsCastlingTarget(to)) {
          Square rook_from, rook_to;
          CastlingRookSquares(to, rook_from, rook_to);
          MoveCastlingRook(to, us);
          const Piece rook = MakePiece(us, ROOK);
          key ^= PieceKey(rook_from, rook) ^ PieceKey(rook_to, rook);
        }
      }
      break;
    default:
      own.Pieces(moved) ^= from_to;
      break;
  }

  if (moved == PAWN || captured) state.reversible_count = 0;
  else ++state.reversible_count;

  if (captured) {
    state.material = std::int16_t(state.material - PIECE_VALUE[captured]);
    opp.all &= ~SquareBit(to);
    if (captured == PAWN && moved == PAWN && to == prev.ep_square && prev.ep_square) {
      RemoveEpPawn(us == WHITE ? to - 8 : to + 8, them);
    } else {
      opp.Pieces(captured) &= ~SquareBit(to);
      if (captured == PAWN) state.pawn_key ^= PawnKeyOf(them, to);
      opp.minor_units -= MinorUnits(captured);
      opp.major_units -= MajorUnits(captured);
      if (captured == ROOK && (state.castling & CornerRight(to)) && (SquareBit(to) & CORNERS)) {
        state.castling &= std::uint8_t(~CornerRight(to));
        key ^= CASTLE_KEYS[FirstBit(CornerRight(to))];
      }
      phase -= PHASE_VALUE[captured];
      key ^= PieceKey(to, MakePiece(them, captured));
    }
  }

  side_to_move = them;
  occupied = sides[WHITE].all | sides[BLACK].all;
  key ^= SIDE_KEY;
}

void Board::UnmakeMove(Move move) {
  const Square from = MoveFrom(move), to = MoveTo(move);
  const PieceType moved = MoveMoved(move), captured = MoveCaptured(move);
  const Bitboard from_to = SquareBit(from) | SquareBit(to);

  --ply;
  occupied_diag = (occupied_diag & ~SquareBit(ROT_DIAG[to])) | SquareBit(ROT_DIAG[from]);
  occupied_file = (occupied_file & ~SquareBit(ROT_FILE[to])) | SquareBit(ROT_FILE[from]);
  occupied_anti = (occupied_anti & ~SquareBit(ROT_ANTI[to])) | SquareBit(ROT_ANTI[from]);
  side_to_move ^= 1;
  const Color us = side_to_move, them = us ^ 1;
  BoardSide& own = sides[us];
  BoardSide& opp = sides[them];
  squares[to] = 0;
  squares[from] = MakePiece(us, moved);
  own.all ^= from_to;

  switch (moved) {
    case PAWN:
      own.pawns ^= from_to;
      if (PieceType promotion = MovePromotion(move)) {
        phase -= PHASE_VALUE[promotion];
        own.pawns &= ~SquareBit(to);
        own.Pieces(promotion) &= ~SquareBit(to);
        own.minor_units -= MinorUnits(promotion);
        own.major_units -= MajorUnits(promotion);
      }
      break;
    case KING:
      own.king_square = from;
      if ((from == 4 || from == 60) && IsCastlingTarget(to) && (from - to == 2 || to - from == 2))
        MoveCastlingRook(to, us);
      break;
    default:
      own.Pieces(moved) ^= from_to;
      break;
  }

  if (captured) {
    const int ep = plies[ply].ep_square;
    if (captured == PAWN && moved == PAWN && ep && to == ep) {
      Square victim = us == WHITE ? to - 8 : to + 8;
      squares[victim] = MakePiece(them, PAWN);
      opp.pawns |= SquareBit(victim);
      opp.all |= SquareBit(victim);
      ToggleOccupancy(victim);
    } else {
      squares[to] = MakePiece(them, captured);
      opp.Pieces(captured) |= SquareBit(to);
      opp.all |= SquareBit(to);
      opp.minor_units += MinorUnits(captured);
      opp.major_units += MajorUnits(captured);
      phase += PHASE_VALUE[captured];
      occupied_diag |= SquareBit(ROT_DIAG[to]);
      occupied_file |= SquareBit(ROT_FILE[to]);
      occupied_anti |= SquareBit(ROT_ANTI[to]);
    }
  }
  occupied = sides[WHITE].all | sides[BLACK].all;
}

void Board::MakeNullMove() {
  const BoardPlyState& prev = plies[ply];
  ++ply;
  BoardPlyState& state = plies[ply];
  state.reversible_count = 0;
  state.material = std::int16_t(-prev.material);
  state.ep_square = 0;
  state.in_check = 0;
  state.castling = prev.castling;
  state.pawn_key = prev.pawn_key;
  std::uint64_t key = key_history[ply - 1];
  if (prev.ep_square) key ^= EpKey(prev.ep_square);
  key_history[ply] = key ^ SIDE_KEY;
  side_to_move ^= 1;
}

void Board::UnmakeNullMove() {
  --ply;
  side_to_move ^= 1;
}

std::uint64_t Board::KeyAfterMove(Move move) const {
  const Square from = MoveFrom(move), to = MoveTo(move);
  const PieceType moved = MoveMoved(move), captured = MoveCaptured(move);
  const Color us = side_to_move, them = us ^ 1;
  const BoardPlyState& state = plies[ply];
  std::uint64_t key = key_history[ply] ^ SIDE_KEY;
  if (state.ep_square) key ^= EpKey(state.ep_square);
  const Piece piece = MakePiece(us, moved);
  key ^= PieceKey(from, piece) ^ PieceKey(to, piece);
  if (moved == PAWN) {
    if ((from ^ to) == 16) key ^= EpKey((from + to) / 2);
    else if (PieceType promotion = MovePromotion(move))
      key ^= PieceKey(to, piece) ^ PieceKey(to, MakePiece(us, promotion));
  } else if (moved == ROOK) {
    if ((SquareBit(from) & CORNERS) && (state.castling & CornerRight(from)))
      key ^= CASTLE_KEYS[FirstBit(CornerRight(from))];
  } else if (moved == KING && (state.castling & CASTLE_RIGHTS_OF[us])) {
    key ^= CastlingKeys(state.castling & CASTLE_RIGHTS_OF[us]);
    if (IsCastlingTarget(to)) {
      Square rook_from, rook_to;
      CastlingRookSquares(to, rook_from, rook_to);
      key ^= PieceKey(rook_from, MakePiece(us, ROOK)) ^ PieceKey(rook_to, MakePiece(us, ROOK));
    }
  }
  if (captured) {
    if (captured == PAWN && moved == PAWN && state.ep_square && to == state.ep_square) {
      Square victim = us == WHITE ? to - 8 : to + 8;
      key ^= PieceKey(victim, MakePiece(them, PAWN));
    } else {
      key ^= PieceKey(to, MakePiece(them, captured));
      // A rook taken on its corner takes the other side's right with it.
      if (captured == ROOK && (SquareBit(to) & CORNERS) && (state.castling & CornerRight(to)))
        key ^= CASTLE_KEYS[FirstBit(CornerRight(to))];
    }
  }
  return key;
}

std::uint64_t Board::PawnKeyAfterMove(Move move) const {
  const Square from = MoveFrom(move), to = MoveTo(move);
  const Color us = side_to_move;
  const BoardPlyState& state = plies[ply];
  std::uint64_t key = state.pawn_key;
  if (MoveMoved(move) == PAWN) {
    key ^= PawnKeyOf(us, from);
    if (!MovePromotion(move)) key ^= PawnKeyOf(us, to);
  }
  if (MoveCaptured(move) == PAWN) {
    const bool en_passant = MoveMoved(move) == PAWN && state.ep_square && to == state.ep_square;
    key ^= PawnKeyOf(us ^ 1, en_passant ? (us == WHITE ? to - 8 : to + 8) : to);
  }
  return key;
}

bool Board::IsDraw() const {
  const BoardSide& white = sides[WHITE];
  const BoardSide& black = sides[BLACK];
  if (!(white.pawns | black.pawns) && white.major_units == 0 && black.major_units == 0) {
    auto bare = [](const BoardSide& side) {
      return side.minor_units < 6 || (side.minor_units == 6 && side.bishops == 0);
    };
    if (bare(white) && bare(black)) return true;
  }
  const int n = plies[ply].reversible_count;
  if (n < 4) return false;
  if (n > 99) return true;
  const std::uint64_t key = key_history[ply];
  for (int i = ply - 2; i >= ply - n; i -= 2)
    if (key_history[i] == key) return true;
  return false;
}

void Board::Rebase() {
  plies[0] = plies[ply];
  if (plies[0].reversible_count == 0) {
    key_store[0] = key_history[ply];
    key_history = key_store;
  } else {
    key_history += ply;
    // Keep room for a full line of plies: only the last reversible plies can ever repeat.
    if (key_history - key_store > MAX_HISTORY) {
      int keep = plies[0].reversible_count < MAX_HISTORY ? plies[0].reversible_count : MAX_HISTORY;
      std::memmove(key_store, key_history - keep, sizeof(std::uint64_t) * (keep + 1));
      key_history = key_store + keep;
    }
  }
  ply = 0;
}

void Board::SetReversibleCount(int n) {
  if (ply != 0) Rebase();
  n = n < 0 ? 0 : n > MAX_HISTORY ? MAX_HISTORY : n;
  const std::uint64_t key = key_history[0];
  plies[0].reversible_count = std::uint16_t(n);
  key_store[n] = key;
  for (int i = 0; i < n; ++i) key_store[i] = std::uint64_t(i + 1);
  key_history = key_store + n;
}

bool Board::ToggleSide() {
  side_to_move ^= 1;
  BoardPlyState& state = plies[ply];
  state.material = std::int16_t(-state.material);
  key_history[ply] ^= SIDE_KEY;
  state.reversible_count = 0;
  state.in_check = IsInCheck(*this);
  Rebase();
  return Validate();
}
