#include "hash/pawn_hash_table.h"

#include <cstring>
#include <utility>

PAWN_HASH_TABLE::PAWN_HASH_TABLE() { Resize(SMALLEST_BYTES); }

bool PAWN_HASH_TABLE::Resize(std::uint64_t bytes) {
  const std::uint64_t count = IndexCountFor(bytes, SMALLEST_BYTES, sizeof(PAWN_HASH_ENTRY));
  auto fresh = AllocateSlots<PAWN_HASH_ENTRY>(count);
  if (!fresh) return false;
  slots = std::move(fresh);
  mask = count - 1;
  Clear();
  return true;
}

void PAWN_HASH_TABLE::Clear() {
  std::memset(static_cast<void*>(slots.get()), 0, SlotCount() * sizeof(PAWN_HASH_ENTRY));
  // A position without pawns has the pawn key 0, which a zeroed slot must not answer.
  for (std::uint64_t i = 0; i < SlotCount(); ++i) slots[i].position_type = -1;
}

std::uint64_t PAWN_HASH_TABLE::FreeSlotCount() const {
  std::uint64_t free = 0;
  for (std::uint64_t i = 0; i < SlotCount(); ++i) free += slots[i].position_type < 0;
  return free;
}
