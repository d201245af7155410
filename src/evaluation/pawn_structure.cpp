#include "evaluation/pawn_structure.h"

// Opening variant positional half, by square for White, rank one first.
const std::int16_t OPENING_PAWN_POSITIONAL[64] = {
      0,   0,   0,   0,   0,   0,   0,   0,
    -13,  -4,  -8,   4,   4,  -4,  -4, -13,
    -14,  -4,   3,  10,  10,   3,  -4, -14,
    -14,  -6,  10,  22,  22,   6,  -6, -14,
    -13,  -4,   7,  14,  14,   5,  -6, -13,
    -12,  -2,   8,  22,  22,   6,  -6, -12,
      8,  10,  10,  -6,  -6,  10,  10,   8,
      0,   0,   0,   0,   0,   0,   0,   0,
};

// Opening variant dynamic half, by square for White, rank one first.
const std::int16_t OPENING_PAWN_DYNAMIC[64] = {
      0,   0,   0,   0,   0,   0,   0,   0,
    -20, -15,  -8,   6,   6,  -6, -15, -20,
    -24, -15,  -3,  16,  16,  -3, -15, -24,
    -22, -15,  10,  34,  34,   6, -15, -22,
    -20, -14,   5,  28,  28,   5, -15, -20,
    -18, -14,   6,  32,  32,   6, -14, -18,
      8,  10,  12,   0,   0,  10,  10,   8,
      0,   0,   0,   0,   0,   0,   0,   0,
};

// Middlegame variant positional half, by square for White, rank one first.
const std::int16_t MIDDLEGAME_PAWN_POSITIONAL[64] = {
      0,   0,   0,   0,   0,   0,   0,   0,
    -15,  -6,  -6,   8,   8,  -4,  -6, -15,
    -14,  -7,   3,  12,  12,   3,  -7, -14,
    -14,  -6,   6,  18,  18,   6,  -6, -14,
    -13,  -4,   5,  21,  21,   5,  -6, -13,
    -12,  -2,   6,  21,  21,   6,  -6, -12,
      8,  10,  10,  -6,  -6,  10,  10,   8,
      0,   0,   0,   0,   0,   0,   0,   0,
};

// Middlegame variant dynamic half, by square for White, rank one first.
const std::int16_t MIDDLEGAME_PAWN_DYNAMIC[64] = {
      0,   0,   0,   0,   0,   0,   0,   0,
    -25, -18,  -6,   0,   0,  -6, -15, -25,
    -25, -17,  -3,   6,   6,  -3, -17, -25,
    -23, -13,   4,  28,  28,   6, -13, -23,
    -21, -12,   3,  28,  28,   5, -13, -21,
    -19, -12,   4,  26,  26,   6, -12, -19,
      8,  10,  10,   0,   0,  10,  10,   8,
      0,   0,   0,   0,   0,   0,   0,   0,
};

void EvaluatePawnStructure(EvaluationRecord&, const Board&, const std::int16_t*, const std::int16_t*) {
  // Not written yet: the pawn structure contributes nothing.
}

ScorePair EvaluatePawnExtras(EvaluationRecord&, const Board&) {
  return ScorePair();  // Not written yet.
}
