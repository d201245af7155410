// The evaluation table: exact static scores by position key. A probe compares the stored score with
// a bound and answers with that comparison alone.
#pragma once

#include <cstdint>
#include <memory>

#include "hash/abstract_hash_table.h"

struct EVALUATION_HASH_ENTRY {
  std::uint64_t key;
  std::int16_t score;
};
static_assert(sizeof(EVALUATION_HASH_ENTRY) == 16);

// Answers of EVALUATION_HASH_TABLE::Probe.
enum EvaluationProbeResult {
  EVALUATION_PROBE_MISS = 0,
  EVALUATION_PROBE_BELOW_BOUND = 1,     // the stored score is below the bound
  EVALUATION_PROBE_AT_LEAST_BOUND = 2,  // the stored score is at least the bound
};

class EVALUATION_HASH_TABLE final : public ABSTRACT_HASH_TABLE {
 public:
  static constexpr std::uint64_t SMALLEST_BYTES = 512;

  EVALUATION_HASH_TABLE();

  bool Resize(std::uint64_t bytes) override;
  void Clear() override;
  std::uint64_t SlotCount() const override { return mask + 1; }
  std::uint64_t FreeSlotCount() const override;
  std::uint64_t EntrySize() const override { return sizeof(EVALUATION_HASH_ENTRY); }

  EvaluationProbeResult Probe(std::uint64_t key, int bound) const {
    const EVALUATION_HASH_ENTRY& entry = slots[key & mask];
    if (entry.key != key) return EVALUATION_PROBE_MISS;
    return bound > entry.score ? EVALUATION_PROBE_BELOW_BOUND : EVALUATION_PROBE_AT_LEAST_BOUND;
  }
  void Store(std::uint64_t key, int score) { slots[key & mask] = {key, std::int16_t(score)}; }
  // Asks the processor for the slot of a position about to be evaluated.
  void Prefetch(std::uint64_t key) const { __builtin_prefetch(&slots[key & mask]); }

 private:
  SlotArray<EVALUATION_HASH_ENTRY> slots;
  std::uint64_t mask = 0;
};
