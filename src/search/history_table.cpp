#include "search/history_table.h"

#include <algorithm>

HistoryTable::HistoryTable() : entries_(new HistoryEntry[std::size_t(GROUPS) * GROUP_SIZE]()) {}

void HistoryTable::NewHistoryGeneration() {
  for (int g = 0; g <= 9; ++g) ++Generation(g);
}

void HistoryTable::NewGroupGeneration(int ply) {
  int g = ply >> 3;
  ++Generation(g == 0 ? 1 : g);
}

void HistoryTable::Add(int g, int index, int bonus) {
  HistoryEntry& e = Group(g)[index];
  std::uint16_t generation = Generation(g);
  if (e.stamp == generation) {
    e.count = std::uint16_t(std::min(int(e.count) + bonus, 65535));
  } else {
    e.stamp = generation;
    e.count = std::uint16_t(std::min(bonus, 65535));
  }
}

void HistoryTable::UpdateHistory(Move move, Color side, int distance, int ply) {
  int bonus = distance < 64 ? 1 : (distance >> 6) * (distance >> 6) + 1;
  int primary = ply < 8 ? 1 : ply >> 3;
  int secondary = ply < 8 ? 0 : (ply >> 3) - 1;
  int index = Index(move, side);
  Add(primary, index, bonus);
  Add(secondary, index, bonus);
}

int HistoryTable::HistoryValue(Move move, Color side, int ply) const {
  int index = Index(move, side);
  if (ply < 8) return ValidCount(0, index);
  return std::min(ValidCount((ply >> 3) - 1, index) + ValidCount(ply >> 3, index), 65535);
}

void UpdateKillers(KillerPair& killers, Move move) {
  if (move == killers.one) return;
  if (move == killers.two) {
    std::swap(killers.one, killers.two);
    return;
  }
  killers.two = killers.one;
  killers.one = move;
}
