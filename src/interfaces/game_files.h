// Positions and games in files: what `read_fen`, `write_fen`, `read_pgn` and `write_pgn` do
// once their command has been checked. Failures raise game_file_error, whose text is the reason
// the user reads; a failed read leaves nothing changed, since it works on a fresh game.
#pragma once

#include <istream>
#include <ostream>
#include <string>

#include "frame/zephrin_exception.h"
#include "interfaces/pgn.h"
#include "interfaces/user_board.h"

namespace ZephrinInterfaces {

class game_file_error : public ZephrinException {
 public:
  using ZephrinException::ZephrinException;
};

// The FEN of the current position and a newline.
void WriteFenFile(const UserBoard& game, std::ostream& out);
// Six words from the stream as a FEN; raises UserBoard::io_error or invalid_position.
void ReadFenFile(UserBoard& game, std::istream& in);

// "could not open file", "could not write FEN file".
void SaveFen(const std::string& file_name, const UserBoard& game);
// "could not open file", "could not read FEN file", "Illegal position".
UserBoard LoadFen(const std::string& file_name);

// The game with fresh tags, but the players' names; "could not open file", "could not write PGN
// file".
void SavePgn(const std::string& file_name, const UserBoard& game, const std::string& white_name,
             const std::string& black_name);
// The first game of the file, standing at its start with its moves in the next-move buffer;
// "could not open file", "could not read PGN file", "Illegal move", "Illegal position".
UserBoard LoadPgn(const std::string& file_name, PgnTags& tags);

// The tags that `read_pgn` shows: name, a tab, the quoted value and a newline, for Event, Site,
// Date, Round, White, Black and TimeControl.
std::string PgnTagsText(const PgnTags& tags);

}  // namespace ZephrinInterfaces
