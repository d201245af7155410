// Reading and writing positions as FEN text.
#pragma once

#include <string>

#include "board/board.h"
#include "frame/zephrin_exception.h"

namespace ZephrinInterfaces {

// Malformed FEN text: wrong number of fields, bad characters, numbers out of range.
class fen_io_error : public ZephrinException {
 public:
  using ZephrinException::ZephrinException;
};

// Well-formed text describing a position that SetPosition refuses.
class fen_invalid_position : public ZephrinException {
 public:
  using ZephrinException::ZephrinException;
};

struct FenCounts {
  int half_move_count = 0;    // 0..100; the Board's reversible count is set from it
  int full_move_number = 1;   // as written in the text, 0 read as 1
  int first_ply = 0;          // 2 * (full_move_number - 1), plus 1 with Black to move
};

// Reads six blank-separated fields into board. Throws fen_io_error or fen_invalid_position and
// then leaves board unchanged. On success board is at ply 0 with SetReversibleCount applied.
FenCounts ReadFen(const std::string& text, Board& board);
inline void ReadFen(const std::string& text, Board& board, int& first_ply) {
  first_ply = ReadFen(text, board).first_ply;
}

// The six fields; the half-move count comes from the board's reversible count.
std::string BoardToFen(const Board& board, int full_move_number);

}  // namespace ZephrinInterfaces
