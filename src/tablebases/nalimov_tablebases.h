// The Nalimov tablebases as the program uses them: registration of the table files of a path,
// and the look-up of a board's distance to mate.
#pragma once

#include <cstdint>
#include <string>

#include "board/board.h"
#include "frame/zephrin_exception.h"

namespace NalimovTablebases {

// A failed initialisation, with its reason.
class NalimovException : public ZephrinException {
 public:
  using ZephrinException::ZephrinException;
};

// Registers the table files of the directories in paths (separated by ",", ":" or ";") and returns
// the most men of an ending with a file: 0, 3, 4 or 5. A broken file ends the program.
int RegisterTablebases(const std::string& paths);

// Registers the files of path and sets up a cache of size bytes. Throws NalimovException when no
// file is found or the cache is too small for a slot header.
void InitNalimovTablebases(const std::string& path, std::uint64_t size);

// The score of a value read from a table, from the side to move's view: false for an entry that
// can't be read or that no position takes.
bool ScoreOfValue(int value, int& score);

// The distance-to-mate score of the board from the side to move's view; false when no table
// answers. The board has neither castling rights nor an en-passant square.
bool LookupTablebase(const Board& board, int& score);

}  // namespace NalimovTablebases
