// The transposition table. Built for a search of zero-window tests: an entry keeps a lower and an
// upper bound of the position's value, each with the distance at which it was proven, so that the
// tests of one position at different gammas narrow the same entry.
#pragma once

#include <cstdint>
#include <memory>

#include "board/types.h"
#include "hash/abstract_hash_table.h"

// `word` of an entry: move (bits 0-22), cutoff bit (24), position type (25-29),
// threat flags (30-40, the low five used) and age (41-63).
constexpr std::uint64_t HASH_WORD_MOVE_MASK = 0x7fffff;
constexpr std::uint64_t HASH_WORD_CUTOFF = std::uint64_t{1} << 24;
constexpr int HASH_WORD_TYPE_SHIFT = 25;
constexpr int HASH_WORD_FLAGS_SHIFT = 30;
constexpr int HASH_WORD_AGE_SHIFT = 41;
constexpr std::uint64_t HASH_WORD_AGE_MASK = std::uint64_t{0x7fffff} << HASH_WORD_AGE_SHIFT;
constexpr std::uint32_t HASH_MAX_AGE = 0x7fffff;

// Bounds and depths that an entry doesn't have.
constexpr std::int16_t HASH_NO_LOWER = -32767;
constexpr std::int16_t HASH_NO_UPPER = 32767;
constexpr std::int16_t HASH_NO_DEPTH = -32767;

constexpr std::uint64_t MakeHashWord(Move move, bool cutoff, int position_type, int threat_flags) {
  return (std::uint64_t(move) & HASH_WORD_MOVE_MASK) | (cutoff ? HASH_WORD_CUTOFF : 0) |
         std::uint64_t(position_type & 31) << HASH_WORD_TYPE_SHIFT |
         std::uint64_t(threat_flags & 0x1f) << HASH_WORD_FLAGS_SHIFT;
}
constexpr Move HashWordMove(std::uint64_t word) { return Move(word & HASH_WORD_MOVE_MASK); }
constexpr bool HashWordCutoff(std::uint64_t word) { return (word & HASH_WORD_CUTOFF) != 0; }
constexpr int HashWordPositionType(std::uint64_t word) { return int(word >> HASH_WORD_TYPE_SHIFT) & 31; }
constexpr int HashWordThreatFlags(std::uint64_t word) { return int(word >> HASH_WORD_FLAGS_SHIFT) & 0x7ff; }
constexpr std::uint32_t HashWordAge(std::uint64_t word) { return std::uint32_t(word >> HASH_WORD_AGE_SHIFT); }
constexpr std::uint64_t WithHashWordAge(std::uint64_t word, std::uint32_t age) {
  return (word & ~HASH_WORD_AGE_MASK) | std::uint64_t(age) << HASH_WORD_AGE_SHIFT;
}

// Mate scores are kept relative to the node that stores them, so that a mate found through one
// path reads right at another ply.
constexpr int ScoreToHash(int score, int ply) {
  return score > 31766 ? score + ply : score <= -31767 ? score - ply : score;
}
constexpr int ScoreFromHash(int score, int ply) {
  return score > 31766 ? score - ply : score < -31766 ? score + ply : score;
}

struct HASH_ENTRY {
  std::uint64_t key;
  std::int16_t lower;
  std::int16_t upper;
  std::int16_t lower_depth;
  std::int16_t upper_depth;
  std::uint64_t word;
};
static_assert(sizeof(HASH_ENTRY) == 24);

// The larger of the two depths.
constexpr int HashEntryDepth(const HASH_ENTRY& entry) {
  return entry.lower_depth > entry.upper_depth ? entry.lower_depth : entry.upper_depth;
}

enum ProbeResult {
  PROBE_MISS = 0,
  PROBE_BELOW_GAMMA = 1,
  PROBE_AT_LEAST_GAMMA = 2,
  PROBE_NO_CUTOFF = 3,
};

// The entry that the principal variation is restored with: no bounds, the move with the cutoff bit,
// and the threat flags 0x04/0x08 (queen attacked or not), 0x01 (single move), 0x02 (mate threat).
HASH_ENTRY MakePvEntry(std::uint64_t key, Move move, int position_type, bool single, bool queen_attacked,
                       bool mate_threat);

class TRANSPOSITION_TABLE final : public ABSTRACT_HASH_TABLE {
 public:
  static constexpr std::uint64_t SMALLEST_BYTES = 12288;

  TRANSPOSITION_TABLE();

  bool Resize(std::uint64_t bytes) override;
  void Clear() override;
  std::uint64_t SlotCount() const override { return 2 * (mask + 1); }
  std::uint64_t FreeSlotCount() const override;
  std::uint64_t EntrySize() const override { return sizeof(HASH_ENTRY); }
  void NewSearch() override { age = age == HASH_MAX_AGE ? 1 : age + 1; }

  // Answers a zero-window test at `gamma` with the bounds stored for `key`. Unless the result is
  // PROBE_MISS, the entry's move, position type and threat flags are given out.
  ProbeResult ProbeEntry(std::uint64_t key, int ply, int distance, int gamma, Move& move, int& position_type,
                         int& threat_flags) const;
  // True if `key` has an entry; gives its move and its larger depth.
  bool ProbeMove(std::uint64_t key, Move& move, int& depth) const;
  // Stores or refines the entry of `entry.key`. The caller fills in key, bounds (mate scores made
  // node-relative with ScoreToHash), depths, and the word without the age.
  void StoreEntry(HASH_ENTRY entry);

  std::uint32_t Age() const { return age; }
  // The two entries of the bucket of `key`, the preferred one first.
  const HASH_ENTRY* Bucket(std::uint64_t key) const { return &slots[2 * (key & mask)]; }
  // Asks the processor for the bucket of a position about to be searched, so that the memory
  // latency of its probe overlaps the work before it. A bucket of 48 bytes may span two lines.
  void Prefetch(std::uint64_t key) const {
    const char* bucket = reinterpret_cast<const char*>(Bucket(key));
    __builtin_prefetch(bucket);
    __builtin_prefetch(bucket + 2 * sizeof(HASH_ENTRY) - 1);
  }

 private:
  bool IsCurrent(const HASH_ENTRY& entry) const { return HashWordAge(entry.word) == age; }

  SlotArray<HASH_ENTRY> slots;
  std::uint64_t mask = 0;
  std::uint32_t age = 1;
};
