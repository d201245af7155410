// How the two halves of a ScorePair become one value: the situation on the board (material,
// queens, open lines, king placement and danger) and the personality choose a point between the
// positional and the dynamic half.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/score_pair.h"

// A king's cover turned into 0..1: 1 for no cover at all (below -9), 0 for good cover (above 4).
double ShelterCurve(int shelter);
// An attack on a king turned into 0..1: 0 below -4, 1 above 29.
double AttackCurve(int attack);

// The mix, 0 to 16 sixteenths of the way from the positional to the dynamic half, before it is
// limited; `personality` is included.
int MixOfPair(const EvaluationRecord& record, bool is_middlegame, const Board& board);

// The mixed value, from White's point of view, of a pair built from White's point of view. Uses
// `openness`, `endgame_factor` and `king_danger` of the record. Personalities beyond +-999 take one
// half outright.
int MixPair(const EvaluationRecord& record, ScorePair pair, bool is_middlegame, const Board& board);
