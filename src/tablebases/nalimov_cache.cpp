#include "tablebases/nalimov_cache.h"

namespace NalimovTablebases {

namespace {

struct Cache {
  TB_CACHE_BLOCK* slots = nullptr;
  int slot_count = 0;
  TB_CACHE_BLOCK* newest = nullptr;
  TB_CACHE_BLOCK* oldest = nullptr;
  TB_CACHE_BLOCK* free_list = nullptr;
  TB_CACHE_BLOCK* buckets[ENDING_COUNT + 1][2][CACHE_BUCKETS] = {};
};

Cache cache;

TB_CACHE_BLOCK*& ChainHead(int id, int side, std::uint32_t block) {
  return cache.buckets[id][side][block & (CACHE_BUCKETS - 1)];
}

void UnlinkRecency(TB_CACHE_BLOCK* slot) {
  (slot->lru_older ? slot->lru_older->lru_newer : cache.oldest) = slot->lru_newer;
  (slot->lru_newer ? slot->lru_newer->lru_older : cache.newest) = slot->lru_older;
}

void PushNewest(TB_CACHE_BLOCK* slot) {
  slot->lru_older = cache.newest;
  slot->lru_newer = nullptr;
  (cache.newest ? cache.newest->lru_newer : cache.oldest) = slot;
  cache.newest = slot;
}

void UnlinkChain(TB_CACHE_BLOCK* slot, TB_CACHE_BLOCK*& head) {
  (slot->chain_prev ? slot->chain_prev->chain_next : head) = slot->chain_next;
  if (slot->chain_next) slot->chain_next->chain_prev = slot->chain_prev;
}

void PushChainHead(TB_CACHE_BLOCK* slot, TB_CACHE_BLOCK*& head) {
  slot->chain_prev = nullptr;
  slot->chain_next = head;
  if (head) head->chain_prev = slot;
  head = slot;
}

}  // namespace

bool LayOutCache(void* memory, std::size_t size) {
  if (size > 0 && size < sizeof(TB_CACHE_BLOCK)) return false;
  cache = Cache{};
  cache.slot_count = int(size / CACHE_SLOT_SIZE);
  cache.slots = static_cast<TB_CACHE_BLOCK*>(memory);
  auto* data = static_cast<unsigned char*>(memory) + cache.slot_count * sizeof(TB_CACHE_BLOCK);
  for (int i = cache.slot_count - 1; i >= 0; --i) {
    cache.slots[i].data = data + std::size_t(i) * (CACHE_BLOCK_BYTES + CACHE_SLACK_BYTES);
    ReleaseCacheSlot(&cache.slots[i]);
  }
  return true;
}

int CacheSlotCount() { return cache.slot_count; }

void DetachCache() { cache = Cache{}; }

// A hit becomes the newest slot and the head of its chain, so that the blocks in use stay near
// the front of both.
TB_CACHE_BLOCK* FindCachedBlock(int id, int side, std::uint32_t block) {
  TB_CACHE_BLOCK*& head = ChainHead(id, side, block);
  TB_CACHE_BLOCK* slot = head;
  while (slot && slot->block != block) slot = slot->chain_next;
  if (!slot) return nullptr;
  if (slot != cache.newest) {
    UnlinkRecency(slot);
    PushNewest(slot);
  }
  if (slot != head) {
    UnlinkChain(slot, head);
    PushChainHead(slot, head);
  }
  return slot;
}

// Free slots go first; then the least recently used block is given up.
TB_CACHE_BLOCK* TakeCacheSlot() {
  if (TB_CACHE_BLOCK* slot = cache.free_list) {
    cache.free_list = slot->lru_older;
    return slot;
  }
  TB_CACHE_BLOCK* slot = cache.oldest;
  if (!slot) return nullptr;
  UnlinkRecency(slot);
  UnlinkChain(slot, ChainHead(slot->ending, slot->side, slot->block));
  return slot;
}

void InsertCachedBlock(TB_CACHE_BLOCK* slot, int id, int side, std::uint32_t block) {
  slot->ending = id;
  slot->side = side;
  slot->block = block;
  PushNewest(slot);
  PushChainHead(slot, ChainHead(id, side, block));
}

void ReleaseCacheSlot(TB_CACHE_BLOCK* slot) {
  slot->lru_older = cache.free_list;
  slot->lru_newer = slot->chain_next = slot->chain_prev = nullptr;
  cache.free_list = slot;
}

}  // namespace NalimovTablebases
