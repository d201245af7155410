// The bitbase probes: each reads a Board and a table and returns a score from the side to move's
// view, 0 for a draw and a value near the mate range for a decided game, with no distance in it.
// They check nothing beyond what each says: ProbeBitbases decides which one applies.
#pragma once

#include "board/board.h"

// Exactly one pawn on the board.
int ProbeSinglePawn(const Board& board);
// One pawn of each colour; the two-pawn table loaded.
int ProbeTwoPawns(const Board& board);
// Three pawns, a White pawn directly behind a Black one, no en-passant square; the rammed table
// loaded.
int ProbeRammedPawn(const Board& board);

// Where a position's two bits lie in a file table: the byte and the shift of the low bit.
struct BitbaseSlot {
  int byte;
  int shift;
};
// A two-pawn position with the side to move's pawn on files a to d and its own side as White's.
BitbaseSlot TwoPawnsSlot(Square own_king, Square enemy_king, Square own_pawn, Square enemy_pawn);
// A rammed-pawn position with the two pawns' side as White, its rammed pawn on files a to d; `who`
// is 0 with that side to move, else 1.
BitbaseSlot RammedPawnSlot(int who, Square strong_king, Square weak_king, Square free, Square ram);

// The two bits of the two-pawn table for the position with `who` to move: 3 a win for the side to
// move, 1 a loss, 0 a draw or a position that doesn't exist. The squares are those of the board;
// the mirroring to the table's form is done here.
int TwoPawnsRawValue(Color who, Square white_king, Square black_king, Square white_pawn, Square black_pawn);

// Whether colour's king and its pawn on `pawn` win against the enemy king alone, with
// `side_to_move` to move.
bool SinglePawnWins(Color colour, Color side_to_move, Square pawn, Square own_king, Square enemy_king);
