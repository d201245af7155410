// Edit mode: a position set up piece by piece in a loop of its own, with its small vocabulary.
// No other command runs while the loop reads its lines.
#pragma once

#include <functional>
#include <string>

#include "board/board.h"
#include "interfaces/user_board.h"

namespace ZephrinInterfaces {

class BasicProtocol;

// The words of edit mode, by the code that ReadEditWord returns.
enum EditCommandCode : int {
  EDIT_CLEAR_BOARD = 0,   // "#"
  EDIT_CHANGE_COLOR = 1,  // "c": pieces are set in the other colour from now on
  EDIT_PUT_PIECE = 2,     // "Pe4", "ne5", ...
  EDIT_CLEAR_SQUARE = 3,  // "xe4"
  EDIT_RESTORE = 4,       // back to the game's position
  EDIT_CHANGE_SIDE = 5,   // "s"
  EDIT_FINISH = 6,        // "."
  EDIT_CANCEL = 7,
  EDIT_HELP = 8,
  EDIT_VERIFY = 9,
  EDIT_DISPLAY = 10,
  EDIT_QUIT = 11,
  EDIT_UNKNOWN = -1,
};

// What a command that prepares a new position for the game comes to.
enum BoardSetupOutcome : int {
  SETUP_ACCEPTED = 0,
  SETUP_INVALID = 1,
  SETUP_CANCELLED = 2,
};

using LineReader = std::function<std::string()>;

// The code of one token; square and piece are filled for EDIT_PUT_PIECE and EDIT_CLEAR_SQUARE.
int EditWordCode(const std::string& token, Square& square, PieceType& piece);

// Prompts and reads lines until one holds a single known word, and returns its code. Lines that
// can't be tokenized and unknown words are reported; lines of more or fewer words are passed over.
int ReadEditWord(BasicProtocol& protocol, const LineReader& read_line, Square& square, PieceType& piece);

// The edit loop, starting from the game's position. On SETUP_ACCEPTED `result` holds the new
// position as a game without history. "quit" raises quit_command_received_exception.
int RunEditLoop(BasicProtocol& protocol, const Board& game_position, UserBoard& result,
                const LineReader& read_line);

}  // namespace ZephrinInterfaces
