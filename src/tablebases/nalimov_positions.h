// The legal placements of an ending's men around a given pair of kings, with the strong side
// white: what the table sizes are measured on, and what a check of the index functions walks.
#pragma once

#include <cstdint>

#include "board/attack_tables.h"
#include "tablebases/nalimov_ending.h"

namespace NalimovTablebases {

// The men of one side of an ending by slot, in name order: up to three.
struct EndingMen {
  int slots[2][3];
  int count[2];
};

EndingMen MenOfEnding(int id);

// Whether the men of `by` attack square target; occupied holds every man on the board.
bool AttacksSquare(const TB_PIECE_LIST& by, const EndingMen& men, int list, int target, Bitboard occupied);

// Calls visit(strong, weak, ep_square), which returns false to stop, for every legal placement of the men with the kings on
// their squares: men on distinct free squares, pawns off the first and last ranks, and the king
// of the side not to move (side 0: black, the weak side) not in check. With en_passant, only
// placements where the side not to move has just stepped a pawn twice beside a pawn of the mover,
// with the square passed and the start square empty.
template <class Visit>
void ForEachPlacement(int id, int side, int strong_king, int weak_king, bool en_passant, Visit&& visit);

}  // namespace NalimovTablebases

#include "tablebases/nalimov_positions_impl.h"
