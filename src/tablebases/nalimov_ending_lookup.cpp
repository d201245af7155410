#include "tablebases/nalimov_ending_lookup.h"

#include <cstdint>

#include "tablebases/nalimov_ending.h"
#include "tablebases/nalimov_ending_names.h"

namespace NalimovTablebases {

namespace {

constexpr int MAX_MEN = 3;
constexpr int NO_MAN = 10;  // pads a set of fewer than three men

// The men of a set of counts as up to three of the ten count numbers, ascending and padded with
// NO_MAN: the table is nested by first, second and third man, and holds only sets of three or fewer.
std::int8_t ENDING_LOOKUP[NO_MAN + 1][NO_MAN + 1][NO_MAN + 1];

// The place of a set of counts in ENDING_LOOKUP, or false past its limits.
bool LookupPlace(const int counts[10], int (&men)[MAX_MEN]) {
  int n = 0;
  for (int i = 0; i < 10; ++i) {
    if (counts[i] < 0 || counts[i] > MAX_MEN - n) return false;
    for (int j = 0; j < counts[i]; ++j) men[n++] = i;
  }
  for (; n < MAX_MEN; ++n) men[n] = NO_MAN;
  return true;
}

// Counts of one side from the letters of a name between two kings; false for a letter that names no man.
bool CountMen(const char* begin, const char* end, int* counts) {
  for (const char* c = begin; c != end; ++c) {
    const int man = ManOfLetter(*c);
    if (man < 0) return false;
    ++counts[man];
  }
  return true;
}

bool Enter(const int counts[10], int id) {
  int men[MAX_MEN];
  if (!LookupPlace(counts, men)) return false;
  ENDING_LOOKUP[men[0]][men[1]][men[2]] = std::int8_t(id);
  return true;
}

bool EnterAll() {
  for (int id = 1; id <= ENDING_COUNT; ++id) EnterEnding(ENDING_NAMES[id], id, Ending(id).flags & TB_SYMMETRIC);
  return true;
}

}  // namespace

bool EnterEnding(const char* name, int id, bool symmetric) {
  if (name[0] != 'k') return false;
  const char* second = name + 1;
  while (*second != 0 && *second != 'k') ++second;
  if (*second != 'k') return false;
  const char* end = second + 1;
  while (*end != 0) ++end;
  int counts[10] = {};
  if (!CountMen(name + 1, second, counts) || !CountMen(second + 1, end, counts + 5)) return false;
  if (!Enter(counts, id)) return false;
  if (symmetric) return true;
  const int swapped[10] = {counts[5], counts[6], counts[7], counts[8], counts[9],
                           counts[0], counts[1], counts[2], counts[3], counts[4]};
  return Enter(swapped, -id);
}

int FindEnding(const int counts[10]) {
  static const bool filled = EnterAll();
  (void)filled;
  int men[MAX_MEN];
  if (!LookupPlace(counts, men)) return 0;
  return ENDING_LOOKUP[men[0]][men[1]][men[2]];
}

}  // namespace NalimovTablebases
