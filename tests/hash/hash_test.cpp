#include "hash/hash.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>

#include "board/attack_tables.h"

namespace {

TEST(HashTables, ResizeCommandChecksTypeThenSizeThenForceMode) {
  ASSERT_TRUE(TranspositionTable.Resize(1));
  TranspositionTable.StoreEntry(MakePvEntry(5, 1, 0, false, false, false));

  EXPECT_EQ(ResizeHashTableByCommand("foo", "8X", false), "unknown hashtable type");
  EXPECT_EQ(ResizeHashTableByCommand("trans", "8X", false), "could not parse new size");
  EXPECT_EQ(ResizeHashTableByCommand("trans", "-8M", true), "could not parse new size");
  EXPECT_EQ(ResizeHashTableByCommand("trans", "8M", false), "must be in force mode");
  EXPECT_EQ(TranspositionTable.MemorySize(), 12288u);

  // Far more than any machine has: refused, and the table goes on as it was, content included.
  EXPECT_EQ(ResizeHashTableByCommand("trans", "16000T", true), HASH_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(TranspositionTable.MemorySize(), 12288u);
  Move move = 0;
  int depth = 0;
  EXPECT_TRUE(TranspositionTable.ProbeMove(5, move, depth));

  EXPECT_EQ(ResizeHashTableByCommand("trans", "8M", true), "");
  EXPECT_EQ(TranspositionTable.MemorySize(), 6291456u);
  EXPECT_FALSE(TranspositionTable.ProbeMove(5, move, depth));
  EXPECT_EQ(ResizeHashTableByCommand("trans", "0", true), "");
  EXPECT_EQ(TranspositionTable.MemorySize(), 12288u);
  EXPECT_EQ(ResizeHashTableByCommand("pawn", "1", true), "");
  EXPECT_EQ(PawnHashTable.MemorySize(), 7168u);
  EXPECT_EQ(ResizeHashTableByCommand("eval", "1k", true), "");
  EXPECT_EQ(EvaluationHashTable.MemorySize(), 1024u);
}

TEST(HashTables, DetailedStatusTextCountsFilledSlots) {
  InitAttackTables();
  ASSERT_TRUE(TranspositionTable.Resize(1));
  ASSERT_TRUE(PawnHashTable.Resize(1));
  ASSERT_TRUE(EvaluationHashTable.Resize(1));
  TranspositionTable.StoreEntry(MakePvEntry(5, 1, 0, false, false, false));
  PAWN_HASH_ENTRY pawns{};
  pawns.key = 0;  // no pawns at all is a structure too
  pawns.position_type = 2;
  PawnHashTable.Store(pawns);
  for (std::uint64_t key = 1; key <= 8; ++key) EvaluationHashTable.Store(key, 0);

  EXPECT_EQ(HashTablesStatusText(true),
            "transposition table: 12.00 kilobyte\n"
            "#total slots:    512\n"
            "#free  slots:    511\n"
            "fill percentage: 0.19%\n\n"
            "pawn hashtable: 7.00 kilobyte\n"
            "#total slots:    64\n"
            "#free  slots:    63\n"
            "fill percentage: 1.56%\n\n"
            "evaluation hashtable: 512 byte\n"
            "#total slots:    32\n"
            "#free  slots:    24\n"
            "fill percentage: 25.00%\n\n");
}

#if !defined(__SANITIZE_ADDRESS__)
// Under an address space limit, a resize that the system refuses reports it and keeps the old table
// with its content; exits with 0 if so.
[[noreturn]] void ResizeUnderAddressSpaceLimit() {
  const rlim_t limit = rlim_t{768} << 20;
  const rlimit address_space{limit, limit};
  setrlimit(RLIMIT_AS, &address_space);
  TranspositionTable.Resize(1);
  TranspositionTable.StoreEntry(MakePvEntry(5, 1, 0, false, false, false));
  const bool refused = ResizeHashTableByCommand("trans", "2G", true) == HASH_NOT_ENOUGH_MEMORY;
  Move move = 0;
  int depth = 0;
  const bool kept = TranspositionTable.MemorySize() == 12288 && TranspositionTable.ProbeMove(5, move, depth);
  std::_Exit(refused && kept ? 0 : 1);
}
#endif

TEST(HashTablesDeathTest, AllocationRefusedBySystemKeepsTheOldTable) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "an address space limit doesn't mix with the address sanitizer";
#else
  EXPECT_EXIT(ResizeUnderAddressSpaceLimit(), ::testing::ExitedWithCode(0), "");
#endif
}

}  // namespace
