#include "hash/transposition_table.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

namespace {

constexpr Move E2E4 = MakeMoveWord(12, 28, PAWN);
constexpr Move G1F3 = MakeMoveWord(6, 21, KNIGHT);

HASH_ENTRY LowerBound(std::uint64_t key, int score, int depth, Move move = E2E4) {
  return {key, std::int16_t(score), HASH_NO_UPPER, std::int16_t(depth), HASH_NO_DEPTH,
          MakeHashWord(move, true, 1, 0)};
}

HASH_ENTRY UpperBound(std::uint64_t key, int score, int depth, Move move = G1F3) {
  return {key, HASH_NO_LOWER, std::int16_t(score), HASH_NO_DEPTH, std::int16_t(depth),
          MakeHashWord(move, false, 1, 0)};
}

struct Probe {
  ProbeResult result;
  Move move = 0;
  int type = -1;
  int flags = -1;
};

Probe Ask(const TRANSPOSITION_TABLE& table, std::uint64_t key, int ply, int distance, int gamma) {
  Probe probe{PROBE_MISS};
  probe.result = table.ProbeEntry(key, ply, distance, gamma, probe.move, probe.type, probe.flags);
  return probe;
}

// An entry's bounds as {lower, lower depth, upper, upper depth}, and a bucket's two keys.
using Bounds = std::array<int, 4>;
Bounds BoundsOf(const HASH_ENTRY& e) { return {e.lower, e.lower_depth, e.upper, e.upper_depth}; }
using Keys = std::array<std::uint64_t, 2>;
Keys KeysOf(const HASH_ENTRY* bucket) { return {bucket[0].key, bucket[1].key}; }

TEST(TranspositionTable, ProbeTrustsTheLastStoredBoundAtTheEntrysDepthOnly) {
  TRANSPOSITION_TABLE table;
  HASH_ENTRY entry = LowerBound(0x1234, 100, 128);
  entry.word = MakeHashWord(E2E4, true, 7, 0x12);
  table.StoreEntry(entry);

  Probe probe = Ask(table, 0x1234, 3, 128, 90);
  EXPECT_EQ(probe.result, PROBE_AT_LEAST_GAMMA);
  EXPECT_EQ(probe.move, E2E4);
  EXPECT_EQ(probe.type, 7);
  EXPECT_EQ(probe.flags, 0x12);
  EXPECT_EQ(Ask(table, 0x1234, 3, 128, 100).result, PROBE_AT_LEAST_GAMMA);
  EXPECT_EQ(Ask(table, 0x1234, 3, 128, 101).result, PROBE_NO_CUTOFF);
  EXPECT_EQ(Ask(table, 0x1234, 3, 192, 90).result, PROBE_NO_CUTOFF);  // too shallow
  EXPECT_EQ(Ask(table, 0x1234, 3, 64, 200).result, PROBE_NO_CUTOFF);  // no upper bound
  EXPECT_EQ(Ask(table, 0x1235, 3, 64, 90).result, PROBE_MISS);
  EXPECT_EQ(Ask(table, 0x1234 + 256, 3, 64, 90).result, PROBE_MISS);  // same bucket, other key

  // An upper bound stored last: its own bound needs only the entry's depth, the lower its own.
  TRANSPOSITION_TABLE other;
  HASH_ENTRY both = UpperBound(9, 50, 128);
  both.lower = 20;
  both.lower_depth = 64;
  other.StoreEntry(both);
  EXPECT_EQ(Ask(other, 9, 0, 128, 51).result, PROBE_BELOW_GAMMA);
  EXPECT_EQ(Ask(other, 9, 0, 128, 50).result, PROBE_NO_CUTOFF);
  EXPECT_EQ(Ask(other, 9, 0, 64, 20).result, PROBE_AT_LEAST_GAMMA);
  EXPECT_EQ(Ask(other, 9, 0, 65, 20).result, PROBE_NO_CUTOFF);

  // With the cutoff bit, the upper bound is used only as deep as it was proven.
  both.word = MakeHashWord(E2E4, true, 1, 0);
  both.upper_depth = 64;
  both.lower_depth = 128;
  other.Clear();
  other.StoreEntry(both);
  EXPECT_EQ(Ask(other, 9, 0, 64, 51).result, PROBE_BELOW_GAMMA);
  EXPECT_EQ(Ask(other, 9, 0, 65, 51).result, PROBE_NO_CUTOFF);
}

TEST(TranspositionTable, MateScoresAreKeptRelativeToTheNode) {
  EXPECT_EQ(ScoreToHash(32762, 5), 32767);
  EXPECT_EQ(ScoreFromHash(32767, 9), 32758);
  EXPECT_EQ(ScoreToHash(31766, 5), 31766);
  EXPECT_EQ(ScoreToHash(-31767, 5), -31772);

  TRANSPOSITION_TABLE table;
  table.StoreEntry(LowerBound(42, ScoreToHash(32762, 5), 64));
  EXPECT_EQ(Ask(table, 42, 9, 64, 32758).result, PROBE_AT_LEAST_GAMMA);
  EXPECT_EQ(Ask(table, 42, 9, 64, 32759).result, PROBE_NO_CUTOFF);
  table.StoreEntry(UpperBound(43, ScoreToHash(-32762, 5), 64));
  EXPECT_EQ(Ask(table, 43, 9, 64, -32757).result, PROBE_BELOW_GAMMA);
  EXPECT_EQ(Ask(table, 43, 9, 64, -32758).result, PROBE_NO_CUTOFF);
}

TEST(TranspositionTable, StoresOfOnePositionNarrowTheSameEntry) {
  TRANSPOSITION_TABLE table;
  table.StoreEntry(LowerBound(5, 40, 128));
  table.StoreEntry(UpperBound(5, 50, 128));
  const HASH_ENTRY* bucket = table.Bucket(5);
  EXPECT_EQ(KeysOf(bucket), (Keys{5, 0}));  // one entry only
  EXPECT_EQ(BoundsOf(bucket[0]), (Bounds{40, 128, 50, 128}));
  EXPECT_EQ(HashWordMove(bucket[0].word), G1F3);  // the new word
  EXPECT_FALSE(HashWordCutoff(bucket[0].word));

  // A bound inconsistent with the new one is not inherited.
  table.StoreEntry(UpperBound(5, 30, 128));
  EXPECT_EQ(bucket[0].upper, 30);
  EXPECT_EQ(bucket[0].lower, HASH_NO_LOWER);

  // A shallower store into a deeper entry refines only its bounds and keeps its word.
  table.StoreEntry(LowerBound(6, 0, 256, E2E4));
  table.StoreEntry(UpperBound(6, 100, 64));
  const HASH_ENTRY& deep = table.Bucket(6)[0];
  EXPECT_EQ(deep.upper, 100);
  EXPECT_EQ(deep.upper_depth, 64);
  EXPECT_EQ(HashWordMove(deep.word), E2E4);
  EXPECT_TRUE(HashWordCutoff(deep.word));
  table.StoreEntry(LowerBound(6, 20, 256, G1F3));  // as deep: replaces, inheriting the upper bound
  EXPECT_EQ(deep.lower, 20);
  EXPECT_EQ(deep.upper, 100);
  EXPECT_EQ(HashWordMove(deep.word), G1F3);
  table.StoreEntry(LowerBound(6, 30, 300, E2E4));
  table.StoreEntry(LowerBound(6, 60, 256, G1F3));
  EXPECT_EQ(deep.lower, 30);  // lower_depth 300 > 256: not refined
  table.StoreEntry(UpperBound(6, 90, 300, G1F3));
  EXPECT_EQ(deep.upper, 90);
  EXPECT_EQ(deep.lower, 30);
  table.StoreEntry(UpperBound(6, 70, 200, G1F3));
  EXPECT_EQ(deep.upper, 90);  // upper_depth 300 > 200: kept
}

TEST(TranspositionTable, ReplacementPrefersTheCurrentSearchAndDepth) {
  TRANSPOSITION_TABLE table;
  // Keys 1, 257, 513, 769 share a bucket of the smallest table.
  table.StoreEntry(LowerBound(1, 0, 300));
  table.StoreEntry(LowerBound(257, 0, 100));
  const HASH_ENTRY* bucket = table.Bucket(1);
  EXPECT_EQ(KeysOf(bucket), (Keys{1, 257}));  // deeper stays first

  // A new position less deep than a current first entry overwrites the second, even a deeper one.
  table.StoreEntry(LowerBound(513, 0, 64));
  EXPECT_EQ(KeysOf(bucket), (Keys{1, 513}));
  table.StoreEntry(LowerBound(769, 0, 300));  // as deep as the first: goes first
  EXPECT_EQ(KeysOf(bucket), (Keys{769, 1}));

  // In a later search a new position goes first whatever its depth; the old first becomes second
  // with age 0, and the old second is gone.
  table.NewSearch();
  table.StoreEntry(LowerBound(513, 0, -64));
  EXPECT_EQ(KeysOf(bucket), (Keys{513, 769}));
  EXPECT_EQ(HashWordAge(bucket[0].word), table.Age());
  EXPECT_EQ(HashWordAge(bucket[1].word), 0u);

  // An old deeper second entry touched again becomes current and moves to the front past an
  // old first one.
  table.NewSearch();
  table.StoreEntry(UpperBound(769, 10, 64));
  EXPECT_EQ(KeysOf(bucket), (Keys{769, 513}));
  EXPECT_EQ(BoundsOf(bucket[0]), (Bounds{0, 300, 10, 64}));  // refined, while lower bound and word stay
  EXPECT_EQ(HashWordMove(bucket[0].word), E2E4);
  EXPECT_EQ(HashWordAge(bucket[0].word), table.Age());
  EXPECT_EQ(HashWordAge(bucket[1].word), 0u);

  // A current second entry refined by a shallower store moves first only if deeper than the first.
  table.StoreEntry(LowerBound(1, 0, 32));   // new and shallow: second
  table.StoreEntry(LowerBound(1, 5, 16));   // refines the second, which is less deep than the first
  EXPECT_EQ(KeysOf(bucket), (Keys{769, 1}));
  EXPECT_EQ(bucket[1].lower, 0);  // depth 16 < 32: no refinement
}

TEST(TranspositionTable, AgeRunsFromOneToItsMaximumAndNeverHitsZero) {
  TRANSPOSITION_TABLE table;
  table.NewSearch();
  table.Clear();
  EXPECT_EQ(table.Age(), 1u);
  for (std::uint32_t i = 0; i < 0x7ffffe; ++i) table.NewSearch();
  EXPECT_EQ(table.Age(), 0x7fffffu);
  table.StoreEntry(LowerBound(3, 0, 64));
  EXPECT_EQ(HashWordAge(table.Bucket(3)[0].word), 0x7fffffu);
  table.NewSearch();
  EXPECT_EQ(table.Age(), 1u);
}

TEST(TranspositionTable, PvEntryAndMoveProbe) {
  HASH_ENTRY pv = MakePvEntry(99, E2E4, 4, true, false, true);
  EXPECT_EQ(BoundsOf(pv), (Bounds{-32767, -32767, 32767, -32767}));
  EXPECT_EQ(HashWordMove(pv.word), E2E4);
  EXPECT_TRUE(HashWordCutoff(pv.word));
  EXPECT_EQ(HashWordPositionType(pv.word), 4);
  EXPECT_EQ(HashWordThreatFlags(pv.word), 8 | 1 | 2);

  TRANSPOSITION_TABLE table;
  Move move = 0;
  int depth = 0;
  EXPECT_FALSE(table.ProbeMove(99, move, depth));
  table.StoreEntry(pv);
  ASSERT_TRUE(table.ProbeMove(99, move, depth));
  EXPECT_EQ(move, E2E4);
  EXPECT_EQ(depth, -32767);
  // A PV entry answers no test but gives its move.
  Probe probe = Ask(table, 99, 0, -64000, 0);
  EXPECT_EQ(probe.result, PROBE_NO_CUTOFF);
  EXPECT_EQ(probe.move, E2E4);
}

}  // namespace
