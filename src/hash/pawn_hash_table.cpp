#include "hash/pawn_hash_table.h"

PAWN_HASH_TABLE::PAWN_HASH_TABLE() { Resize(SMALLEST_BYTES); }

bool PAWN_HASH_TABLE::Resize(std::uint64_t bytes) { return ReplaceSlots(slots, mask, bytes, SMALLEST_BYTES); }

void PAWN_HASH_TABLE::Clear() {
  ZeroSlots(slots);
  // A position without pawns has the pawn key 0, which a zeroed slot must not answer.
  for (std::uint64_t i = 0; i < SlotCount(); ++i) slots[i].position_type = -1;
}

std::uint64_t PAWN_HASH_TABLE::FreeSlotCount() const {
  std::uint64_t free = 0;
  for (std::uint64_t i = 0; i < SlotCount(); ++i) free += slots[i].position_type < 0;
  return free;
}
