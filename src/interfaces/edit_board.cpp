#include "interfaces/edit_board.h"

#include <algorithm>

namespace ZephrinInterfaces {

namespace {

constexpr Square E1 = 4, A1 = 0, H1 = 7;
constexpr Square E8 = 60, A8 = 56, H8 = 63;

}  // namespace

EditBoard::EditBoard(Color side_to_move) : side(side_to_move) {}

EditBoard::EditBoard(const Board& position)
    : side(position.side_to_move), castling(position.State().castling) {
  std::copy(position.squares, position.squares + 64, squares);
  if (position.Validate()) {
    board = position;
    status = EDIT_BOARD_VALID;
  }
}

void EditBoard::SetPiece(Square square, Piece piece) {
  const Piece placed = black_pieces ? Piece(-piece) : piece;
  if (squares[square] == placed) return;
  squares[square] = placed;
  castling = -1;
  status = EDIT_BOARD_CHANGED;
}

void EditBoard::Clear() {
  std::fill(squares, squares + 64, Piece{0});
  castling = -1;
  status = EDIT_BOARD_INVALID;
}

int EditBoard::Castling() {
  if (castling != -1) return castling;
  const auto holds = [this](Square square, PieceType type, Color color) {
    return squares[square] == MakePiece(color, type);
  };
  castling = 0;
  if (holds(E1, KING, WHITE)) {
    if (holds(H1, ROOK, WHITE)) castling |= CASTLE_WHITE_SHORT;
    if (holds(A1, ROOK, WHITE)) castling |= CASTLE_WHITE_LONG;
  }
  if (holds(E8, KING, BLACK)) {
    if (holds(H8, ROOK, BLACK)) castling |= CASTLE_BLACK_SHORT;
    if (holds(A8, ROOK, BLACK)) castling |= CASTLE_BLACK_LONG;
  }
  return castling;
}

bool EditBoard::IsValid() {
  if (status == EDIT_BOARD_CHANGED) {
    status = board.SetPosition(squares, side, 0, Castling()) ? EDIT_BOARD_VALID : EDIT_BOARD_INVALID;
  }
  return status == EDIT_BOARD_VALID;
}

const Board& EditBoard::Position() {
  if (!IsValid()) throw invalid_position();
  return board;
}

std::string EditBoard::DisplayText(bool details) const {
  if (status == EDIT_BOARD_VALID) return board.DisplayText(details);
  // Not validated: a record filled from the squares serves for the diagram alone.
  Board unchecked;
  EditBoard copy(*this);
  unchecked.SetPosition(squares, side, 0, copy.Castling());
  return unchecked.DisplayText(details);
}

}  // namespace ZephrinInterfaces
