// The pawn structure: the facts that the pawns alone give, the structure's pair for the full
// evaluator, and the pawn terms that depend on the pieces too.
#pragma once

#include <cstdint>

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/score_pair.h"

// Pawn square tables of the two variants, by square for White.
extern const std::int16_t OPENING_PAWN_POSITIONAL[64];
extern const std::int16_t OPENING_PAWN_DYNAMIC[64];
extern const std::int16_t MIDDLEGAME_PAWN_POSITIONAL[64];
extern const std::int16_t MIDDLEGAME_PAWN_DYNAMIC[64];

// Writes `pawn_summary` for the full evaluator, on a pawn table miss.
void EvaluatePawnStructure(EvaluationRecord& record, const Board& board,
                           const std::int16_t positional_table[64], const std::int16_t dynamic_table[64]);

// The pawn terms that depend on the pieces; adds to `potential` and `endgame_term`.
ScorePair EvaluatePawnExtras(EvaluationRecord& record, const Board& board);
