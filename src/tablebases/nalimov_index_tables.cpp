#include "tablebases/nalimov_index_tables.h"

#include <cstdlib>

namespace NalimovTablebases {

std::int16_t KK_PAWNLESS[64][64];
std::int16_t KK_PAWN[64][64];
std::uint8_t square_rank[KIND_COUNT][64][64];
std::uint8_t usable[KIND_COUNT][64];
PairOffsets<PAWNLESS_KING_PAIRS> PAWNLESS_OFFSETS;
PairOffsets<PAWN_KING_PAIRS> PAWN_OFFSETS;

namespace {

int File(int s) { return s & 7; }
int Rank(int s) { return s >> 3; }

bool Adjacent(int a, int b) {
  return std::abs(File(a) - File(b)) <= 1 && std::abs(Rank(a) - Rank(b)) <= 1;
}

// The normal forms of a king pair: kings apart; without pawns the first king in the triangle
// a1-d1-d4 and, on its diagonal, the second on or below the long diagonal; with pawns the first
// king on the files a to d.
bool PawnlessNormal(int m, int o) {
  const bool in_triangle = File(m) <= 3 && File(m) >= Rank(m);
  if (!in_triangle) return false;
  return File(m) != Rank(m) || File(o) >= Rank(o);
}

void NumberKingPairs() {
  int pawnless = 0, pawn = 0;
  for (int m = 0; m < 64; ++m) {
    for (int o = 0; o < 64; ++o) {
      const bool apart = m != o && !Adjacent(m, o);
      KK_PAWNLESS[m][o] = apart && PawnlessNormal(m, o) ? std::int16_t(pawnless++) : NO_KING_PAIR;
      KK_PAWN[m][o] = apart && File(m) <= 3 ? std::int16_t(pawn++) : NO_KING_PAIR;
    }
  }
}

// Whether a man of the kind on s would stand on king k or attack it.
bool Blocked(int kind, int k, int s) {
  if (s == k) return true;
  const int df = std::abs(File(k) - File(s)), dr = Rank(k) - Rank(s);
  switch (kind) {
    case KIND_ANY_PAWN: return false;
    case KIND_PAWN: return dr == 1 && df == 1;
    case KIND_KNIGHT: return (df == 1 && std::abs(dr) == 2) || (df == 2 && std::abs(dr) == 1);
    case KIND_BISHOP: return df == 1 && std::abs(dr) == 1;
    case KIND_ROOK: return df + std::abs(dr) == 1;
    default: return Adjacent(k, s);
  }
}

void RankSquares() {
  for (int kind = 0; kind < KIND_COUNT; ++kind) {
    const bool pawn = kind <= KIND_PAWN;
    for (int k = 0; k < 64; ++k) {
      int count = 0;
      for (int s = 0; s < 64; ++s) {
        const bool walked = !pawn || (s >= 8 && s < 56);
        square_rank[kind][k][s] = walked && !Blocked(kind, k, s) ? std::uint8_t(count++) : NOT_USABLE;
      }
      usable[kind][k] = std::uint8_t(count);
    }
  }
}

// Offsets in table order of the pairs: each pair takes as many entries as its men can fill, one
// man of a kind or two, of one kind (unordered) or of two.
template <int PAIRS>
void SumOffsets(PairOffsets<PAIRS>& out, const std::int16_t (&pairs)[64][64]) {
  for (int a = 0; a < KIND_COUNT; ++a) {
    out.pair_offset[a][0] = 0;
    for (int b = 0; b < KIND_COUNT; ++b) out.pair_offset2[a][b][0] = 0;
  }
  for (int m = 0; m < 64; ++m) {
    for (int o = 0; o < 64; ++o) {
      const int p = pairs[m][o];
      if (p == NO_KING_PAIR) continue;
      for (int a = 0; a < KIND_COUNT; ++a) {
        const std::uint32_t na = std::uint32_t(UsableBeside(a, m, o));
        out.pair_offset[a][p + 1] = out.pair_offset[a][p] + na;
        for (int b = 0; b < KIND_COUNT; ++b) {
          const std::uint32_t nb = std::uint32_t(UsableBeside(b, m, o));
          const std::uint32_t size = a == b ? na * (na - 1) / 2 : na * nb;
          out.pair_offset2[a][b][p + 1] = out.pair_offset2[a][b][p] + size;
        }
      }
    }
  }
}

[[maybe_unused]] const bool built_at_start = (InitIndexTables(), true);

}  // namespace

void InitIndexTables() {
  static bool built = false;
  if (built) return;
  built = true;
  NumberKingPairs();
  RankSquares();
  SumOffsets(PAWNLESS_OFFSETS, KK_PAWNLESS);
  SumOffsets(PAWN_OFFSETS, KK_PAWN);
}

}  // namespace NalimovTablebases
