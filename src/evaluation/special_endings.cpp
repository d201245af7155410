#include "evaluation/special_endings.h"

#include "board/attack_tables.h"
#include "board/bitboard.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/rook_and_pawn.h"
#include "evaluation/side_view.h"
#include "evaluation/simple_evaluator.h"

namespace {

// By a queen's square, White's view, rank one first; Black reads it at square ^ 56.
constexpr int QUEEN_CENTRE[64] = {
    -14, -9, -8, -8, -8, -8, -9, -14,  //
    -9,  -6, -3, -1, -1, -3, -6, -9,   //
    -8,  -3, 6,  10, 10, 6,  -3, -8,   //
    -8,  -1, 10, 14, 14, 10, -1, -8,   //
    -8,  -1, 10, 14, 14, 10, -1, -8,   //
    -8,  -3, 6,  10, 10, 6,  -3, -8,   //
    -9,  -6, -3, -1, -1, -3, -6, -9,   //
    -14, -9, -8, -8, -8, -8, -9, -14,
};

// The most advanced passed pawn in a queen ending, by its rank from its own side (1 to 6).
constexpr int QUEEN_ENDING_PASSER[8] = {0, -50, -52, -30, 10, 75, 160, 0};

constexpr int SideSign(Color c) { return c == WHITE ? 1 : -1; }

Bitboard PawnAttacksOf(Bitboard pawns, Color c) {
  Bitboard attacks = 0;
  for (Bitboard b = pawns; b != 0;) attacks |= Tables.pawn_attacks[c][PopFirstBit(b)];
  return attacks;
}

// One rook each and a single pawn: the rook and pawn table, side to move's view.
int SinglePawnRookEnding(const Board& board) {
  const BoardSide& white = board.sides[WHITE];
  const BoardSide& black = board.sides[BLACK];
  int v;
  if (white.pawns != 0) {
    v = RookAndPawn(FirstBit(white.rooks), FirstBit(black.rooks), white.king_square, black.king_square,
                    FirstBit(white.pawns));
  } else {
    v = -RookAndPawn(FirstBit(black.rooks) ^ 56, FirstBit(white.rooks) ^ 56, black.king_square ^ 56,
                     white.king_square ^ 56, FirstBit(black.pawns) ^ 56);
  }
  return SideSign(board.side_to_move) * v;
}

// White's view: 30 against the owner of each loose pawn that both colours' rooks bear on.
int RookFightsForPawns(const Board& board) {
  int sum = 0;
  for (Color c = WHITE; c <= BLACK; ++c) {
    const BoardSide& own = board.sides[c];
    const BoardSide& enemy = board.sides[c ^ 1];
    const Bitboard loose = own.pawns & ~PawnAttacksOf(own.pawns, c) & ~Tables.king_attacks[own.king_square];
    for (Bitboard b = loose; b != 0;) {
      const Bitboard lines = board.RookAttacks(PopFirstBit(b));
      if ((lines & own.rooks) != 0 && (lines & enemy.rooks) != 0) sum -= 30 * SideSign(c);
    }
  }
  return sum;
}

// White's view: the queens' placing and the leading passed pawns.
int QueenEndingTerms(const EvaluationRecord& record, const Board& board) {
  int y = 0;
  for (Color c = WHITE; c <= BLACK; ++c) {
    const BoardSide& side = board.sides[c];
    int own = 0;
    if (side.queens != 0) own += QUEEN_CENTRE[RelativeSquare(FirstBit(side.queens), c)] / 2;
    const Bitboard passed = record.pawns[c].passed;
    if (passed != 0) {
      const Square leader = c == WHITE ? LastBit(passed) : FirstBit(passed);
      own += QUEEN_ENDING_PASSER[RelativeRank(leader, c)];
    } else {
      own -= 45;
    }
    y += SideSign(c) * own;
  }
  return y;
}

// The side to move, behind in a queen ending, can give a check on a square the enemy doesn't guard.
bool HasSafeCheck(const Board& board) {
  const BoardSide& own = board.Own();
  const BoardSide& enemy = board.Enemy();
  if (own.queens == 0) return false;
  const Square enemy_king = enemy.king_square;
  Bitboard guarded = Tables.king_attacks[enemy_king] | PawnAttacksOf(enemy.pawns, board.side_to_move ^ 1);
  for (Bitboard b = enemy.queens; b != 0;) guarded |= board.QueenAttacks(PopFirstBit(b));
  const Bitboard checks = board.QueenAttacks(FirstBit(own.queens)) & board.QueenAttacks(enemy_king);
  return (checks & ~guarded) != 0;
}

// With a safe check the side behind has drawing chances: less so when the enemy queen stands by
// its king and its king keeps pawns around it.
int ShrinkForPerpetualChances(const Board& board, int score) {
  const BoardSide& enemy = board.Enemy();
  const Square enemy_king = enemy.king_square;
  const Bitboard king_zone = Tables.king_attacks[enemy_king] | SquareBit(enemy_king);
  bool queen_near = false;
  for (Bitboard b = enemy.queens; b != 0;) queen_near |= (board.QueenAttacks(PopFirstBit(b)) & king_zone) != 0;
  score = score * (queen_near ? 5 : 3) / 8;
  const int n = PopCount(enemy.pawns & Tables.king_attacks[enemy_king] & Rectangle('b', 'g', 2, 7));
  return n == 0 ? score * 4 / 8 : score * (n + 6) / 8;
}

}  // namespace

int EvaluateRookEnding(EvaluationRecord& record, const Board& board, int bound) {
  const BoardSide& white = board.sides[WHITE];
  const BoardSide& black = board.sides[BLACK];
  if (board.phase == 10 && PopCount(white.pawns | black.pawns) == 1 && PopCount(white.rooks) == 1 &&
      PopCount(black.rooks) == 1) {
    return SinglePawnRookEnding(board);
  }
  const int v = EvaluateSimple(record, board, bound);
  if (record.lazy) return v;
  return v + SideSign(board.side_to_move) * RookFightsForPawns(board);
}

int EvaluateQueenEnding(EvaluationRecord& record, const Board& board, int bound) {
  const int v = EvaluateSimple(record, board, bound);
  if (record.lazy) return v;
  const int x = v + 24 - board.State().material / 2;
  const int y = QueenEndingTerms(record, board);
  const int score = x + SideSign(board.side_to_move) * y;
  if (score >= 0 || !HasSafeCheck(board)) return score;
  return ShrinkForPerpetualChances(board, score);
}
