// Packing the pawn structure facts of a record into a pawn table entry, and unpacking them. The
// entries of the opening and middlegame types are full; those of the endgame types are short and
// keep the simple evaluator's value instead of the pair and the potentials.
#pragma once

#include "board/board.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/position_type.h"
#include "hash/pawn_hash_table.h"

// What the pawn table keeps of the record. Stops with a checked assertion for the mating type,
// which never uses the pawn table.
PAWN_HASH_ENTRY ConstructPawnHashEntry(const EvaluationRecord& record, const Board& board,
                                       PositionType position_type);

// Fills the record from a hit: `passed` (and its count), `isolated`, `backward`, `backward_weak`,
// `safe_advance`, `majority`, `openness` and `pawn_summary`, with `from_hash` 1.
void RestorePawnHashEntry(const PAWN_HASH_ENTRY& entry, EvaluationRecord& record, const Board& board);
