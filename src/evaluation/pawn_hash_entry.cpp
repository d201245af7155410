#include "evaluation/pawn_hash_entry.h"

#include <cstdlib>

#include "board/bitboard.h"
#include "frame/checked_assert.h"

namespace {

constexpr int MAJORITY_SHIFT[2] = {0, 11};  // queenside, kingside
constexpr int OPENNESS_SHIFT = 22;

bool IsFullType(PositionType type) {
  return type == POSITION_OPENING || type == POSITION_MIDDLEGAME;
}

std::uint32_t PackMajority(const WingMajority& majority) {
  if (majority.owner == 0) return 0;
  return majority.owner | std::uint32_t(majority.owner_files & 7) << 2 |
         std::uint32_t(majority.other_pawns & 7) << 5;
}

WingMajority UnpackMajority(std::uint32_t bits) {
  WingMajority majority{};
  majority.owner = bits & 3;
  if (majority.owner != 0) {
    majority.owner_files = std::uint16_t(bits >> 2 & 7);
    majority.other_pawns = std::uint16_t(bits >> 5 & 7);
  }
  return majority;
}

// Three values of one colour and kind (attack or defence), each a sign bit and a 9-bit magnitude.
std::uint32_t PackPotentials(const std::int16_t potential[WING_COUNT][2], int kind) {
  std::uint32_t word = 0;
  for (int wing = 0; wing < WING_COUNT; ++wing) {
    int value = potential[wing][kind];
    std::uint32_t field = (value < 0 ? 1u : 0u) | std::uint32_t(std::abs(value) & 511) << 1;
    word |= field << (10 * wing);
  }
  return word;
}

void UnpackPotentials(std::uint32_t word, std::int16_t potential[WING_COUNT][2], int kind) {
  for (int wing = 0; wing < WING_COUNT; ++wing) {
    std::uint32_t field = word >> (10 * wing);
    int magnitude = int(field >> 1 & 511);
    potential[wing][kind] = std::int16_t((field & 1) != 0 ? -magnitude : magnitude);
  }
}

}  // namespace

PAWN_HASH_ENTRY ConstructPawnHashEntry(const EvaluationRecord& record, const Board& board,
                                       PositionType position_type) {
  CHECKED_ASSERT(position_type != POSITION_MATING && position_type >= 0 &&
                     position_type < NO_POSITION_TYPE,
                 __FILE__, "PAWN_HASH_ENTRY::Construct: unexpected position_type");
  const PawnFacts* pawns = record.pawns;
  PAWN_HASH_ENTRY entry{};
  entry.key = board.PawnKey();
  entry.position_type = position_type;
  entry.structure = PackMajority(record.majority[0]) << MAJORITY_SHIFT[0] |
                    PackMajority(record.majority[1]) << MAJORITY_SHIFT[1] |
                    std::uint32_t(record.openness) << OPENNESS_SHIFT;
  entry.passed = pawns[WHITE].passed | pawns[BLACK].passed;
  entry.isolated = pawns[WHITE].isolated | pawns[BLACK].isolated;
  entry.backward = pawns[WHITE].backward | pawns[BLACK].backward;
  entry.backward_weak = pawns[WHITE].backward_weak | pawns[BLACK].backward_weak;
  for (Color c : {WHITE, BLACK}) entry.safe_advance[c] = pawns[c].safe_advance;
  if (IsFullType(position_type)) {
    const PawnSummary& summary = record.pawn_summary;
    entry.positional = summary.positional;
    entry.dynamic = summary.dynamic;
    for (Color c : {WHITE, BLACK}) {
      for (int kind : {POTENTIAL_ATTACK, POTENTIAL_DEFENCE}) {
        entry.potential[2 * c + kind] = PackPotentials(summary.potential[c], kind);
      }
    }
  } else {
    entry.simple = record.pawn_summary.simple;
  }
  return entry;
}

void RestorePawnHashEntry(const PAWN_HASH_ENTRY& entry, EvaluationRecord& record, const Board& board) {
  for (Color c : {WHITE, BLACK}) {
    PawnFacts& facts = record.pawns[c];
    Bitboard own = board.sides[c].pawns;
    facts.passed = entry.passed & own;
    facts.passed_count = std::uint16_t(PopCount(facts.passed));
    facts.isolated = entry.isolated & own;
    facts.backward = entry.backward & own;
    facts.backward_weak = entry.backward_weak & own;
    facts.safe_advance = entry.safe_advance[c];
  }
  record.majority[0] = UnpackMajority(entry.structure >> MAJORITY_SHIFT[0]);
  record.majority[1] = UnpackMajority(entry.structure >> MAJORITY_SHIFT[1]);
  record.openness = std::uint16_t(entry.structure >> OPENNESS_SHIFT);

  PawnSummary& summary = record.pawn_summary;
  summary.from_hash = 1;
  if (IsFullType(entry.position_type)) {
    summary.positional = entry.positional;
    summary.dynamic = entry.dynamic;
    for (Color c : {WHITE, BLACK}) {
      for (int kind : {POTENTIAL_ATTACK, POTENTIAL_DEFENCE}) {
        UnpackPotentials(entry.potential[2 * c + kind], summary.potential[c], kind);
      }
    }
  } else {
    summary.simple = entry.simple;
  }
}
