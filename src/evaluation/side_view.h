// One colour's view of the board for the piece terms. Every table and named square is stated for
// White; Black reads them turned over (square ^ 56), so that a position and its colour-flipped
// mirror get the same terms. Potentials live in the colour's own entries and are never negated;
// `endgame_term` is kept from White's view.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "board/bitboard.h"
#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/score_pair.h"

// A square named as "e4".
constexpr Square Sq(const char* name) { return MakeSquare(name[0] - 'a', name[1] - '1'); }

// The set of the named squares.
constexpr Bitboard SquareSet(std::initializer_list<const char*> names) {
  Bitboard set = 0;
  for (const char* name : names) set |= SquareBit(Sq(name));
  return set;
}

// The squares of files first..last on ranks low..high (1 to 8).
constexpr Bitboard Rectangle(char first, char last, int low, int high) {
  Bitboard set = 0;
  for (int rank = low - 1; rank < high; ++rank) {
    for (int file = first - 'a'; file <= last - 'a'; ++file) set |= SquareBit(MakeSquare(file, rank));
  }
  return set;
}

// The board turned over: rank one becomes rank eight.
constexpr Bitboard FlipRanks(Bitboard b) {
  b = ((b >> 8) & 0x00ff00ff00ff00ffULL) | ((b & 0x00ff00ff00ff00ffULL) << 8);
  b = ((b >> 16) & 0x0000ffff0000ffffULL) | ((b & 0x0000ffff0000ffffULL) << 16);
  return (b >> 32) | (b << 32);
}

// A set stated for White, as it stands for colour c, and back. RelativeSquare and RelativeRank
// do the same for one square.
constexpr Bitboard RelativeSet(Color c, Bitboard b) { return c == WHITE ? b : FlipRanks(b); }
// The squares after s in colour c's own order of squares (square ^ 56 for Black): for White the
// higher squares; for Black the lower ranks and, on the rank of s, the files to its right.
constexpr Bitboard LaterSquares(Color c, Square s) {
  return RelativeSet(c, ~((SquareBit(RelativeSquare(s, c)) << 1) - 1));
}
// Whether colour c has any of the squares stated for White in `set` occupied by `pieces`.
constexpr bool Has(Color c, Bitboard pieces, Bitboard set) { return (pieces & RelativeSet(c, set)) != 0; }

// The colour's own entries of `potential`.
inline void AddAttack(EvaluationRecord& record, Color c, int wing, int amount) {
  std::int16_t& entry = record.potential[c][wing][POTENTIAL_ATTACK];
  entry = std::int16_t(entry + amount);
}
inline void AddDefence(EvaluationRecord& record, Color c, int wing, int amount) {
  std::int16_t& entry = record.potential[c][wing][POTENTIAL_DEFENCE];
  entry = std::int16_t(entry + amount);
}

// `endgame_term` from White's view: what counts for Black is subtracted.
inline void AddEndgameTerm(EvaluationRecord& record, Color c, int amount) {
  record.endgame_term = std::int16_t(record.endgame_term + (c == WHITE ? amount : -amount));
}

// The wing of a colour's king, as the evaluator noted it.
inline int KingWing(const EvaluationRecord& record, Color c) { return record.side_facts[c].king_wing; }

// The sum of one piece's term over the pieces on the set, from the lowest square up.
template <typename PieceTerm>
ScorePair SumOverPieces(Bitboard pieces, PieceTerm term) {
  ScorePair pair;
  while (pieces != 0) pair += term(PopFirstBit(pieces));
  return pair;
}
