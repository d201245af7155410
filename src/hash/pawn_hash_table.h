// The pawn table: pawn structure facts by pawn key and position type, since the structure's scores
// are built with the tables of the position's variant.
#pragma once

#include <cstdint>
#include <memory>

#include "board/attack_tables.h"
#include "board/types.h"
#include "hash/abstract_hash_table.h"

// One stored pawn structure. Entries of position types 0 and 1 are full; the others are short and
// leave `positional`, `dynamic` and `potential` unused, and use `simple` instead. Type 16 is never
// stored.
struct PAWN_HASH_ENTRY {
  std::uint64_t key;           // pawn key
  std::int32_t position_type;  // -1 in an empty slot, so that a pawnless position never hits one
  // Bits 0-1 queenside owner, 2-4 its owner files, 5-7 its other pawns; bits 11-12 kingside owner,
  // 13-15 its owner files, 16-18 its other pawns; bits 22 and up openness.
  std::uint32_t structure;
  Bitboard passed;  // both colours joined; split by and-ing with each colour's pawns
  Bitboard isolated;
  Bitboard backward;
  Bitboard backward_weak;
  Bitboard safe_advance[2];  // per colour
  std::int16_t positional;   // full entries
  std::int16_t dynamic;      // full entries
  std::int16_t simple;       // short entries
  std::int16_t unused;
  // Full entries. Words 0 and 1: White's attack and defence of wings 0, 1, 2; words 2 and 3 the same
  // for Black. Each value: sign bit at 0, 10, 20 and a 9-bit magnitude at 1, 11, 21.
  std::uint32_t potential[4];
  std::uint8_t reserved[24];  // keeps the entry at the table's 112 bytes
};
static_assert(sizeof(PAWN_HASH_ENTRY) == 112);

class PAWN_HASH_TABLE final : public ABSTRACT_HASH_TABLE {
 public:
  static constexpr std::uint64_t SMALLEST_BYTES = 7168;

  PAWN_HASH_TABLE();

  bool Resize(std::uint64_t bytes) override;
  void Clear() override;
  std::uint64_t SlotCount() const override { return mask + 1; }
  std::uint64_t FreeSlotCount() const override;
  std::uint64_t EntrySize() const override { return sizeof(PAWN_HASH_ENTRY); }

  // The entry of these pawns in this position type, or null.
  const PAWN_HASH_ENTRY* Probe(std::uint64_t pawn_key, int position_type) const {
    const PAWN_HASH_ENTRY& entry = slots[Index(pawn_key, position_type)];
    return entry.key == pawn_key && entry.position_type == position_type ? &entry : nullptr;
  }
  // Asks for the slot of a pawn structure about to be evaluated; an entry spans up to three lines.
  void Prefetch(std::uint64_t pawn_key, int position_type) const {
    const char* slot = reinterpret_cast<const char*>(&slots[Index(pawn_key, position_type)]);
    __builtin_prefetch(slot);
    __builtin_prefetch(slot + 64);
    __builtin_prefetch(slot + sizeof(PAWN_HASH_ENTRY) - 1);
  }
  // Overwrites the slot of `entry.key` and `entry.position_type`.
  void Store(const PAWN_HASH_ENTRY& entry) { slots[Index(entry.key, entry.position_type)] = entry; }

  std::uint64_t Mask() const { return mask; }
  // The slot of these pawns in this position type: the same pawns land apart for different types.
  std::uint64_t Index(std::uint64_t pawn_key, int position_type) const {
    return (pawn_key ^ Tables.piece_keys[position_type][0]) & mask;
  }

 private:
  SlotArray<PAWN_HASH_ENTRY> slots;
  std::uint64_t mask = 0;
};
