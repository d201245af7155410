// The 220 index functions of the Nalimov endings, all made from one scheme: normalise the board by
// the mover's king, number the pair of kings, then add the mover's men by their rank among the
// squares that may hold them, and the other side's men by the squares left to them.
#pragma once

#include <cstdint>

#include "tablebases/nalimov_ending.h"

namespace NalimovTablebases {

IndexFunction IndexFunctionFor(int id, int side);

// The number of ordinary entries, and of all entries, en passant included, that the scheme gives
// one side of an ending: the end of its index range before illegal entries at its end are cut.
std::uint64_t OrdinaryRange(int id, int side);
std::uint64_t FullRange(int id, int side);

}  // namespace NalimovTablebases
