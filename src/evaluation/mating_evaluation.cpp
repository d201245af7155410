#include "evaluation/mating_evaluation.h"

#include <algorithm>
#include <cstdlib>

#include "board/attack_tables.h"
#include "board/attacks.h"
#include "board/bitboard.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/position_type.h"

namespace {

// Rank one first; the table is the same turned over.
constexpr int KING_CENTRALITY[64] = {
    -80, -68, -56, -44, -44, -56, -68, -80,  //
    -68, -12, -4,  4,   4,   -4,  -12, -68,  //
    -56, -4,  14,  24,  24,  14,  -4,  -56,  //
    -44, 4,   24,  44,  44,  24,  4,   -44,  //
    -44, 4,   24,  44,  44,  24,  4,   -44,  //
    -56, -4,  14,  24,  24,  14,  -4,  -56,  //
    -68, -12, -4,  4,   4,   -4,  -12, -68,  //
    -80, -68, -56, -44, -44, -56, -68, -80,
};

// By piece type (knight, bishop, rook, queen) and its king distance to its own king.
constexpr int NEAR_KING[4][9] = {
    {0, 10, 8, 4, -10, -20, -40, -70, -90},
    {0, 6, 4, 2, -4, -6, -12, -16, -22},
    {0, 6, 4, 2, -4, -6, -12, -16, -22},
    {0, 6, 4, 2, -4, -6, -12, -16, -22},
};

// By the lone king's square, rank one first: high in the dark corners a1 and h8.
constexpr int MATE_CORNER[64] = {
    120, 110, 70,  40,  18,  2,   -40, -60,  //
    110, 90,  50,  26,  12,  -10, -34, -40,  //
    70,  50,  36,  -10, -20, -30, -10, 2,    //
    40,  26,  -10, -52, -52, -20, 12,  18,   //
    18,  12,  -20, -52, -52, -10, 26,  40,   //
    2,   -10, -30, -20, -10, 36,  50,  70,   //
    -40, -34, -10, 12,  26,  50,  90,  110,  //
    -60, -40, 2,   18,  40,  70,  110, 120,
};

// Strong pawns by their rank from their own side, ranks three to seven.
constexpr int MATING_PAWN_BY_RANK[8] = {0, 0, 4, 20, 52, 76, 100, 0};

constexpr Bitboard EDGE = RANK_1 | RANK_8 | FILE_A | FILE_H;
// Files a, b, g and h of ranks one, two, seven and eight.
constexpr Bitboard CORNER_BLOCKS = (FILE_A | (FILE_A << 1) | (FILE_A << 6) | FILE_H) &
                                   (RANK_1 | RankMask(1) | RankMask(6) | RANK_8);

bool OnEdge(Square s) { return (EDGE & SquareBit(s)) != 0; }

// The kings in opposition-like contact with the weak king on the edge and the strong one off it.
bool KingsInContactAtEdge(Square strong_king, Square weak_king) {
  return Tables.manhattan_distance[strong_king][weak_king] == 2 && OnEdge(weak_king) && !OnEdge(strong_king);
}

// Calls visit(type, square) for each knight, bishop, rook and queen of `side`.
template <typename Visit>
void ForEachPiece(const BoardSide& side, Visit visit) {
  for (PieceType type = KNIGHT; type <= QUEEN; ++type) {
    for (Bitboard b = side.Pieces(type); b != 0;) visit(type, PopFirstBit(b));
  }
}

// How far the pieces of `side` stray from their king, and how many lack protection.
int LooseMen(const Board& board, Color c, int near_divisor, int unprotected_bonus) {
  const BoardSide& side = board.sides[c];
  int v = 0;
  ForEachPiece(side, [&](PieceType type, Square s) {
    v -= NEAR_KING[type - KNIGHT][Tables.king_distance[s][side.king_square]] / near_divisor;
    if (!IsAttackedByPieces(board, s, side)) v += unprotected_bonus;
  });
  return v;
}

int Pressure(const Board& board, Color attacker, Color defender) {
  const Square attacker_king = board.sides[attacker].king_square;
  const Square defender_king = board.sides[defender].king_square;
  int v = KingsInContactAtEdge(attacker_king, defender_king) ? 20 : -KING_CENTRALITY[defender_king] / 8;
  return v + LooseMen(board, defender, 4, 6);
}

}  // namespace

int KingCentrality(Square s) { return KING_CENTRALITY[s]; }

int KingsAndPieces(const Board& board) {
  const int m = board.State().material;
  const int w = board.side_to_move == WHITE ? m : -m;
  return w / 8 + Pressure(board, WHITE, BLACK) - Pressure(board, BLACK, WHITE);
}

int MaterialEdge(const Board& board, Color strong, int material) {
  const Color weak = strong ^ 1;
  const Square strong_king = board.sides[strong].king_square;
  const Square weak_king = board.sides[weak].king_square;
  int v = material >> 2;
  v += KingsInContactAtEdge(strong_king, weak_king) ? 100 : -KING_CENTRALITY[weak_king];
  v += KING_CENTRALITY[strong_king] / 2;
  v += LooseMen(board, weak, 1, 10);
  return std::max(v, 0);
}

int BishopAndKnight(const Board& board, Color strong) {
  const BoardSide& side = board.sides[strong];
  const Square strong_king = side.king_square;
  Square q = board.sides[strong ^ 1].king_square;
  int v = KING_CENTRALITY[strong_king] + 1000 - 4 * Tables.king_distance[strong_king][q];
  if ((CORNER_BLOCKS & SquareBit(strong_king)) != 0) v -= 100;
  // The table favours the dark corners; a light bishop mates in the light ones.
  if ((side.bishops & LIGHT_SQUARES) != 0) q ^= 56;
  return v + MATE_CORNER[q];
}

int MatingAttack(const Board& board, Color strong, int material) {
  const Color weak = strong ^ 1;
  const BoardSide& side = board.sides[strong];
  if (board.phase == 6 && side.pawns == 0 && side.bishops != 0 && side.knights != 0) {
    return BishopAndKnight(board, strong);
  }
  const Square strong_king = side.king_square;
  const Square weak_king = board.sides[weak].king_square;
  int v = KingsInContactAtEdge(strong_king, weak_king) ? material + 40
                                                        : material - KING_CENTRALITY[weak_king] * 3 / 2;
  const BoardSide& weak_side = board.sides[weak];
  if ((weak_side.knights | weak_side.bishops | weak_side.rooks | weak_side.queens) == 0) {
    v += 2000;
  } else {
    v += 650 + LooseMen(board, weak, 1, 6);
  }
  ForEachPiece(side, [&](PieceType, Square s) { v -= 2 * Tables.king_distance[s][weak_king]; });
  v -= 4 * Tables.manhattan_distance[strong_king][weak_king];
  v += KING_CENTRALITY[strong_king];
  for (Bitboard b = side.pawns; b != 0;) v += MATING_PAWN_BY_RANK[RelativeRank(PopFirstBit(b), strong)];
  return v;
}

int EvaluateMating(const Board& board) {
  const int m = board.State().material;
  const int a = std::abs(m);
  const Color to_move = board.side_to_move;
  if (a < 21) {
    const int v = KingsAndPieces(board);
    return (to_move == WHITE ? v : -v) + 3;
  }
  const int w = to_move == WHITE ? m : -m;
  const Color strong = w > 0 ? WHITE : BLACK;
  const bool mating = a >= 500;
  const int v = mating ? MatingAttack(board, strong, a) : MaterialEdge(board, strong, a);
  return (to_move == strong ? v : -v) + (mating ? 6 : 4);
}
