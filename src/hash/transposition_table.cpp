#include "hash/transposition_table.h"

#include <utility>

HASH_ENTRY MakePvEntry(std::uint64_t key, Move move, int position_type, bool single, bool queen_attacked,
                       bool mate_threat) {
  const int flags = (queen_attacked ? 4 : 8) | (single ? 1 : 0) | (mate_threat ? 2 : 0);
  return HASH_ENTRY{key,          HASH_NO_LOWER, HASH_NO_UPPER, HASH_NO_DEPTH,
                    HASH_NO_DEPTH, MakeHashWord(move, true, position_type, flags)};
}

TRANSPOSITION_TABLE::TRANSPOSITION_TABLE() { Resize(SMALLEST_BYTES); }

// An index is a bucket of two entries.
bool TRANSPOSITION_TABLE::Resize(std::uint64_t bytes) { return ReplaceSlots(slots, mask, bytes, SMALLEST_BYTES, 2); }

void TRANSPOSITION_TABLE::Clear() {
  ZeroSlots(slots);
  age = 1;
}

std::uint64_t TRANSPOSITION_TABLE::FreeSlotCount() const {
  std::uint64_t free = 0;
  for (std::uint64_t i = 0; i < SlotCount(); ++i) free += slots[i].key == 0;
  return free;
}

ProbeResult TRANSPOSITION_TABLE::ProbeEntry(std::uint64_t key, int ply, int distance, int gamma, Move& move,
                                            int& position_type, int& threat_flags) const {
  const HASH_ENTRY* bucket = Bucket(key);
  const HASH_ENTRY* entry = bucket[0].key == key ? &bucket[0] : bucket[1].key == key ? &bucket[1] : nullptr;
  if (entry == nullptr) return PROBE_MISS;

  move = HashWordMove(entry->word);
  position_type = HashWordPositionType(entry->word);
  threat_flags = HashWordThreatFlags(entry->word);
  if (distance > HashEntryDepth(*entry)) return PROBE_NO_CUTOFF;

  const int lower = ScoreFromHash(entry->lower, ply);
  const int upper = ScoreFromHash(entry->upper, ply);
  // The bound of the entry's last store needs only the entry's depth; the other one its own.
  if (HashWordCutoff(entry->word)) {
    if (gamma <= lower) return PROBE_AT_LEAST_GAMMA;
    if (gamma > upper && distance <= entry->upper_depth) return PROBE_BELOW_GAMMA;
  } else {
    if (gamma > upper) return PROBE_BELOW_GAMMA;
    if (gamma <= lower && distance <= entry->lower_depth) return PROBE_AT_LEAST_GAMMA;
  }
  return PROBE_NO_CUTOFF;
}

bool TRANSPOSITION_TABLE::ProbeMove(std::uint64_t key, Move& move, int& depth) const {
  const HASH_ENTRY* bucket = Bucket(key);
  for (int i = 0; i < 2; ++i) {
    if (bucket[i].key == key) {
      move = HashWordMove(bucket[i].word);
      depth = HashEntryDepth(bucket[i]);
      return true;
    }
  }
  return false;
}

namespace {

// An entry of an earlier search that is pushed to the second place is marked old.
void MarkOld(HASH_ENTRY& entry) { entry.word = WithHashWordAge(entry.word, 0); }

// A deeper entry takes over the bounds of `news` that are tighter, proven at least as deep, and
// consistent with its other bound.
void RefineBounds(HASH_ENTRY& entry, const HASH_ENTRY& news) {
  if (news.lower > entry.lower && entry.lower_depth <= news.lower_depth && news.lower <= entry.upper) {
    entry.lower = news.lower;
    entry.lower_depth = news.lower_depth;
  }
  if (news.upper < entry.upper && entry.upper_depth <= news.upper_depth && news.upper >= entry.lower) {
    entry.upper = news.upper;
    entry.upper_depth = news.upper_depth;
  }
}

// A new entry inherits from the one it replaces any bound that is better, as deep, and consistent.
void InheritBounds(HASH_ENTRY& news, const HASH_ENTRY& old) {
  if (news.lower < old.lower && news.lower_depth <= old.lower_depth && old.lower <= news.upper) {
    news.lower = old.lower;
    news.lower_depth = old.lower_depth;
  }
  if (old.upper < news.upper && old.upper_depth >= news.upper_depth && old.upper >= news.lower) {
    news.upper = old.upper;
    news.upper_depth = old.upper_depth;
  }
}

}  // namespace

void TRANSPOSITION_TABLE::StoreEntry(HASH_ENTRY entry) {
  HASH_ENTRY* bucket = &slots[2 * (entry.key & mask)];
  HASH_ENTRY& e0 = bucket[0];
  HASH_ENTRY& e1 = bucket[1];
  entry.word = WithHashWordAge(entry.word, age);
  const int depth = HashEntryDepth(entry);

  HASH_ENTRY* same = e0.key == entry.key ? &e0 : e1.key == entry.key ? &e1 : nullptr;
  if (same != nullptr && HashEntryDepth(*same) > depth) {
    // The stored entry was searched deeper: only its bounds are refined.
    RefineBounds(*same, entry);
    same->word = WithHashWordAge(same->word, age);
    if (same == &e1) {
      if (!IsCurrent(e0)) {
        MarkOld(e0);
        std::swap(e0, e1);
      } else if (HashEntryDepth(e1) > HashEntryDepth(e0)) {
        std::swap(e0, e1);
      }
    }
    return;
  }

  if (same != nullptr) {
    InheritBounds(entry, *same);
    if (same == &e0) {
      e0 = entry;
      return;
    }
  }
  // The first place holds the deep entry of the current search; the second takes what it doesn't
  // keep, and an entry of an earlier search yields to any new one.
  if (IsCurrent(e0) || IsCurrent(e1)) {
    if (depth >= HashEntryDepth(e0)) {
      e1 = e0;
      e0 = entry;
    } else {
      e1 = entry;
    }
  } else {
    MarkOld(e0);
    e1 = e0;
    e0 = entry;
  }
}
