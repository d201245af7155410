// History of quiet moves that caused cutoffs, local to parts of the tree. Eleven groups of counts,
// group g serving plies 8g..8g+7; a group is emptied at once by advancing its generation.
#pragma once

#include <cstdint>
#include <memory>

#include "board/types.h"

struct HistoryEntry {
  std::uint16_t stamp;  // the entry counts only if this equals its group's generation
  std::uint16_t count;
};

class HistoryTable {
 public:
  static constexpr int GROUPS = 11;
  static constexpr int GROUP_SIZE = 2 * 6 * 4096;

  HistoryTable();  // allocated and zeroed once

  // At the start of a search: a new generation of groups 0 to 9.
  void NewHistoryGeneration();
  // At a node whose ply is a multiple of 8: a new generation of its group (group 1 for ply 0).
  void NewGroupGeneration(int ply);

  void UpdateHistory(Move move, Color side, int distance, int ply);
  int HistoryValue(Move move, Color side, int ply) const;

 private:
  std::unique_ptr<HistoryEntry[]> entries_;

  HistoryEntry* Group(int g) const { return entries_.get() + std::size_t(g) * GROUP_SIZE; }
  // The first stamp of a group doubles as its generation.
  std::uint16_t& Generation(int g) const { return Group(g)[0].stamp; }
  static int Index(Move move, Color side) {
    return (side * 6 + MoveMoved(move) - 1) * 4096 + int(move & 0xfff);
  }
  int ValidCount(int g, int index) const {
    const HistoryEntry& e = Group(g)[index];
    return e.stamp == Generation(g) ? e.count : 0;
  }
  void Add(int g, int index, int bonus);
};

// Killer one and killer two of a ply; zero means none.
struct KillerPair {
  Move one = 0;
  Move two = 0;
};

// At a cutoff: the move becomes killer one, the old one moves to two.
void UpdateKillers(KillerPair& killers, Move move);
