#include "interfaces/edit_mode.h"

#include <cctype>

#include "frame/control_exceptions.h"
#include "frame/string_conversions.h"
#include "frame/tee_stream.h"
#include "frame/tokenizer.h"
#include "interfaces/basic_protocol.h"
#include "interfaces/command.h"
#include "interfaces/edit_board.h"

namespace ZephrinInterfaces {

namespace {

// The whole words of the vocabulary, in the order in which they are compared.
struct EditWord {
  const char* word;
  int code;
};
constexpr EditWord EDIT_WORDS[] = {
    {"#", EDIT_CLEAR_BOARD}, {"c", EDIT_CHANGE_COLOR}, {"restore", EDIT_RESTORE}, {"s", EDIT_CHANGE_SIDE},
    {".", EDIT_FINISH},      {"cancel", EDIT_CANCEL},  {"help", EDIT_HELP},       {"verify", EDIT_VERIFY},
    {"display", EDIT_DISPLAY}, {"quit", EDIT_QUIT},
};

// The piece type of a letter of "PNBRQK" in either case; NO_PIECE for "X", the empty square.
bool PieceOfLetter(char letter, PieceType& piece) {
  static const std::string LETTERS = "XPNBRQK";
  const std::size_t index = LETTERS.find(char(std::toupper(static_cast<unsigned char>(letter))));
  if (index == std::string::npos) return false;
  piece = PieceType(index);
  return true;
}

void ShowBoard(BasicProtocol& protocol, const EditBoard& board) { protocol.ShowEditBoard(board); }

}  // namespace

int EditWordCode(const std::string& token, Square& square, PieceType& piece) {
  for (const EditWord& entry : EDIT_WORDS) {
    if (token == entry.word) return entry.code;
  }
  if (token.size() != 3 || !PieceOfLetter(token[0], piece)) return EDIT_UNKNOWN;
  const std::optional<Square> target = ParseSquare(token.substr(1));
  if (!target) return EDIT_UNKNOWN;
  square = *target;
  return piece == NO_PIECE ? EDIT_CLEAR_SQUARE : EDIT_PUT_PIECE;
}

int ReadEditWord(BasicProtocol& protocol, const LineReader& read_line, Square& square, PieceType& piece) {
  while (true) {
    protocol.ShowEditPrompt();
    const std::string line = read_line();
    TokenizedLine tokenized;
    try {
      tokenized = TokenizeLine(line);
    } catch (const ZephrinUtils::tokenize_exception&) {
      protocol.ReportError(ErrorCommand(ErrorCommand::ERROR, "could not tokenize the input string", line).Text());
      continue;
    }
    if (tokenized.tokens.size() != 1) continue;
    const int code = EditWordCode(tokenized.tokens[0], square, piece);
    if (code != EDIT_UNKNOWN) return code;
    protocol.ReportError(ErrorCommand(ErrorCommand::ERROR, "unknown command", line).Text());
  }
}

int RunEditLoop(BasicProtocol& protocol, const Board& game_position, UserBoard& result,
                const LineReader& read_line) {
  EditBoard board(game_position);
  while (true) {
    Square square = 0;
    PieceType piece = NO_PIECE;
    switch (ReadEditWord(protocol, read_line, square, piece)) {
      case EDIT_CLEAR_BOARD:
        board.Clear();
        ShowBoard(protocol, board);
        break;
      case EDIT_CHANGE_COLOR:
        board.black_pieces = !board.black_pieces;
        break;
      case EDIT_PUT_PIECE:
        board.SetPiece(square, Piece(piece));
        ShowBoard(protocol, board);
        break;
      case EDIT_CLEAR_SQUARE:
        board.SetPiece(square, 0);
        ShowBoard(protocol, board);
        break;
      case EDIT_RESTORE:
        board = EditBoard(game_position);
        ShowBoard(protocol, board);
        break;
      case EDIT_CHANGE_SIDE:
        board.side ^= 1;
        board.status = EDIT_BOARD_CHANGED;
        ShowBoard(protocol, board);
        break;
      case EDIT_FINISH:
        if (board.IsValid()) {
          result.SetPosition(board.Position());
          return SETUP_ACCEPTED;
        }
        // A front end can't be asked again: the caller deals with the illegal position.
        if (!protocol.IsInteractive()) return SETUP_INVALID;
        protocol.ShowCommandIgnored("Illegal position");
        break;
      case EDIT_CANCEL:
        return SETUP_CANCELLED;
      case EDIT_HELP:
        protocol.PrintEditHelp();
        break;
      case EDIT_VERIFY:
        Out << "Current position is " << (board.IsValid() ? "valid" : "invalid") << "\n";
        Out.Flush();
        break;
      case EDIT_DISPLAY:
        Out << board.DisplayText(true);
        Out.Flush();
        break;
      case EDIT_QUIT:
        throw quit_command_received_exception();
    }
  }
}

}  // namespace ZephrinInterfaces
