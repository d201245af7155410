#include "hash/evaluation_hash_table.h"

#include <gtest/gtest.h>

// How sizes round is tested with the resize command.
TEST(EvaluationHashTable, Overwrites) {
  EVALUATION_HASH_TABLE table;
  ASSERT_TRUE(table.Resize(3 * 512));
  EXPECT_EQ(table.SlotCount(), 64u);

  EXPECT_EQ(table.Probe(0x99, 0), EVALUATION_PROBE_MISS);
  table.Store(0x99, -120);
  EXPECT_EQ(table.Probe(0x99, -119), EVALUATION_PROBE_BELOW_BOUND);
  EXPECT_EQ(table.Probe(0x99, -120), EVALUATION_PROBE_AT_LEAST_BOUND);
  EXPECT_EQ(table.Probe(0x99 + 64, -120), EVALUATION_PROBE_MISS);
  EXPECT_EQ(table.FreeSlotCount(), 63u);

  table.Store(0x99 + 64, 300);  // same slot: the old score is gone
  EXPECT_EQ(table.Probe(0x99, -120), EVALUATION_PROBE_MISS);
  EXPECT_EQ(table.Probe(0x99 + 64, 300), EVALUATION_PROBE_AT_LEAST_BOUND);
  EXPECT_EQ(table.Probe(0x99 + 64, 301), EVALUATION_PROBE_BELOW_BOUND);

  table.Clear();
  EXPECT_EQ(table.Probe(0x99 + 64, 0), EVALUATION_PROBE_MISS);
  EXPECT_EQ(table.FreeSlotCount(), 64u);
}
