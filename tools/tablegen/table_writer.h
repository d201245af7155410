// Lays a solved ending out as a Nalimov table file: one signed byte per entry, each legal
// position's value at the place the ending's index function gives it, 127 where no legal position
// falls. The index functions and the solver number positions independently, so the layout checks
// both: an index past the table, or two positions in one entry with different values, is a fault.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "retrograde_solver.h"

namespace ZephrinTablegen {

struct table_fault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// What one side's table holds, counted over its entries.
struct TableCounts {
  std::uint64_t positions = 0, wins = 0, draws = 0, losses = 0;
  int longest_mate = 0;  // in moves, for the side to move
};

// The table of one side (0: the first-named side, white, to move; 1: black to move) of the
// Nalimov ending `id`, which must be the solved ending. Throws table_fault.
std::vector<signed char> LayOutTable(const SolvedEnding& ending, int id, int side, TableCounts& counts);

// Writes the bytes to path; throws table_fault when that fails.
void WriteFile(const std::string& path, const unsigned char* bytes, std::size_t size);

}  // namespace ZephrinTablegen
