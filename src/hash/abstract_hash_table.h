// The common face of the three hash tables: sizing, clearing, fill counts and ageing.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>

// Table memory is aligned so that no entry group straddles more cache lines than it must, and a
// table of two megabytes or more is aligned to a large page and offered to the kernel as one: a
// probe into tens of megabytes then misses the address translation cache far less often.
void* AllocateTableMemory(std::uint64_t bytes);
void FreeTableMemory(void* memory);
struct TableMemoryDeleter {
  void operator()(void* memory) const { FreeTableMemory(memory); }
};
template <typename Entry>
using SlotArray = std::unique_ptr<Entry[], TableMemoryDeleter>;

class ABSTRACT_HASH_TABLE {
 public:
  virtual ~ABSTRACT_HASH_TABLE() = default;

  // Gives the table the largest power-of-two number of indices that fits in `bytes` (at least the
  // table's smallest size) and clears it. When the memory can't be had, returns false and keeps the
  // old table with its content.
  virtual bool Resize(std::uint64_t bytes) = 0;
  virtual void Clear() = 0;
  virtual std::uint64_t SlotCount() const = 0;
  virtual std::uint64_t FreeSlotCount() const = 0;
  virtual std::uint64_t EntrySize() const = 0;
  std::uint64_t MemorySize() const { return SlotCount() * EntrySize(); }
  virtual void NewSearch() {}

  ABSTRACT_HASH_TABLE() = default;
  ABSTRACT_HASH_TABLE(const ABSTRACT_HASH_TABLE&) = delete;
  ABSTRACT_HASH_TABLE& operator=(const ABSTRACT_HASH_TABLE&) = delete;

  // The number of indices that Resize chooses: the largest power of two not above
  // max(bytes, smallest_bytes) / bytes_per_index.
  static std::uint64_t IndexCountFor(std::uint64_t bytes, std::uint64_t smallest_bytes,
                                     std::uint64_t bytes_per_index);

  // The most memory that one table may take: the machine's physical memory. A larger request is
  // refused without trying, so that no size typed by a user can make the program swap itself to death.
  static std::uint64_t MaximumTableBytes();

 protected:
  // An uninitialised array of `count` entries, or null when the memory is refused or over the limit.
  template <typename Entry>
  static SlotArray<Entry> AllocateSlots(std::uint64_t count) {
    static_assert(std::is_trivially_default_constructible_v<Entry> && std::is_trivially_destructible_v<Entry>);
    if (count == 0 || count > MaximumTableBytes() / sizeof(Entry)) return nullptr;
    return SlotArray<Entry>(static_cast<Entry*>(AllocateTableMemory(count * sizeof(Entry))));
  }

  // The work of Resize for a table of `entries_per_index` entries per index: a fresh array in
  // `slots`, `mask` set to the number of indices minus one, and the table cleared. A refused
  // allocation returns false and leaves `slots` and `mask` as they were.
  template <typename Entry>
  bool ReplaceSlots(SlotArray<Entry>& slots, std::uint64_t& mask, std::uint64_t bytes,
                    std::uint64_t smallest_bytes, std::uint64_t entries_per_index = 1) {
    const std::uint64_t indices = IndexCountFor(bytes, smallest_bytes, entries_per_index * sizeof(Entry));
    auto fresh = AllocateSlots<Entry>(entries_per_index * indices);
    if (!fresh) return false;
    slots = std::move(fresh);
    mask = indices - 1;
    Clear();
    return true;
  }

  // Zeroes every entry of the table's array.
  template <typename Entry>
  void ZeroSlots(const SlotArray<Entry>& slots) const {
    std::memset(static_cast<void*>(slots.get()), 0, SlotCount() * sizeof(Entry));
  }
};
