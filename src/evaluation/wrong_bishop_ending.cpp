#include "evaluation/wrong_bishop_ending.h"

#include "board/bitboard.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/position_type.h"

namespace {

// By the defending king's distance to the corner, 2 to 7, and the strong king's, 0 to 7.
constexpr int WEAK_KING_TO_CORNER[6] = {-20, 10, 20, 30, 50, 90};
constexpr int STRONG_KING_TO_CORNER[8] = {80, 80, 10, 0, -10, -20, -25, -30};
// Each pawn by its rank (rank two is 1).
constexpr int PAWN_BY_RANK[7] = {0, 50, 52, 55, 62, 76, 90};

}  // namespace

int WrongBishopEnding(const BoardSide& strong, Square weak_king, bool is_black) {
  const Color c = is_black ? BLACK : WHITE;
  int v = 835;
  const Bitboard pawns = strong.pawns;
  const bool one_rook_file = pawns != 0 && ((pawns & ~FILE_A) == 0 || (pawns & ~FILE_H) == 0);
  if (one_rook_file) {
    const Square corner = RelativeSquare(MakeSquare(FileOf(FirstBit(pawns)), 7), c);
    const Bitboard corner_colour = (SquareBit(corner) & LIGHT_SQUARES) != 0 ? LIGHT_SQUARES : DARK_SQUARES;
    if ((strong.bishops & corner_colour) == 0) {
      int d = Tables.king_distance[corner][weak_king];
      if (d < 2) return 0;
      int e = Tables.king_distance[corner][strong.king_square];
      v = 315 + WEAK_KING_TO_CORNER[d - 2] + STRONG_KING_TO_CORNER[e];
    }
  }
  for (Bitboard p = pawns; p != 0;) v += PAWN_BY_RANK[RelativeRank(PopFirstBit(p), c)];
  return v;
}
