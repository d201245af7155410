#include "hash/evaluation_hash_table.h"

EVALUATION_HASH_TABLE::EVALUATION_HASH_TABLE() { Resize(SMALLEST_BYTES); }

bool EVALUATION_HASH_TABLE::Resize(std::uint64_t bytes) { return ReplaceSlots(slots, mask, bytes, SMALLEST_BYTES); }

void EVALUATION_HASH_TABLE::Clear() { ZeroSlots(slots); }

std::uint64_t EVALUATION_HASH_TABLE::FreeSlotCount() const {
  std::uint64_t free = 0;
  for (std::uint64_t i = 0; i < SlotCount(); ++i) free += slots[i].key == 0;
  return free;
}
