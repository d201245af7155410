// The walk of ForEachPlacement; included by nalimov_positions.h only.
#pragma once

namespace NalimovTablebases {

namespace placement_detail {

struct Walk {
  EndingMen men;
  int side;
  bool en_passant;
  TB_PIECE_LIST lists[2];
  Bitboard occupied;
  int ep_square;
};

inline bool IsPawnSlot(int slot) { return slot < TB_KNIGHT_SLOT; }

inline bool LegalAtEnd(const Walk& w) {
  const int mover = w.side;
  const int target = w.lists[1 - mover].squares[TB_KING_SLOT];
  return !AttacksSquare(w.lists[mover], w.men, mover, target, w.occupied);
}

// An en-passant placement: the pawn of the side not to move stepped twice onto its rank five
// (from the mover's view) beside a pawn of the mover.
inline int EnPassantSquare(const Walk& w) {
  const int mover = w.side, stepper = 1 - mover;
  const int rank = mover == 0 ? 4 : 3, behind = mover == 0 ? 8 : -8;
  for (int i = 0; i < w.men.count[stepper]; ++i) {
    const int slot = w.men.slots[stepper][i];
    const int s = w.lists[stepper].squares[slot];
    if (!IsPawnSlot(slot) || s >> 3 != rank) continue;
    if (w.occupied & (SquareBit(s + behind) | SquareBit(s + 2 * behind))) continue;
    for (int j = 0; j < w.men.count[mover]; ++j) {
      const int c = w.lists[mover].squares[w.men.slots[mover][j]];
      const int df = (c & 7) - (s & 7);
      if (IsPawnSlot(w.men.slots[mover][j]) && c >> 3 == rank && (df == 1 || df == -1)) return s + behind;
    }
  }
  return TB_NO_EP_SQUARE;
}

// False once visit has asked to stop.
template <class Visit>
bool Place(Walk& w, int list, int index, Visit& visit) {
  if (index == w.men.count[list]) {
    if (list == 0) return Place(w, 1, 0, visit);
    if (!LegalAtEnd(w)) return true;
    const int ep = w.en_passant ? EnPassantSquare(w) : TB_NO_EP_SQUARE;
    if (w.en_passant && ep == TB_NO_EP_SQUARE) return true;
    return visit(w.lists[0], w.lists[1], ep);
  }
  const int slot = w.men.slots[list][index];
  const bool pawn = IsPawnSlot(slot);
  // Two men of a kind stand in ascending order.
  const bool follows = index > 0 && w.men.slots[list][index - 1] == slot - 1;
  int from = pawn ? 8 : 0;
  if (follows) from = w.lists[list].squares[slot - 1] + 1;
  for (int s = from; s < (pawn ? 56 : 64); ++s) {
    if (w.occupied & SquareBit(s)) continue;
    w.lists[list].squares[slot] = s;
    w.occupied |= SquareBit(s);
    const bool go_on = Place(w, list, index + 1, visit);
    w.occupied &= ~SquareBit(s);
    if (!go_on) return false;
  }
  return true;
}

}  // namespace placement_detail

template <class Visit>
void ForEachPlacement(int id, int side, int strong_king, int weak_king, bool en_passant, Visit&& visit) {
  placement_detail::Walk w{MenOfEnding(id), side, en_passant, {}, 0, TB_NO_EP_SQUARE};
  w.lists[0].squares[TB_KING_SLOT] = strong_king;
  w.lists[1].squares[TB_KING_SLOT] = weak_king;
  w.occupied = SquareBit(strong_king) | SquareBit(weak_king);
  placement_detail::Place(w, 0, 0, visit);
}

}  // namespace NalimovTablebases
