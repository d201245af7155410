#include "evaluation/position_type.h"

#include <algorithm>

#include "board/bitboard.h"

namespace {

constexpr int MIDDLEGAME_MATERIAL = 22;

constexpr Bitboard Bit(int file, int rank) { return SquareBit(MakeSquare(file, rank)); }

// Knights on b1, g1 and bishops on c1, f1, seen from each colour's back rank.
constexpr Bitboard KNIGHT_HOMES[2] = {Bit(1, 0) | Bit(6, 0), Bit(1, 7) | Bit(6, 7)};
constexpr Bitboard BISHOP_HOMES[2] = {Bit(2, 0) | Bit(5, 0), Bit(2, 7) | Bit(5, 7)};

bool HasCastlingRight(const Board& board, Color colour) {
  return (board.State().castling & CASTLE_RIGHTS_OF[colour]) != 0;
}

// The opening lasts while development is unfinished; the two sides are judged in turn.
PositionType OpeningOrMiddlegame(const Board& board) {
  const BoardSide& white = board.sides[WHITE];
  const BoardSide& black = board.sides[BLACK];

  bool white_done;
  if ((white.knights & KNIGHT_HOMES[WHITE]) != 0) {
    white_done = false;
  } else {
    Bitboard home_bishops = white.bishops & BISHOP_HOMES[WHITE];
    if (!HasCastlingRight(board, WHITE)) {
      if (home_bishops == 0) return POSITION_MIDDLEGAME;
      white_done = home_bishops != BISHOP_HOMES[WHITE];
    } else {
      white_done = home_bishops == 0;
    }
  }

  if ((black.knights & KNIGHT_HOMES[BLACK]) != 0) {
    if (!white_done) return POSITION_OPENING;
  } else {
    Bitboard home_bishops = black.bishops & BISHOP_HOMES[BLACK];
    if (!HasCastlingRight(board, BLACK)) {
      if (home_bishops == 0) return POSITION_MIDDLEGAME;
      if (home_bishops == BISHOP_HOMES[BLACK] && !white_done) return POSITION_OPENING;
    } else if (home_bishops != 0 && !white_done) {
      return POSITION_OPENING;
    }
  }

  if (PopCount(white.pawns) > 6) return POSITION_OPENING;
  return PopCount(black.pawns) < 7 ? POSITION_MIDDLEGAME : POSITION_OPENING;
}

// One side has none of the piece and the other has it, without pawns of its own.
bool PawnlessOwner(const Board& board, PieceType type) {
  for (Color c : {WHITE, BLACK}) {
    if (board.sides[c].pawns == 0 && board.sides[c].Pieces(type) != 0) return true;
  }
  return false;
}

bool EachSideHas(const Board& board, PieceType type) {
  return board.sides[WHITE].Pieces(type) != 0 && board.sides[BLACK].Pieces(type) != 0;
}

bool OneSideEachHas(const Board& board, PieceType first, PieceType second) {
  const BoardSide* s = board.sides;
  return (s[WHITE].Pieces(first) != 0 && s[BLACK].Pieces(second) != 0) ||
         (s[BLACK].Pieces(first) != 0 && s[WHITE].Pieces(second) != 0);
}

// The material difference decides between the mating evaluator and the general one.
PositionType ByMaterialDifference(const Board& board) {
  int d = SidePoints(board.sides[WHITE]) - SidePoints(board.sides[BLACK]);
  if (board.sides[WHITE].pawns == 0) return d < -4 ? POSITION_MATING : POSITION_OTHER_ENDGAME;
  if (board.sides[BLACK].pawns == 0) return d < 5 ? POSITION_OTHER_ENDGAME : POSITION_MATING;
  return POSITION_OTHER_ENDGAME;
}

// The endgames with few pieces that have a type of their own, told apart by their exact phase.
// Returns NO_POSITION_TYPE when no case applies; unequal rooks set skip_equal_test, because such a
// position goes to the material difference at once.
PositionType SpecialEndgame(const Board& board, bool& skip_equal_test) {
  const BoardSide& white = board.sides[WHITE];
  const BoardSide& black = board.sides[BLACK];
  switch (board.phase) {
    case 0:
      return POSITION_PAWN_ENDING;
    case 3:
      if (PawnlessOwner(board, KNIGHT)) return POSITION_LONE_KNIGHT;
      if (PawnlessOwner(board, BISHOP)) return POSITION_LONE_BISHOP;
      break;
    case 5:
      if (PawnlessOwner(board, ROOK)) return POSITION_LONE_ROOK;
      break;
    case 6:
      if (EachSideHas(board, KNIGHT)) return POSITION_KNIGHT_KNIGHT;
      if (EachSideHas(board, BISHOP)) {
        Bitboard bishops = white.bishops | black.bishops;
        bool both_colours = (bishops & LIGHT_SQUARES) != 0 && (bishops & DARK_SQUARES) != 0;
        return both_colours ? POSITION_OPPOSITE_BISHOPS : POSITION_SAME_BISHOPS;
      }
      if (OneSideEachHas(board, KNIGHT, BISHOP)) return POSITION_KNIGHT_BISHOP;
      break;
    case 8:
      if ((white.major_units == 1 && black.minor_units == 3) ||
          (black.major_units == 1 && white.minor_units == 3)) {
        return POSITION_ROOK_MINOR;
      }
      break;
    case 9:
      if (PawnlessOwner(board, QUEEN)) return POSITION_LONE_QUEEN;
      break;
    case 10:
    case 20:
      if (EachSideHas(board, ROOK)) {
        if (white.major_units == black.major_units) return POSITION_ROOK_ENDING;
        skip_equal_test = true;
      }
      break;
    case 14:
      if (OneSideEachHas(board, QUEEN, ROOK)) return POSITION_QUEEN_ROOK;
      break;
    case 18:
      if (EachSideHas(board, QUEEN)) return POSITION_QUEEN_ENDING;
      break;
    default:
      break;
  }
  return NO_POSITION_TYPE;
}

}  // namespace

int MaterialTestValue(const Board& board) {
  int top = std::max(SidePoints(board.sides[WHITE]), SidePoints(board.sides[BLACK]));
  bool queen = (board.sides[WHITE].queens | board.sides[BLACK].queens) != 0;
  return queen ? top + 3 : top;
}

PositionType ClassifyPosition(const Board& board, PositionType previous_type) {
  const BoardSide& white = board.sides[WHITE];
  const BoardSide& black = board.sides[BLACK];
  if ((white.pawns | black.pawns) == 0) return POSITION_MATING;

  if (MaterialTestValue(board) >= MIDDLEGAME_MATERIAL) {
    if (previous_type == POSITION_MIDDLEGAME) return POSITION_MIDDLEGAME;
    return OpeningOrMiddlegame(board);
  }

  bool skip_equal_test = false;
  if (board.phase < 21) {
    PositionType special = SpecialEndgame(board, skip_equal_test);
    if (special != NO_POSITION_TYPE) return special;
  }
  if (!skip_equal_test && white.major_units == black.major_units &&
      white.minor_units == black.minor_units) {
    return POSITION_EQUAL_PIECES;
  }
  return ByMaterialDifference(board);
}
