// The common face of the three hash tables: sizing, clearing, fill counts and ageing.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

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
  static std::unique_ptr<Entry[]> AllocateSlots(std::uint64_t count) {
    if (count == 0 || count > MaximumTableBytes() / sizeof(Entry)) return nullptr;
    try {
      return std::unique_ptr<Entry[]>(new (std::nothrow) Entry[count]);
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  }

  // The work of Resize for a table of `entries_per_index` entries per index: a fresh array in
  // `slots`, `mask` set to the number of indices minus one, and the table cleared. A refused
  // allocation returns false and leaves `slots` and `mask` as they were.
  template <typename Entry>
  bool ReplaceSlots(std::unique_ptr<Entry[]>& slots, std::uint64_t& mask, std::uint64_t bytes,
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
  void ZeroSlots(const std::unique_ptr<Entry[]>& slots) const {
    std::memset(static_cast<void*>(slots.get()), 0, SlotCount() * sizeof(Entry));
  }
};
