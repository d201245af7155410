// The facts that the pawns alone give: sets of squares and counts of both colours, the rammed
// pawns, the wing majorities and how open the structure is. The piece terms read them too.
#pragma once

#include "board/bitboard.h"
#include "board/board.h"
#include "evaluation/evaluation_record.h"

// The set moved one rank towards the enemy of colour c, or one rank back; squares leaving the
// board are dropped.
constexpr Bitboard StepForward(Bitboard b, Color c) { return c == WHITE ? b << 8 : b >> 8; }
constexpr Bitboard StepBack(Bitboard b, Color c) { return c == WHITE ? b >> 8 : b << 8; }

// The squares that pawns of colour c on the set attack towards the a-file and towards the h-file.
constexpr Bitboard PawnAttacksWest(Bitboard pawns, Color c) { return StepForward(pawns & ~FILE_A, c) >> 1; }
constexpr Bitboard PawnAttacksEast(Bitboard pawns, Color c) { return StepForward(pawns & ~FILE_H, c) << 1; }
constexpr Bitboard PawnAttacksOf(Bitboard pawns, Color c) {
  return PawnAttacksWest(pawns, c) | PawnAttacksEast(pawns, c);
}

// Squares and ranks as colour c sees them: its second rank is rank 1.
constexpr Square RelativeSquare(Square s, Color c) { return s ^ (56 * c); }
constexpr int RelativeRank(Square s, Color c) { return RankOf(RelativeSquare(s, c)); }
constexpr Bitboard RelativeRankMask(int rank, Color c) { return RankMask(c == WHITE ? rank : 7 - rank); }

// Files c to f.
constexpr Bitboard CENTRE_FILES = FileMask(2) | FileMask(3) | FileMask(4) | FileMask(5);

// Fills the pawn facts of both colours, `rammed`, and adds the pawns' attacks to each side's
// `side_facts.attacks`. Needs `pawn_squares`, `passed` and the file sets. The facts that the pawn
// table keeps (safe advance, advance attacks, isolated and backward pawns, majorities, openness)
// are worked out only when `from_hash` is 0.
void ComputePawnFacts(EvaluationRecord& record, const Board& board);
