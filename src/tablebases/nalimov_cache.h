// The cache of decoded table blocks, shared by all table files: slots of 8192 bytes in one piece
// of memory, a recency list for eviction, a free list, and per file 32 chains of its blocks.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tablebases/nalimov_ending.h"

namespace NalimovTablebases {

struct TB_CACHE_BLOCK {
  std::int32_t ending;
  std::int32_t side;
  std::uint32_t block;
  TB_CACHE_BLOCK* lru_older;  // also the next slot of the free list
  TB_CACHE_BLOCK* lru_newer;
  TB_CACHE_BLOCK* chain_next;
  TB_CACHE_BLOCK* chain_prev;
  unsigned char* data;
};
static_assert(sizeof(TB_CACHE_BLOCK) == 56 || sizeof(void*) != 8);

constexpr std::size_t CACHE_BLOCK_BYTES = 8192;
constexpr std::size_t CACHE_SLACK_BYTES = 36;  // room for copies that run past the end
constexpr std::size_t CACHE_SLOT_SIZE = sizeof(TB_CACHE_BLOCK) + CACHE_BLOCK_BYTES + CACHE_SLACK_BYTES;
constexpr int CACHE_BUCKETS = 32;

// Lays out size / CACHE_SLOT_SIZE slots in memory, all free, and empties every chain. False when
// size is above 0 but below one slot header.
bool LayOutCache(void* memory, std::size_t size);

int CacheSlotCount();

// Forgets the cache memory without touching it: no slots until the next LayOutCache.
void DetachCache();

// The slot holding a block of one file's side, made the newest; null if it isn't cached.
TB_CACHE_BLOCK* FindCachedBlock(int id, int side, std::uint32_t block);

// A slot to fill: a free one, else the least recently used, taken out of its chain. Null when the
// cache has no slots.
TB_CACHE_BLOCK* TakeCacheSlot();

// Files a filled slot as the newest and at the head of its chain.
void InsertCachedBlock(TB_CACHE_BLOCK* slot, int id, int side, std::uint32_t block);

// Returns a taken slot that couldn't be filled to the free list.
void ReleaseCacheSlot(TB_CACHE_BLOCK* slot);

}  // namespace NalimovTablebases
