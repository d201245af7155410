// The facts that the pawns alone give: sets of squares and counts of both colours, the rammed
// pawns, the wing majorities and how open the structure is. The piece terms read them too.
#pragma once

#include <algorithm>

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

// Ranks from the pawn to the nearest square straight ahead that holds an enemy pawn or a guarded
// own pawn; 0 when there is none. Needs the pawn facts.
int DistanceAhead(const EvaluationRecord& record, const Board& board, Square s, Color c);

// Calls visit(file, high_rank, gap) for each pair of passed pawns that lead neighbouring files,
// from the a-file on: `file` is the pair's file nearer the h-file, `high_rank` the rank of the
// more advanced pawn and `gap` the ranks between the two, both as colour c sees them. The pairs
// don't overlap.
template <typename Visit>
void ForEachConnectedPasserPair(Bitboard passed_front, Color c, Visit visit) {
  auto front_on = [&](int file) { return passed_front & FileMask(file); };
  for (int file = 1; file <= 7;) {
    if (front_on(file) == 0) {
      file += 2;
      continue;
    }
    if (front_on(file - 1) == 0) {
      file += 1;
      continue;
    }
    int a = RelativeRank(FirstBit(front_on(file)), c);
    int b = RelativeRank(FirstBit(front_on(file - 1)), c);
    visit(file, std::max(a, b), std::max(a, b) - std::min(a, b));
    file += 2;
  }
}

// Calls visit(guard, sound) for both guards of every guarded pawn of colour c, guarded pawns from
// the lowest square up, the guard towards the a-file first. `guard` holds the one guarding pawn;
// it is sound when it is itself guarded, in a duo or on an edge file.
template <typename Visit>
void ForEachChainGuard(const PawnFacts& facts, Bitboard pawns, Color c, Visit visit) {
  Bitboard sound = facts.defended | facts.duos;
  for (Bitboard guarded = facts.defended; guarded != 0;) {
    Bitboard behind = StepBack(SquareBit(PopFirstBit(guarded)), c);
    const Bitboard guards[2][2] = {{(behind >> 1) & ~FILE_H & pawns, FILE_A},
                                   {(behind << 1) & ~FILE_A & pawns, FILE_H}};
    for (const auto& [guard, edge_file] : guards) {
      if (guard != 0) visit(guard, (guard & (edge_file | sound)) != 0);
    }
  }
}

// The pawns of colour c on the wing's majority files that may still carry the majority forward:
// not passed, on its ranks three to six.
Bitboard MajorityAdvancers(const EvaluationRecord& record, const Board& board, int wing, Color c);
