// The full evaluator of the opening and middlegame types: a ScorePair built term by term from
// White's point of view, mixed into one value and added to the material.
#pragma once

#include <array>

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// How near the endgame is, by the material test value t = 22..35 of the classification (index
// t - 22); 0 from 36 on.
extern const std::array<double, 14> ENDGAME_FACTOR;

// The endgame factor of a position; positions below middlegame material count as full endgames.
double EndgameFactor(const Board& board);

// A piece advantage, or a trade of pieces of different kinds, on top of the plain material.
ScorePair MaterialImbalance(const Board& board);

// A pawn up, weighed against the attack potentials: an extra pawn counts for less, dynamically,
// when the other side has the greater attack.
ScorePair PawnUpCompensation(const EvaluationRecord& record, const Board& board);

// A score from the side to move's view; sets `record.lazy` when its lazy test answered with
// bound (reached) or bound - 1 (not reached).
int EvaluateFull(EvaluationRecord& record, const Board& board, int bound, EvaluationVariant variant);
