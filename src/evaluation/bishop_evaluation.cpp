#include "evaluation/bishop_evaluation.h"

#include <algorithm>

#include "board/bitboard.h"
#include "evaluation/piece_tables.h"
#include "evaluation/position_type.h"
#include "evaluation/side_view.h"

namespace {

// Sets stated for White.
constexpr Bitboard INNER_SQUARES = Rectangle('b', 'g', 2, 7);
constexpr Bitboard FIANCHETTO_SQUARES = SquareSet({"a1", "b2", "g2", "h1"});
constexpr Bitboard XRAY_SQUARES =
    SquareSet({"c3", "f3", "d4", "e4", "d5", "e5", "c6", "f6", "b7", "g7", "a8", "h8"});
constexpr Bitboard CENTRE_SQUARES = SquareSet({"d4", "e4", "d5", "e5"});
constexpr Bitboard CENTRE_RING =
    SquareSet({"c3", "d3", "e3", "f3", "c4", "f4", "c5", "f5", "c6", "d6", "e6", "f6"});
constexpr Bitboard FAR_SQUARES = Rectangle('a', 'h', 7, 8) | Rectangle('b', 'g', 6, 6);
// Where restrained own pawns make a bishop bad, by the colour of its square.
constexpr Bitboard LIGHT_BAD_SQUARES = SquareSet({"e2", "d3", "f3", "c4", "e4", "d5"});
constexpr Bitboard DARK_BAD_SQUARES = SquareSet({"d2", "c3", "e3", "d4", "f4", "e5"});
constexpr Bitboard BAD_CENTRE = SquareSet({"d4", "e4"});

// A fianchetto bishop's long diagonal: the squares it stands on, the pawn in front of it, the
// square where that pawn started, the diagonal, and the wings it covers and looks at.
struct LongDiagonal {
  Bitboard bishop_squares;
  Square fianchetto_pawn;
  Square home_pawn;
  Bitboard diagonal;
  int wing;
  int other_wing;
};

constexpr LongDiagonal LONG_DIAGONALS[2] = {
    {SquareSet({"a1", "b2"}), Sq("b3"), Sq("b2"),
     SquareSet({"a1", "b2", "c3", "d4", "e5", "f6", "g7", "h8"}), WING_QUEENSIDE, WING_KINGSIDE},
    {SquareSet({"g2", "h1"}), Sq("g3"), Sq("g2"),
     SquareSet({"h1", "g2", "f3", "e4", "d5", "c6", "b7", "a8"}), WING_KINGSIDE, WING_QUEENSIDE},
};

// By the number of pawns on the long diagonal, 1 to 6.
constexpr ScorePair DIAGONAL_PAWN_COUNT[6] = {ScorePair(8, 8), ScorePair(6, 6),  ScorePair(3, 4),
                                              ScorePair(0, 1), ScorePair(-2, -4), ScorePair(-6, -7)};
// By how far the first pawn on it stands, v = -1 to 4.
constexpr ScorePair DIAGONAL_PAWN_DISTANCE[6] = {ScorePair(-5, -10), ScorePair(-2, -3), ScorePair(3, 4),
                                                 ScorePair(8, 8),    ScorePair(11, 11), ScorePair(14, 14)};

// By the number of reachable inner squares 0 to 4; from 5 on, c - 8 / 2 * c - 18.
constexpr ScorePair LOW_MOBILITY[5] = {ScorePair(-24, -38), ScorePair(-16, -32), ScorePair(-10, -30),
                                       ScorePair(-8, -20), ScorePair(-5, -12)};

// The bishop pair by openness / 4.
constexpr ScorePair PAIR_BY_OPENNESS[4] = {ScorePair(2, 5), ScorePair(-5, 2), ScorePair(-7, -2),
                                           ScorePair(-10, -5)};

Bitboard SquareColourOf(Square s) { return (SquareBit(s) & LIGHT_SQUARES) != 0 ? LIGHT_SQUARES : DARK_SQUARES; }

// A fianchettoed bishop on the long diagonal; sets free when the diagonal is wide enough that the
// bishop can't be bad.
ScorePair LongDiagonalTerm(EvaluationRecord& record, const Board& board, Color colour, Square s,
                           const LongDiagonal& diagonal, bool& free) {
  const BoardSide& own = board.sides[colour];
  const BoardSide& enemy = board.sides[colour ^ 1];
  const Bitboard pawns = own.pawns | enemy.pawns;
  ScorePair pair;
  if (!Has(colour, own.pawns, SquareBit(diagonal.fianchetto_pawn))) {
    pair -= ScorePair(6, 4);
    AddDefence(record, colour, diagonal.wing, -2);
  }
  if (Has(colour, pawns, SquareBit(diagonal.home_pawn))) return pair;

  if ((enemy.bishops & SquareColourOf(s)) == 0) pair += ScorePair(8, 10);
  Bitboard on_diagonal = pawns & RelativeSet(colour, diagonal.diagonal);
  if (on_diagonal == 0) {
    pair += ScorePair(24, 24);
    AddDefence(record, colour, diagonal.wing, 5);
    AddAttack(record, colour, diagonal.other_wing, 6);
    free = true;
    return pair;
  }
  int n = std::min(PopCount(on_diagonal), 6);
  Square first = colour == WHITE ? FirstBit(on_diagonal) : LastBit(on_diagonal);
  int v = RelativeRank(first, colour) - ((own.pawns & SquareBit(first)) != 0 ? 2 : 3);
  v = std::clamp(v, -1, 4);
  pair += DIAGONAL_PAWN_COUNT[n - 1] + DIAGONAL_PAWN_DISTANCE[v + 1];
  AddDefence(record, colour, diagonal.wing, v == -1 ? -5 : v == 0 ? 1 : v == 1 ? 2 : 3);
  AddAttack(record, colour, diagonal.other_wing, v <= 2 ? 1 : v == 3 ? 2 : 4);
  free = v >= 2;
  return pair;
}

ScorePair Mobility(Color colour, Bitboard attacks, const BishopReach& reach) {
  const int c = reach.squares;
  const int ce = reach.centre;
  const int ri = reach.ring;
  int fa = PopCount(attacks & RelativeSet(colour, FAR_SQUARES));
  ScorePair base = c < 5 ? LOW_MOBILITY[c] : ScorePair(c - 8, 2 * c - 18);
  return base + ScorePair(ce + (ri >> 1) + (fa >> 2), 4 * ce + 2 * ri + fa);
}

// A bishop behind its own held pawns on its colour of squares; returns whether it is bad.
bool BadBishop(EvaluationRecord& record, Color colour, Square s, int mobility, ScorePair& pair) {
  Square r = RelativeSquare(s, colour);
  Bitboard squares = SquareColourOf(r) == LIGHT_SQUARES ? LIGHT_BAD_SQUARES : DARK_BAD_SQUARES;
  Bitboard held = record.pawns[colour].restrained & RelativeSet(colour, squares);
  if ((held & RelativeSet(colour, BAD_CENTRE)) == 0 && !HasMoreThanOne(held)) return false;
  pair -= mobility == 0 ? ScorePair(30, 37) : mobility == 1 ? ScorePair(18, 24) : ScorePair(8, 10);
  AddAttack(record, colour, WING_CENTRE, -8);
  AddDefence(record, colour, WING_CENTRE, -6);
  return true;
}

// A bishop at home or nearly so, shut in by its own pawns or pieces.
ScorePair HemmedIn(EvaluationRecord& record, const Board& board, Color colour, Square s) {
  const BoardSide& own = board.sides[colour];
  const Square r = RelativeSquare(s, colour);
  auto pawn_on = [&](const char* name) { return Has(colour, own.pawns, SquareBit(Sq(name))); };
  auto piece_on = [&](const char* name) { return Has(colour, own.all, SquareBit(Sq(name))); };
  int attack = 0;
  ScorePair pair;
  if ((r == Sq("c1") || r == Sq("d2")) && pawn_on("e3")) {
    pair = ScorePair(-6, -20), attack = -5;
  } else if (r == Sq("c1") && piece_on("d2")) {
    pair = ScorePair(-8, -18), attack = -3;
  } else if ((r == Sq("f1") || r == Sq("e2")) && pawn_on("d3")) {
    pair = ScorePair(-6, -20), attack = -5;
  } else if (r == Sq("f1") && piece_on("e2")) {
    pair = ScorePair(-8, -18), attack = -3;
  } else if (r == Sq("d3") && pawn_on("e4")) {
    pair = ScorePair(0, -5), attack = -1;
  } else if (r == Sq("e3") && pawn_on("d4")) {
    pair = ScorePair(-3, -6), attack = -2;
  }
  AddAttack(record, colour, WING_CENTRE, attack);
  return pair;
}

// A bishop that took a pawn on a7 or h7 and is shut in by the pawn on b6 or g6.
ScorePair Trapped(const EvaluationRecord& record, const Board& board, Color colour, Square s) {
  const Color enemy = colour ^ 1;
  const Square r = RelativeSquare(s, colour);
  Square jailer;
  if (r == Sq("a7")) {
    jailer = Sq("b6");
  } else if (r == Sq("h7")) {
    jailer = Sq("g6");
  } else {
    return ScorePair();
  }
  Bitboard pawn = board.sides[enemy].pawns & SquareBit(RelativeSquare(jailer, colour));
  if (pawn == 0) return ScorePair();
  return (pawn & record.pawns[enemy].defended) != 0 ? ScorePair(-180, -180) : ScorePair(-110, -110);
}

ScorePair EvaluateBishop(EvaluationRecord& record, const Board& board, Color colour, Square s, bool& bad) {
  const Square r = RelativeSquare(s, colour);
  Bitboard attacks = board.BishopAttacks(s);
  ScorePair pair = BISHOP_TABLE.At(r);
  record.side_facts[colour].attacks |= attacks;

  bool free = false;
  for (const LongDiagonal& diagonal : LONG_DIAGONALS) {
    if ((SquareBit(r) & diagonal.bishop_squares) == 0) continue;
    pair += LongDiagonalTerm(record, board, colour, s, diagonal, free);
  }
  attacks = XRayAttacks(board, colour, s, attacks);
  const BishopReach reach = BishopReachOf(board, s, attacks);
  pair += Mobility(colour, attacks, reach);
  if (!free && BadBishop(record, colour, s, reach.squares, pair)) bad = true;
  pair += HemmedIn(record, board, colour, s);
  pair += Trapped(record, board, colour, s);
  return pair;
}

// After the last bishop: the pair, or a lone bad bishop with too few knights to help it.
ScorePair PairOrBadBishop(EvaluationRecord& record, const Board& board, Color colour, bool bad) {
  ScorePair pair;
  if (record.side_facts[colour].bishop_pair) {
    int o = std::min(record.openness >> 2, 3);
    pair += PAIR_BY_OPENNESS[o];
    AddAttack(record, colour, WING_CENTRE, o);
    AddDefence(record, colour, WING_CENTRE, record.openness >> 3);
    AddEndgameTerm(record, colour, 10);
  } else if (bad) {
    int knights = PopCount(board.sides[colour].knights);
    if (knights == 0) {
      pair -= ScorePair(15, 17);
      AddAttack(record, colour, WING_CENTRE, -4);
      AddDefence(record, colour, WING_CENTRE, -4);
    } else if (knights == 1) {
      pair -= ScorePair(10, 12);
      AddAttack(record, colour, WING_CENTRE, -3);
      AddDefence(record, colour, WING_CENTRE, -2);
    } else {
      pair -= ScorePair(5, 7);
      AddAttack(record, colour, WING_CENTRE, -2);
      AddDefence(record, colour, WING_CENTRE, -1);
    }
    AddEndgameTerm(record, colour, -5);
  }
  return pair;
}

// Enemy pawns that guard each other on the squares the bishops can attack.
ScorePair DefendedTargets(EvaluationRecord& record, const Board& board, Color colour) {
  Bitboard targets = record.pawns[colour ^ 1].defended;
  if (!record.side_facts[colour].bishop_pair) {
    bool light = (board.sides[colour].bishops & LIGHT_SQUARES) != 0;
    targets &= light ? LIGHT_SQUARES : DARK_SQUARES;
  }
  int n = PopCount(targets);
  AddAttack(record, colour, WING_CENTRE, -(n / 2));
  return ScorePair(0, -2 * n);
}

}  // namespace

Bitboard XRayAttacks(const Board& board, Color colour, Square s, Bitboard attacks) {
  if ((SquareBit(s) & RelativeSet(colour, FIANCHETTO_SQUARES)) == 0) return attacks;
  const BoardSide& own = board.sides[colour];
  const Bitboard xray_squares = RelativeSet(colour, XRAY_SQUARES);
  Bitboard screens = attacks & own.all & ~own.pawns & xray_squares;
  if (screens == 0) return attacks;
  Square highest = colour == WHITE ? LastBit(screens) : FirstBit(screens);
  return attacks | (board.BishopAttacks(highest) & xray_squares);
}

BishopReach BishopReachOf(const Board& board, Square s, Bitboard attacks) {
  const Bitboard pawns = board.sides[WHITE].pawns | board.sides[BLACK].pawns;
  const Bitboard reach = (attacks | SquareBit(s)) & INNER_SQUARES & ~pawns;
  return BishopReach{PopCount(reach), PopCount(reach & CENTRE_SQUARES), PopCount(reach & CENTRE_RING)};
}

ScorePair EvaluateBishops(EvaluationRecord& record, const Board& board, Color colour) {
  bool bad = false;
  ScorePair pair = SumOverPieces(board.sides[colour].bishops,
                                 [&](Square s) { return EvaluateBishop(record, board, colour, s, bad); });
  pair += PairOrBadBishop(record, board, colour, bad);
  pair += DefendedTargets(record, board, colour);
  return pair;
}
