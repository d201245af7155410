// The working record of one evaluation and the smaller records it is made of. One record belongs
// to each search tree; every call of Evaluate fills it anew, keeping only `settings` (and the
// testing switch `allow_lazy_exits`).
#pragma once

#include <cstdint>

#include "board/types.h"
#include "evaluation/evaluation_settings.h"

// Wings: the queenside, the kingside and the centre.
constexpr int WING_QUEENSIDE = 0;
constexpr int WING_KINGSIDE = 1;
constexpr int WING_CENTRE = 2;
constexpr int WING_COUNT = 3;

// Two maps from file to wing; each use says which one applies.
constexpr int WING_OF_FILE[8] = {0, 0, 2, 2, 2, 2, 1, 1};
constexpr int KNIGHT_WING_OF_FILE[8] = {0, 0, 0, 2, 2, 1, 1, 1};

// Second index of a potential: what a colour can throw at a king on a wing, and how well it
// would cover its own king there.
constexpr int POTENTIAL_ATTACK = 0;
constexpr int POTENTIAL_DEFENCE = 1;

// The full evaluator comes in two variants with their own tables and margins.
enum class EvaluationVariant { OPENING, MIDDLEGAME };

// Validate allows up to 14 pawns of a colour.
constexpr int MAX_PAWN_SQUARES = 16;

// What the pawns of one colour say, as sets of squares and counts.
struct PawnFacts {
  Bitboard passed;               // no enemy pawn in the pawn's front span
  std::uint16_t passed_count;
  std::uint16_t pawn_count;
  std::uint16_t pawn_squares[MAX_PAWN_SQUARES];  // lowest square first
  Bitboard attacks;
  Bitboard attacked_once;
  Bitboard attacked_twice;
  Bitboard attack_majority;      // squares these pawns control against the enemy pawns
  Bitboard defended;             // pawns on squares in `attacks`
  Bitboard blocked;              // pawns with any piece on their stop square
  Bitboard restrained;           // blocked, or stop square attacked by an enemy pawn
  Bitboard duos;                 // pawns with an own pawn directly beside them
  Bitboard doubled;              // all pawns of files holding two or more
  std::uint16_t file_counts[8];
  Bitboard safe_advance;         // squares these pawns can walk to
  Bitboard advance_attacks;      // squares these pawns can come to attack
  Bitboard isolated;
  Bitboard backward;
  Bitboard backward_weak;
  Bitboard passed_front;         // the most advanced passed pawn of each file
  std::uint16_t passed_front_rank[8];  // its board rank per file, 0 when none
};

struct WingMajority {
  std::uint32_t owner;        // 0 none, 1 White, 2 Black
  std::uint16_t owner_files;  // files of the wing with a pawn of the owner
  std::uint16_t other_pawns;  // the other side's pawns counted against it
};

struct EvaluationSideFacts {
  bool bishop_pair;                 // bishops on squares of both colours
  std::int32_t king_wing;           // WING_OF_FILE of the king's file
  Bitboard attacks_without_queens;  // `attacks` before the queens were evaluated
  Bitboard attacks;                 // king, pawns and pieces, growing as the terms run
};

struct KingDanger {
  std::int16_t attack;    // what the enemy can bring against this king; high is dangerous
  std::int16_t shelter;   // the king's cover; low is dangerous
  std::uint16_t gaps_near;
  std::uint16_t gaps_far;
  double attack_factor;   // AttackCurve(attack)
};

// What the pawn structure contributes; kept in the pawn table.
struct PawnSummary {
  std::uint8_t from_hash;   // 1 when the pawn table held the structure
  std::int16_t positional;  // pair for the full evaluator
  std::int16_t dynamic;
  std::int16_t simple;      // value for the simple evaluator
  std::int16_t potential[2][WING_COUNT][2];  // the pawns' part of EvaluationRecord::potential
};

struct EvaluationRecord {
  EvaluationSettings* settings = &EvalSettings;  // kept across calls
  PawnFacts pawns[2];
  Bitboard rammed;                 // pawns that a pawn on their stop square holds
  std::uint16_t openness;          // 1 to 15, high is open
  WingMajority majority[2];        // queenside, kingside
  std::uint16_t files_without_pawn[2];        // by colour, bit f: no pawn of it on file f
  std::uint16_t files_without_pawn_count[2];
  std::int16_t single_open_file;   // the one file without any pawn, else -1
  EvaluationSideFacts side_facts[2];
  double endgame_factor;           // 0 to 1, 1 is a full endgame
  std::int16_t endgame_term;       // White's view; counts as far as the endgame is near
  KingDanger king_danger[2];
  std::int16_t potential[2][WING_COUNT][2];  // by colour, wing, attack or defence
  PawnSummary pawn_summary;
  bool lazy;                       // set by an evaluator that answered by its lazy test

  // Kept across calls. Off, the evaluators compute every score in full; tests use that to
  // check the lazy answers against the full ones.
  bool allow_lazy_exits = true;
};

// Empties everything but the fields kept across calls.
void ClearEvaluationRecord(EvaluationRecord& record);

// The basic facts that the evaluators fill before their terms, shared so that each fills them the
// same way.
struct Board;

// `pawn_squares` and `pawn_count` of both colours, lowest square first.
void BuildPawnSquares(EvaluationRecord& record, const Board& board);
// `passed` and `passed_count`: pawns with no enemy pawn in their front span.
void FindPassedPawns(EvaluationRecord& record, const Board& board);
// `files_without_pawn`, their counts and `single_open_file`.
void ComputeFileSets(EvaluationRecord& record, const Board& board);
// `bishop_pair` of both colours.
void SetBishopPairs(EvaluationRecord& record, const Board& board);
// `king_wing`, and `attacks` started with the king's attacks.
void StartSideFacts(EvaluationRecord& record, const Board& board);

// The lazy test of an evaluator that estimates one value, from the side to move's view: when the
// estimate lies more than `margin` away from the bound, sets `lazy`, puts bound - 1 (not reached)
// or bound (reached) into `answer` and returns true. Never taken while `allow_lazy_exits` is off.
bool TakeLazyExit(EvaluationRecord& record, int bound, int estimate, int margin, int& answer);
