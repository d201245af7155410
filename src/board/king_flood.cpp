#include "board/king_flood.h"

#include "board/bitboard.h"

namespace {

Bitboard KingSteps(Bitboard b) {
  const Bitboard sideways = ((b << 1) & ~FILE_A) | ((b >> 1) & ~FILE_H) | b;
  return sideways | (sideways << 8) | (sideways >> 8);
}

Bitboard PawnAttackSet(Bitboard pawns, Color c) {
  Bitboard result = 0;
  for (Bitboard b = pawns; b;) result |= Tables.pawn_attacks[c][PopFirstBit(b)];
  return result;
}

}  // namespace

void KingFlood(const Board& board, Bitboard result[2], Bitboard white_runners, Bitboard black_runners) {
  const BoardSide* sides = board.sides;
  Bitboard cover[2], wall[2];
  for (Color c = 0; c < 2; ++c) cover[c] = Tables.king_attacks[sides[c].king_square];
  for (Color c = 0; c < 2; ++c)
    wall[c] = sides[c].pawns | cover[c ^ 1] | PawnAttackSet(sides[c ^ 1].pawns, c ^ 1);
  // Each king must stay inside the square of the other side's runners.
  for (Bitboard b = white_runners; b;) wall[BLACK] |= ~Tables.pawn_square[WHITE][WHITE][PopFirstBit(b)];
  for (Bitboard b = black_runners; b;) wall[WHITE] |= ~Tables.pawn_square[BLACK][BLACK][PopFirstBit(b)];
  for (Color c = 0; c < 2; ++c) result[c] = SquareBit(sides[c].king_square);

  const Color s = board.side_to_move, o = s ^ 1;
  Bitboard before[2];
  do {
    before[0] = result[0];
    before[1] = result[1];
    for (Color c = 0; c < 2; ++c) cover[c] = KingSteps(result[c]);
    result[s] |= cover[s] & ~wall[s] & ~(sides[o].pawns & cover[o]);
    wall[o] |= cover[s];
    wall[s] |= cover[o];
    result[o] |= cover[o] & ~wall[o] & ~(sides[s].pawns & cover[s]);
  } while (result[0] != before[0] || result[1] != before[1]);
}
