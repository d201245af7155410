// Retrograde analysis of endings of up to four men into distance to mate, as the signed bytes of
// the table files: 1..126 a win for the side to move (126 mate in one, one less per further move),
// 0 a draw, -1..-126 a loss (-126 mated now, one more per further move), 127 no legal position.
//
// The solver numbers positions its own way: the white king in the normal region (the triangle
// a1-d1-d4 without pawns, files a to d with them), then the black king and the other men on 64
// squares each, pawns on 48. Positions outside the region are read through their mirror image.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "small_position.h"

namespace ZephrinTablegen {

constexpr std::int8_t NO_POSITION = 127;

struct SolvedEnding {
  std::string name;
  Material material;
  bool pawns = false;
  std::uint64_t size = 0;   // positions per side to move
  int radix[MAX_MEN] = {};  // squares per slot: the region for the white king, 64 or 48 for the rest
  std::vector<std::int8_t> value[2];  // by side to move
};

// Every ending solved so far, by name; the smaller ones stay for the conversions into them.
using EndingLibrary = std::map<std::string, SolvedEnding>;

// The solver's number of a position whose white king is in the normal region.
std::uint64_t PositionNumber(const SolvedEnding& ending, const Square* squares);
// The squares of a position number; false when two men share a square.
bool PositionSquares(const SolvedEnding& ending, std::uint64_t number, Square* squares);
// The value of any position of the ending, mirrored into the normal region first; NO_POSITION
// for a pawn on its first or last rank.
std::int8_t Probe(const SolvedEnding& ending, const Square* squares, Color side_to_move);

// Solves the named ending, after the endings its captures and promotions lead to, unless the
// library has them already. Throws std::invalid_argument for a name ParseEndingName refuses.
const SolvedEnding& Solve(EndingLibrary& library, const std::string& name);

}  // namespace ZephrinTablegen
