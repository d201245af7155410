#include "hash/evaluation_hash_table.h"

#include <cstring>
#include <utility>

EVALUATION_HASH_TABLE::EVALUATION_HASH_TABLE() { Resize(SMALLEST_BYTES); }

bool EVALUATION_HASH_TABLE::Resize(std::uint64_t bytes) {
  const std::uint64_t count = IndexCountFor(bytes, SMALLEST_BYTES, sizeof(EVALUATION_HASH_ENTRY));
  auto fresh = AllocateSlots<EVALUATION_HASH_ENTRY>(count);
  if (!fresh) return false;
  slots = std::move(fresh);
  mask = count - 1;
  Clear();
  return true;
}

void EVALUATION_HASH_TABLE::Clear() {
  std::memset(static_cast<void*>(slots.get()), 0, SlotCount() * sizeof(EVALUATION_HASH_ENTRY));
}

std::uint64_t EVALUATION_HASH_TABLE::FreeSlotCount() const {
  std::uint64_t free = 0;
  for (std::uint64_t i = 0; i < SlotCount(); ++i) free += slots[i].key == 0;
  return free;
}
