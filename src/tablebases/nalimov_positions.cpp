#include "tablebases/nalimov_positions.h"

#include "tablebases/nalimov_ending_names.h"

namespace NalimovTablebases {

EndingMen MenOfEnding(int id) {
  EndingMen men{};
  int seen[2][5] = {};
  int list = -1;
  for (const char* c = ENDING_NAMES[id]; *c != 0; ++c) {
    if (*c == 'k') {
      ++list;
      continue;
    }
    const int man = ManOfLetter(*c);
    men.slots[list][men.count[list]++] = 3 * man + seen[list][man]++;
  }
  return men;
}

bool AttacksSquare(const TB_PIECE_LIST& by, const EndingMen& men, int list, int target, Bitboard occupied) {
  const Bitboard bit = SquareBit(target);
  if (Tables.king_attacks[by.squares[TB_KING_SLOT]] & bit) return true;
  for (int i = 0; i < men.count[list]; ++i) {
    const int slot = men.slots[list][i];
    const int s = by.squares[slot];
    Bitboard reach = 0;
    if (slot < TB_KNIGHT_SLOT) reach = Tables.pawn_attacks[list][s];
    else if (slot < TB_BISHOP_SLOT) reach = Tables.knight_attacks[s];
    else if (slot < TB_ROOK_SLOT) reach = Tables.bishop_lines[s];
    else if (slot < TB_QUEEN_SLOT) reach = Tables.rook_lines[s];
    else reach = Tables.queen_lines[s];
    const bool slider = slot >= TB_BISHOP_SLOT;
    if ((reach & bit) && (!slider || (Tables.between[s][target] & occupied) == 0)) return true;
  }
  return false;
}

}  // namespace NalimovTablebases
