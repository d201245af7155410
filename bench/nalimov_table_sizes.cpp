// Measures the size of each Nalimov table: one more than the largest index of a legal position.
// The scheme's ranges end in entries that no legal position takes (a queen checking the king on
// move, say), and the files stop before them. Indices grow with the number of the king pair, so
// the largest one lies at the king pair whose positions index highest: found with one placement
// per pair, then walked whole. Prints the rows of the table of endings.
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "board/attack_tables.h"
#include "tablebases/nalimov_ending_names.h"
#include "tablebases/nalimov_index.h"
#include "tablebases/nalimov_index_tables.h"
#include "tablebases/nalimov_positions.h"

using namespace NalimovTablebases;

namespace {

// The largest index of a legal placement with these kings, or -1 for none; the first one only
// when whole is false.
std::int64_t LargestIndex(int id, int side, int strong_king, int weak_king, bool ep, bool whole) {
  const IndexFunction index = IndexFunctionFor(id, side);
  std::int64_t largest = -1;
  ForEachPlacement(id, side, strong_king, weak_king, ep, [&](const TB_PIECE_LIST& s, const TB_PIECE_LIST& w, int e) {
    const std::int64_t i = std::int64_t(index(s, w, e, false));
    if (i > largest) largest = i;
    return whole;
  });
  return largest;
}

std::uint64_t TableSize(int id, int side) {
  const bool pawns = std::strchr(ENDING_NAMES[id], 'p') != nullptr;
  const bool ep = FullRange(id, side) != OrdinaryRange(id, side);
  std::int64_t best = -1;
  int best_m = 0, best_o = 0;
  for (int m = 0; m < 64; ++m) {
    for (int o = 0; o < 64; ++o) {
      if ((pawns ? KK_PAWN[m][o] : KK_PAWNLESS[m][o]) == NO_KING_PAIR) continue;
      const int strong = side == 0 ? m : o, weak = side == 0 ? o : m;
      const std::int64_t i = LargestIndex(id, side, strong, weak, ep, false);
      if (i > best) best = i, best_m = strong, best_o = weak;
    }
  }
  return std::uint64_t(LargestIndex(id, side, best_m, best_o, ep, true) + 1);
}

}  // namespace

int main() {
  InitAttackTables();
  for (int id = 1; id <= ENDING_COUNT; ++id) {
    std::printf("    {\"%s\", %llu, %llu},\n", ENDING_NAMES[id], (unsigned long long)TableSize(id, 0),
                (unsigned long long)TableSize(id, 1));
  }
  return 0;
}
