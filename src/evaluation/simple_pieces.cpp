#include "evaluation/simple_pieces.h"

#include <algorithm>

#include "board/attacks.h"
#include "board/bitboard.h"
#include "evaluation/bishop_evaluation.h"
#include "evaluation/piece_tables.h"
#include "evaluation/position_type.h"
#include "evaluation/side_view.h"

namespace {

// By square for White, rank one first.
constexpr std::int16_t SIMPLE_KNIGHT[64] = {
    -55, -24, -22, -20, -20, -22, -24, -55,
    -22,   5,  11,  16,  16,  11,   5, -22,
    -20,  11,  18,  22,  22,  18,  11, -20,
    -15,  16,  22,  28,  28,  22,  16, -15,
    -15,  18,  24,  30,  30,  24,  18, -15,
    -20,  12,  23,  28,  28,  23,  12, -20,
    -35,   5,  16,  20,  20,  16,   5, -35,
    -55, -32, -25, -20, -20, -25, -32, -55,
};
constexpr std::int16_t SIMPLE_BISHOP[64] = {
    -12,  -3,  -3,  -2,  -2,  -3,  -3, -12,
     -2,   2,   3,   4,   4,   3,   1,  -2,
      1,   4,   7,   9,   9,   7,   4,   1,
      2,   5,   9,  12,  12,   9,   6,   2,
      2,   5,   9,  12,  12,   9,   5,   2,
      1,   4,   7,   9,   9,   7,   4,   1,
      0,   2,   4,   5,   5,   4,   2,   0,
    -12,   0,   1,   2,   2,   1,   0, -12,
};
constexpr std::int16_t SIMPLE_QUEEN[64] = {
    -8, -3, -2, -2, -2, -2, -3, -8,
    -3, -2,  0,  1,  1,  0, -2, -3,
    -2,  0,  3,  5,  5,  3,  0, -2,
    -2,  1,  5,  7,  7,  5,  1, -2,
    -2,  1,  5,  7,  7,  5,  1, -2,
    -2,  0,  3,  5,  5,  3,  0, -2,
    -3, -2,  0,  1,  1,  0, -2, -3,
    -8, -3, -2, -2, -2, -2, -3, -8,
};
// King tables, indexed by the plain square for both colours (they read the same upside down).
// Towards the centre, used doubled while the enemy has fewer than 9 points.
constexpr std::int16_t KING_TO_CENTRE[64] = {
     4,  0,  8, 12, 12,  8,  0,  4,
     4,  8, 12, 16, 16, 12,  8,  4,
     8, 12, 16, 20, 20, 16, 12,  8,
    12, 16, 20, 24, 24, 20, 16, 12,
    12, 16, 20, 24, 24, 20, 16, 12,
     8, 12, 16, 20, 20, 16, 12,  8,
     4,  8, 12, 16, 16, 12,  8,  4,
     4,  0,  8, 12, 12,  8,  0,  4,
};
// Towards cover at the edge, used when the enemy has 9 points or more.
constexpr std::int16_t KING_TO_COVER[64] = {
     4,  6,  8,  8,  8,  8,  6,  4,
     6,  8, 10, 10, 10, 10,  8,  6,
     6,  2,  0,  0,  0,  0,  2,  6,
     6,  2,  0, -2, -2,  0,  2,  6,
     6,  2,  0, -2, -2,  0,  2,  6,
     6,  2,  0,  0,  0,  0,  2,  6,
     6,  8, 10, 10, 10, 10,  8,  6,
     4,  6,  8,  8,  8,  8,  6,  4,
};
// By the number of own men next to a king.
constexpr int KING_COVER[9] = {-10, 15, 30, 40, 45, 50, 55, 60, 65};

constexpr int RANK_SEVEN = 6;  // counted from 0
constexpr Bitboard FILES_A_TO_C = FileMask(0) | FileMask(1) | FileMask(2);
constexpr Bitboard FILES_F_TO_H = FileMask(5) | FileMask(6) | FileMask(7);
constexpr Bitboard FILES_C_TO_F = FileMask(2) | FileMask(3) | FileMask(4) | FileMask(5);

// Bishops by the number of reachable inner squares 0 to 3.
constexpr int LOW_BISHOP_MOBILITY[4] = {-45, -32, -18, -10};

// Rooks by the count of files without an own pawn, 1 to 8.
constexpr int OPEN_FILE[8] = {18, 14, 12, 10, 9, 8, 7, 7};
constexpr int HALF_OPEN_FILE[8] = {12, 9, 7, 6, 5, 5, 4, 4};

bool In(Bitboard set, Square s) { return (set & SquareBit(s)) != 0; }

int Signed(Color c, int v) { return c == WHITE ? v : -v; }

bool EnemyKingOnLastRanks(const Board& board, Color c) {
  return RelativeRank(board.sides[c ^ 1].king_square, c) >= RANK_SEVEN;
}

// A bishop on a7 (h7) shut in by an enemy pawn on b6 (g6), worse with one on c7 (f7) too.
int TrappedBishop(const Board& board, Color c, Square s) {
  const Bitboard enemy = board.sides[c ^ 1].pawns;
  const Square r = RelativeSquare(s, c);
  auto theirs = [&](const char* name) { return In(enemy, RelativeSquare(Sq(name), c)); };
  if (r == Sq("a7") && theirs("b6")) return theirs("c7") ? -180 : -100;
  if (r == Sq("h7") && theirs("g6")) return theirs("f7") ? -180 : -100;
  return 0;
}

int BishopsOf(const EvaluationRecord& record, const Board& board, Color c) {
  const PawnFacts& enemy = record.pawns[c ^ 1];
  const Bitboard targets = enemy.passed & enemy.attacked_once & ~enemy.duos;
  Bitboard seen_targets = 0;
  int v = 0;
  for (Bitboard bishops = board.sides[c].bishops; bishops != 0;) {
    Square s = PopFirstBit(bishops);
    Bitboard att = XRayAttacks(board, c, s, board.BishopAttacks(s));
    const BishopReach reach = BishopReachOf(board, s, att);
    v += SIMPLE_BISHOP[RelativeSquare(s, c)] + 2 * reach.centre + ((3 * reach.ring) >> 1);
    v += reach.squares < 4 ? LOW_BISHOP_MOBILITY[reach.squares] : 2 * reach.squares - 15;
    v += TrappedBishop(board, c, s);
    seen_targets |= att & targets;
  }
  return v + (record.side_facts[c].bishop_pair ? 4 : 16) * PopCount(seen_targets);
}

// Enemy pawns on the rook's seventh rank that an enemy rook stands behind.
int PawnsHeldByRook(const Board& board, Color c, Bitboard att, bool near) {
  const BoardSide& enemy = board.sides[c ^ 1];
  Bitboard u = att & enemy.pawns & RelativeRankMask(RANK_SEVEN, c) & StepBack(enemy.rooks, c);
  if (near) u &= ~Tables.king_attacks[enemy.king_square];
  if (u == 0) return 0;
  return HasMoreThanOne(u) ? 60 : 30;
}

int Rook(EvaluationRecord& record, const Board& board, Color c, Square s) {
  const BoardSide& own = board.sides[c];
  const BoardSide& enemy = board.sides[c ^ 1];
  const int f = FileOf(s);
  const Bitboard att = board.RookAttacks(s);
  record.side_facts[c].attacks |= att;
  int v = (5 - AveragePawnCount(board)) * 12 + 25;

  const int n = record.files_without_pawn_count[c];
  const bool no_own_pawn = (own.pawns & FileMask(f)) == 0;
  if (no_own_pawn && (enemy.pawns & FileMask(f)) == 0) {
    v += OPEN_FILE[n - 1] + (f == record.single_open_file ? 12 : 0);
  } else if (no_own_pawn) {
    v += HALF_OPEN_FILE[n - 1];
  }

  const bool on_seventh = RelativeRank(s, c) == RANK_SEVEN;
  const bool king_on_last_ranks = EnemyKingOnLastRanks(board, c);
  const Bitboard x = own.rooks & LaterSquares(c, s) & att;
  if ((x & RelativeRankMask(RANK_SEVEN, c)) != 0 && on_seventh && king_on_last_ranks) {
    return v + 75 + PawnsHeldByRook(board, c, att, false);
  }
  if (x != 0) v += enemy.queens != 0 && enemy.rooks == 0 && own.queens == 0 ? 12 : 4;
  if (!on_seventh) return v;
  if (king_on_last_ranks) v += 50;
  return v + PawnsHeldByRook(board, c, att, true);
}

int RooksOf(EvaluationRecord& record, const Board& board, Color c) {
  if (board.sides[c].rooks == 0) return 0;
  int v = 0;
  for (Bitboard rooks = board.sides[c].rooks; rooks != 0;) v += Rook(record, board, c, PopFirstBit(rooks));
  return v + 4 * PopCount(record.pawns[c ^ 1].isolated & board.sides[c ^ 1].pawns);
}

// Checks from squares that no enemy man guards, for the side behind in material.
int FreeChecks(const EvaluationRecord& record, const Board& board, Color c, Bitboard att) {
  const BoardSide& enemy = board.sides[c ^ 1];
  const Square king = enemy.king_square;
  Bitboard q = att & board.QueenAttacks(king) & ~Tables.king_attacks[king] & ~record.pawns[c ^ 1].attacks;
  int n = 0;
  for (Bitboard squares = q; squares != 0;) {
    if (!IsAttackedByPieces(board, PopFirstBit(squares), enemy)) ++n;
  }
  if (n == 0) return 0;
  // With this side to move the enemy king is never in check: the free checks can be given now.
  return board.side_to_move == c ? 33 + 4 * n : 16 + 2 * n;
}

int QueensOf(EvaluationRecord& record, const Board& board, Color c) {
  const BoardSide& own = board.sides[c];
  const BoardSide& enemy = board.sides[c ^ 1];
  const int material = Signed(Color(board.side_to_move), board.State().material);
  const bool behind = Signed(c, material) <= -90;
  int v = 0;
  for (Bitboard queens = own.queens; queens != 0;) {
    Square s = PopFirstBit(queens);
    Bitboard att = board.QueenAttacks(s);
    record.side_facts[c].attacks |= att;
    v += SIMPLE_QUEEN[RelativeSquare(s, c)];
    if (behind) v += FreeChecks(record, board, c, att);
    v -= 30 * PopCount(FindBlockers(board, att & own.all, enemy, s));
    v -= 2 * Tables.manhattan_distance[s][own.king_square] + 2 * Tables.manhattan_distance[s][enemy.king_square];
    if (RelativeRank(s, c) == RANK_SEVEN && EnemyKingOnLastRanks(board, c)) v += 55;
  }
  return v;
}

int KingValue(const Board& board, Color c) {
  Square k = board.sides[c].king_square;
  return SidePoints(board.sides[c ^ 1]) < 9 ? 2 * KING_TO_CENTRE[k] : KING_TO_COVER[k];
}

// With two major units or more: against the enemy king's cover of own men.
int AgainstCover(const Board& board, Color c) {
  const BoardSide& own = board.sides[c];
  const BoardSide& enemy = board.sides[c ^ 1];
  if (own.major_units < 2) return 0;
  int n = PopCount(Tables.king_attacks[enemy.king_square] & enemy.all);
  return (own.queens != 0 ? 100 : 20) - KING_COVER[n];
}

}  // namespace

int SimpleKnights(EvaluationRecord& record, const Board& board) {
  const int value = KnightValue(board);
  const Bitboard knights[2] = {board.sides[WHITE].knights, board.sides[BLACK].knights};
  int v = 0;
  for (Color c : {WHITE, BLACK}) {
    for (Bitboard k = knights[c]; k != 0;) {
      Square s = PopFirstBit(k);
      v += Signed(c, SIMPLE_KNIGHT[RelativeSquare(s, c)] + value);
      record.side_facts[c].attacks |= Tables.knight_attacks[s];
    }
  }
  // Pawns on both wings are far apart for a knight.
  const Bitboard p = board.sides[WHITE].pawns | board.sides[BLACK].pawns;
  auto count_on = [&](Color c, Bitboard files) { return PopCount(knights[c] & files); };
  if ((p & FILES_A_TO_C) != 0 && (p & FILES_F_TO_H) != 0 && (p & ~FILES_C_TO_F) != 0) {
    v -= 12 * (PopCount(knights[WHITE]) - PopCount(knights[BLACK]));
  } else if ((p & (FileMask(6) | FileMask(7))) != 0) {
    v -= 8 * (count_on(WHITE, FILES_A_TO_C) - count_on(BLACK, FILES_A_TO_C));
  } else if ((p & (FileMask(0) | FileMask(1))) != 0) {
    v -= 8 * (count_on(WHITE, FILES_F_TO_H) - count_on(BLACK, FILES_F_TO_H));
  }
  return v;
}

int SimpleBishops(const EvaluationRecord& record, const Board& board) {
  return BishopsOf(record, board, WHITE) - BishopsOf(record, board, BLACK);
}

int SimpleRooks(EvaluationRecord& record, const Board& board) {
  return RooksOf(record, board, WHITE) - RooksOf(record, board, BLACK);
}

int SimpleQueens(EvaluationRecord& record, const Board& board) {
  return QueensOf(record, board, WHITE) - QueensOf(record, board, BLACK);
}

int SimpleKingPlacement(const Board& board) {
  return KingValue(board, WHITE) - KingValue(board, BLACK) + AgainstCover(board, WHITE) - AgainstCover(board, BLACK);
}
