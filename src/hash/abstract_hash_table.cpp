#include "hash/abstract_hash_table.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <limits>

std::uint64_t ABSTRACT_HASH_TABLE::IndexCountFor(std::uint64_t bytes, std::uint64_t smallest_bytes,
                                                 std::uint64_t bytes_per_index) {
  return std::bit_floor(std::max(bytes, smallest_bytes) / bytes_per_index);
}

std::uint64_t ABSTRACT_HASH_TABLE::MaximumTableBytes() {
  static const std::uint64_t maximum = [] {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long page_size = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || page_size <= 0) return std::numeric_limits<std::uint64_t>::max();
    return std::uint64_t(pages) * std::uint64_t(page_size);
  }();
  return maximum;
}

void* AllocateTableMemory(std::uint64_t bytes) {
  constexpr std::uint64_t LARGE_PAGE = std::uint64_t{1} << 21;
  const std::uint64_t alignment = bytes >= LARGE_PAGE ? LARGE_PAGE : 64;
  const std::uint64_t rounded = (bytes + alignment - 1) / alignment * alignment;
  void* memory = std::aligned_alloc(alignment, rounded);
#ifdef MADV_HUGEPAGE
  if (memory != nullptr && alignment == LARGE_PAGE) madvise(memory, rounded, MADV_HUGEPAGE);
#endif
  return memory;
}

void FreeTableMemory(void* memory) { std::free(memory); }
