#include "hash/abstract_hash_table.h"

#include <unistd.h>

#include <algorithm>
#include <bit>
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
