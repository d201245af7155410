#include "hash/pawn_hash_table.h"

#include <gtest/gtest.h>

#include "board/attack_tables.h"

namespace {

PAWN_HASH_ENTRY Entry(std::uint64_t key, int position_type, std::int16_t simple) {
  PAWN_HASH_ENTRY entry{};
  entry.key = key;
  entry.position_type = position_type;
  entry.simple = simple;
  entry.passed = 0x00ff000000000000;
  return entry;
}

TEST(PawnHashTable, AHitNeedsKeyAndPositionType) {
  InitAttackTables();
  PAWN_HASH_TABLE table;
  ASSERT_TRUE(table.Resize(4194304));
  // An empty slot answers no pawn key, not even 0, the key of a position without pawns.
  for (int type = 0; type < 18; ++type) EXPECT_EQ(table.Probe(0, type), nullptr);
  EXPECT_EQ(table.FreeSlotCount(), table.SlotCount());

  const std::uint64_t key = 0x0123456789abcdefULL;
  EXPECT_NE(table.Index(key, 0), table.Index(key, 1));
  table.Store(Entry(key, 0, 11));
  table.Store(Entry(key, 1, 22));
  table.Store(Entry(0, 2, 33));
  ASSERT_NE(table.Probe(key, 0), nullptr);
  EXPECT_EQ(table.Probe(key, 0)->simple, 11);
  EXPECT_EQ(table.Probe(key, 0)->passed, 0x00ff000000000000u);
  EXPECT_EQ(table.Probe(key, 1)->simple, 22);
  EXPECT_EQ(table.Probe(key, 3), nullptr);
  ASSERT_NE(table.Probe(0, 2), nullptr);
  EXPECT_EQ(table.Probe(0, 2)->simple, 33);
  EXPECT_EQ(table.FreeSlotCount(), table.SlotCount() - 3);

  // A later store overwrites the slot, whatever it held.
  const std::uint64_t rival = key ^ (table.Mask() + 1);  // same slot for type 0
  table.Store(Entry(rival, 0, 44));
  EXPECT_EQ(table.Probe(key, 0), nullptr);
  EXPECT_EQ(table.Probe(rival, 0)->simple, 44);

  table.Clear();
  EXPECT_EQ(table.FreeSlotCount(), table.SlotCount());
}

}  // namespace
