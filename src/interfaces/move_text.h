// The text forms of a move: coordinate notation, SAN and long algebraic notation, and the one
// forgiving reader that takes a typed, sent or recorded move.
#pragma once

#include <string>

#include "board/types.h"
#include "interfaces/game_board.h"

namespace ZephrinInterfaces {

enum MoveNotation : int {
  NOTATION_COORDINATE = 0,  // "e2e4", "e7e8N"
  NOTATION_SAN = 1,         // "e4", "Nbd2", "exd8=Q+"
  NOTATION_LONG = 2,        // "Pe2-e4", "Ng1xf3+"
};

// The notation in which the program writes moves.
constexpr MoveNotation CURRENT_NOTATION = NOTATION_SAN;

enum ParseMoveResult : int {
  PARSE_OK = 0,
  PARSE_AMBIGUOUS = 1,
  PARSE_NO_MATCH = 2,        // no move of the position fits the text
  PARSE_INVALID_MOVE = 3,    // a castling that can't be played
  PARSE_GAME_OVER = 4,
  PARSE_SYNTAX_ERROR = 5,
};

// Reads coordinate notation ("e2e4", "e7e8q", "e7e8=Q") or SAN, loosely: piece letters in either
// case except a lower-case "b", which is always a file; "x" or ":" for captures; castling with
// "O", "o" or "0". On PARSE_OK move holds the generator's word for the move.
ParseMoveResult ParseMove(const GameBoard& board, const std::string& text, Move& move);

// The text of a legal move of the position.
std::string MoveToText(const GameBoard& board, Move move, MoveNotation notation = CURRENT_NOTATION);

}  // namespace ZephrinInterfaces
