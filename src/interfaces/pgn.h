// Games as PGN text: the tags the program knows, the move text in SAN, and a reader that takes the
// first game of a file.
#pragma once

#include <istream>
#include <ostream>
#include <string>

#include "interfaces/user_board.h"

namespace ZephrinInterfaces {

struct PgnTags {
  std::string event = "?";
  std::string site = "?";
  std::string date = "????.??.??";
  std::string round = "-";
  std::string white = "?";
  std::string black = "?";
  std::string time_control = "?";
  std::string fen;  // as read; empty: the game starts from the initial position

  bool operator==(const PgnTags&) const = default;
};

// Writes the seven tags and Result, an empty line, the moves from the game's start in SAN with
// lines of about 70 characters, and the result. A game that didn't begin at the standard start
// also gets SetUp and FEN tags after Result, with its first position; tags.fen isn't used.
void WritePgn(const UserBoard& game, std::ostream& out, const PgnTags& tags);

// Reads the first game of the stream. On success game stands at the start of the game with all
// its moves in the next-move buffer, and tags holds the tags that were found. Raises
// UserBoard::io_error (unreadable text, or the end of the stream before a result),
// UserBoard::invalid_move or UserBoard::invalid_position; then game and tags are unchanged.
// Besides moves, comments and results, the reader passes over NAGs ("$1"), variations in
// parentheses and the annotation marks "!" and "?" behind a move.
void ReadPgn(UserBoard& game, std::istream& in, PgnTags& tags);

}  // namespace ZephrinInterfaces
