#include "board/board.h"

#include <cstring>

#include "board/attacks.h"
#include "board/bitboard.h"
#include "frame/string_conversions.h"
#include "frame/tee_stream.h"

const Piece INITIAL_SQUARES[64] = {
    4,  2,  3,  5,  6,  3,  2,  4,   //
    1,  1,  1,  1,  1,  1,  1,  1,   //
    0,  0,  0,  0,  0,  0,  0,  0,   //
    0,  0,  0,  0,  0,  0,  0,  0,   //
    0,  0,  0,  0,  0,  0,  0,  0,   //
    0,  0,  0,  0,  0,  0,  0,  0,   //
    -1, -1, -1, -1, -1, -1, -1, -1,  //
    -4, -2, -3, -5, -6, -3, -2, -4,
};

Board::Board() { SetInitialPosition(); }

void Board::SetInitialPosition() { SetPosition(INITIAL_SQUARES, WHITE, 0, 15); }

void Board::CopyFrom(const Board& other) {
  std::memcpy(static_cast<void*>(this), static_cast<const void*>(&other), sizeof(Board));
  key_history = key_store + (other.key_history - other.key_store);
}

bool Board::SetPosition(const Piece squares_in[64], int side, int ep_square, int castling) {
  InitAttackTables();
  if (side != WHITE && side != BLACK) return false;
  if (ep_square != 0 && (ep_square < 0 || ep_square > 63 || RankOf(ep_square) != (side == WHITE ? 5 : 2)))
    return false;
  if (castling < 0 || castling > 15) return false;
  for (int s = 0; s < 64; ++s)
    if (squares_in[s] < -6 || squares_in[s] > 6) return false;

  std::memset(static_cast<void*>(sides), 0, sizeof(sides));
  ply = 0;
  phase = 0;
  side_to_move = side;
  BoardPlyState& state = plies[0];
  state = BoardPlyState{};
  state.ep_square = std::uint16_t(ep_square);
  state.castling = std::uint8_t(castling);
  std::memcpy(squares, squares_in, sizeof(squares));
  int material = 0;
  for (Square s = 0; s < 64; ++s) {
    Piece p = squares[s];
    if (p == 0) continue;
    BoardSide& owner = sides[ColorOf(p)];
    PieceType type = TypeOf(p);
    owner.all |= SquareBit(s);
    if (type == KING) owner.king_square = s;
    else owner.Pieces(type) |= SquareBit(s);
    phase += PHASE_VALUE[type];
    if (type == KNIGHT || type == BISHOP) owner.minor_units += 3;
    if (type == ROOK) owner.major_units += 1;
    if (type == QUEEN) owner.major_units += 2;
    material += p > 0 ? PIECE_VALUE[type] : -PIECE_VALUE[type];
  }
  state.material = std::int16_t(side == BLACK ? -material : material);
  occupied = sides[WHITE].all | sides[BLACK].all;
  occupied_diag = occupied_file = occupied_anti = 0;
  for (Bitboard b = occupied; b;) {
    Square s = PopFirstBit(b);
    occupied_diag |= SquareBit(ROT_DIAG[s]);
    occupied_file |= SquareBit(ROT_FILE[s]);
    occupied_anti |= SquareBit(ROT_ANTI[s]);
  }
  key_history = key_store;
  // The king square is meaningful only with exactly one king, which Validate checks below.
  bool kings_present = (sides[side].all & SquareBit(sides[side].king_square)) &&
                       squares[sides[side].king_square] == MakePiece(side, KING);
  state.in_check = kings_present && IsInCheck(*this);
  key_history[0] = ComputeKey();
  state.pawn_key = ComputePawnKey();
  return Validate();
}

bool Board::Validate() const {
  int kings[2] = {0, 0}, pawns[2] = {0, 0};
  for (Square s = 0; s < 64; ++s) {
    Piece p = squares[s];
    if (TypeOf(p) == KING) ++kings[ColorOf(p)];
    if (TypeOf(p) == PAWN) {
      ++pawns[ColorOf(p)];
      if (RankOf(s) == 0 || RankOf(s) == 7) return false;
    }
  }
  if (kings[WHITE] != 1 || kings[BLACK] != 1) return false;
  if (pawns[WHITE] > 14 || pawns[BLACK] > 14) return false;
  const BoardPlyState& state = plies[ply];
  int ep = state.ep_square;
  if (ep != 0) {
    int forward = side_to_move == BLACK ? 8 : -8;  // from the target towards the pawn
    if (RankOf(ep) != (side_to_move == BLACK ? 2 : 5)) return false;
    if (squares[ep] != 0 || squares[ep - forward] != 0) return false;
    if (squares[ep + forward] != MakePiece(side_to_move ^ 1, PAWN)) return false;
  }
  static constexpr int kRight[4] = {CASTLE_WHITE_SHORT, CASTLE_WHITE_LONG, CASTLE_BLACK_SHORT,
                                    CASTLE_BLACK_LONG};
  static constexpr Square kKing[4] = {4, 4, 60, 60};
  static constexpr Square kRook[4] = {7, 0, 63, 56};
  for (int i = 0; i < 4; ++i) {
    if (!(state.castling & kRight[i])) continue;
    Color c = i < 2 ? WHITE : BLACK;
    if (squares[kKing[i]] != MakePiece(c, KING) || squares[kRook[i]] != MakePiece(c, ROOK)) return false;
  }
  if (IsOpponentInCheck(*this)) return false;
  // No move gives check with more than two men, and the move generator relies on it.
  const Square king = sides[side_to_move].king_square;
  return PopCount(Attackers(*this, king) & sides[side_to_move ^ 1].all) <= 2;
}

std::string Board::DisplayText(bool show_details) const {
  static const char kLetters[] = " PNBRQK";
  const std::string separator = "    +---+---+---+---+---+---+---+---+\n";
  std::string text;
  for (int rank = 7; rank >= 0; --rank) {
    text += separator;
    text += "  ";
    text += char('1' + rank);
    text += " |";
    for (int file = 0; file < 8; ++file) {
      Piece p = squares[MakeSquare(file, rank)];
      text += ' ';
      if (p > 0) {
        text += '*';
        text += kLetters[p];
      } else {
        text += kLetters[-p];
        text += ' ';
      }
      text += '|';
    }
    text += '\n';
  }
  text += separator;
  text += "      a   b   c   d   e   f   g   h\n";
  if (show_details) {
    text += "castle possibilities: " + CastlingText() + "\n";
    text += std::string("side on move: ") + (side_to_move == WHITE ? "white" : "black") +
            "; en-passant square: " + EpText() + "\n";
  }
  return text;
}

void Board::Display(bool show_details) const { Out << DisplayText(show_details); }

std::string Board::CastlingText() const {
  static const char kLetters[] = "KQkq";
  std::string text;
  for (int i = 0; i < 4; ++i)
    if (plies[ply].castling & (1 << i)) text += kLetters[i];
  return text.empty() ? "none" : text;
}

std::string Board::EpText() const {
  int ep = plies[ply].ep_square;
  return ep == 0 ? "none" : SquareText(ep);
}

std::uint64_t Board::ComputeKey() const {
  std::uint64_t key = 0;
  for (Square s = 0; s < 64; ++s)
    if (squares[s] != 0) key ^= Tables.piece_keys[s][squares[s] + 6];
  if (side_to_move == BLACK) key ^= SIDE_KEY;
  const BoardPlyState& state = plies[ply];
  for (int i = 0; i < 4; ++i)
    if (state.castling & (1 << i)) key ^= CASTLE_KEYS[i];
  int ep = state.ep_square;
  if (ep != 0) key ^= ep < 24 ? Tables.ep_keys[0][ep - 16] : Tables.ep_keys[1][ep - 40];
  return key;
}

std::uint64_t Board::ComputePawnKey() const {
  std::uint64_t key = 0;
  for (Square s = 0; s < 64; ++s) {
    if (squares[s] == MakePiece(WHITE, PAWN)) key ^= Tables.piece_keys[s][0];
    if (squares[s] == MakePiece(BLACK, PAWN)) key ^= Tables.piece_keys[s][1];
  }
  return key;
}

bool Board::IsConsistent() const {
  if (ply < 0 || ply >= MAX_PLIES) return false;
  if (side_to_move != WHITE && side_to_move != BLACK) return false;
  if (key_history < key_store || key_history + ply >= key_store + KEY_STORE_SIZE) return false;
  Board fresh;
  int castling = plies[ply].castling, ep = plies[ply].ep_square;
  // Rebuild from the squares alone; an invalid position (e.g. a test setting one up) may still
  // be consistent, so SetPosition's verdict is not used.
  fresh.SetPosition(squares, side_to_move, ep, castling);
  for (Color c = 0; c < 2; ++c) {
    const BoardSide &a = sides[c], &b = fresh.sides[c];
    if (a.pawns != b.pawns || a.knights != b.knights || a.bishops != b.bishops || a.rooks != b.rooks ||
        a.queens != b.queens || a.all != b.all || a.king_square != b.king_square ||
        a.minor_units != b.minor_units || a.major_units != b.major_units)
      return false;
  }
  if (occupied != fresh.occupied || occupied_diag != fresh.occupied_diag ||
      occupied_file != fresh.occupied_file || occupied_anti != fresh.occupied_anti)
    return false;
  if (phase != fresh.phase) return false;
  const BoardPlyState& state = plies[ply];
  if (state.material != fresh.plies[0].material) return false;
  if (state.pawn_key != ComputePawnKey() || Key() != ComputeKey()) return false;
  if ((state.in_check != 0) != IsInCheck(*this)) return false;
  for (Color c = 0; c < 2; ++c) {
    const BoardSide& side = sides[c];
    Bitboard pieces[5] = {side.pawns, side.knights, side.bishops, side.rooks, side.queens};
    Bitboard seen = SquareBit(side.king_square);
    for (Bitboard b : pieces) {
      if (b & seen) return false;
      seen |= b;
    }
    if (seen != side.all) return false;
  }
  return (sides[WHITE].all & sides[BLACK].all) == 0;
}
