// A position being set up piece by piece: a working copy of the squares, the side to move and the
// castling rights, and the checked position once the working copy has been found legal.
#pragma once

#include <cstdint>
#include <string>

#include "board/board.h"
#include "frame/zephrin_exception.h"

namespace ZephrinInterfaces {

constexpr int EDIT_BOARD_VALID = 0;    // `board` is checked and up to date
constexpr int EDIT_BOARD_INVALID = 1;  // known to be illegal
constexpr int EDIT_BOARD_CHANGED = 2;  // changed since the last check

struct EditBoard {
  class invalid_position : public ZephrinException {
   public:
    invalid_position() : ZephrinException("Illegal position") {}
  };

  // The empty board with the given side to move.
  explicit EditBoard(Color side_to_move = WHITE);
  // The squares, side and rights of a position; valid if the position is.
  explicit EditBoard(const Board& position);

  // Puts a piece (a signed Piece, 0 for empty) on a square; the colour flips while black_pieces is
  // set. A change drops the castling rights to those the squares allow.
  void SetPiece(Square square, Piece piece);
  void Clear();
  // The rights, worked out from the squares after a change: king and rook on their home squares.
  int Castling();
  // Checks a changed position; true if the position is legal.
  bool IsValid();
  // The checked position; raises invalid_position if it is illegal.
  const Board& Position();
  // The diagram of the position as it stands, legal or not.
  std::string DisplayText(bool details) const;

  int status = EDIT_BOARD_INVALID;
  Board board;
  Piece squares[64] = {};
  Color side = WHITE;
  bool black_pieces = false;  // pieces are set in Black's colour
  int castling = -1;          // -1 while to be worked out from the squares
};

}  // namespace ZephrinInterfaces
