#include "table_writer.h"

#include <algorithm>
#include <fstream>

#include "tablebases/nalimov_ending.h"

namespace ZephrinTablegen {

namespace {

using NalimovTablebases::TB_PIECE_LIST;

// The men of one colour by kind, slots of a kind in ascending square order.
TB_PIECE_LIST PieceList(const Material& m, const Square* squares, Color colour) {
  TB_PIECE_LIST list{};
  int used[6] = {};
  for (int i = 0; i < m.count; ++i) {
    if (m.colour[i] != colour) continue;
    if (m.type[i] == KING) {
      list.squares[NalimovTablebases::TB_KING_SLOT] = squares[i];
      continue;
    }
    std::int32_t* kind = list.squares + 3 * (m.type[i] - PAWN);
    int at = used[m.type[i]]++;
    for (; at > 0 && kind[at - 1] > squares[i]; --at) kind[at] = kind[at - 1];
    kind[at] = squares[i];
  }
  return list;
}

void Count(TableCounts& counts, int v) {
  ++counts.positions;
  if (v > 0) {
    ++counts.wins;
    counts.longest_mate = std::max(counts.longest_mate, 127 - v);
  } else {
    ++(v == 0 ? counts.draws : counts.losses);
  }
}

}  // namespace

std::vector<signed char> LayOutTable(const SolvedEnding& ending, int id, int side, TableCounts& counts) {
  const NalimovTablebases::TB_ENDING& layout = NalimovTablebases::Ending(id);
  const std::uint64_t size = layout.sizes[side];
  std::vector<signed char> table(size, NO_POSITION);
  const Material& m = ending.material;
  for (std::uint64_t number = 0; number < ending.size; ++number) {
    const int v = ending.value[side][number];
    Square squares[MAX_MEN];
    if (v == NO_POSITION || !PositionSquares(ending, number, squares)) continue;
    // Every image of the position: the index functions normalise on the side to move's king,
    // the solver on the white king.
    for (int symmetry = 0; symmetry < (ending.pawns ? 2 : 8); ++symmetry) {
      Square image[MAX_MEN];
      for (int i = 0; i < m.count; ++i) image[i] = Transform(squares[i], symmetry);
      const std::uint64_t index = layout.index[side](PieceList(m, image, WHITE), PieceList(m, image, BLACK),
                                                     NalimovTablebases::TB_NO_EP_SQUARE, false);
      if (index >= size)
        throw table_fault(ending.name + ": index " + std::to_string(index) + " past the table of " +
                          std::to_string(size));
      signed char& entry = table[index];
      if (entry == NO_POSITION) {
        entry = static_cast<signed char>(v);
        Count(counts, v);
      } else if (entry != v) {
        throw table_fault(ending.name + ": entry " + std::to_string(index) + " holds " + std::to_string(entry) +
                          " and " + std::to_string(v));
      }
    }
  }
  return table;
}

void WriteFile(const std::string& path, const unsigned char* bytes, std::size_t size) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes), std::streamsize(size));
  file.close();
  if (!file) throw table_fault("cannot write " + path);
}

}  // namespace ZephrinTablegen
