#include "evaluation/rook_and_pawn.h"

#include <algorithm>
#include <cstdlib>

#include "board/attack_tables.h"

namespace {

int FileDistance(Square a, Square b) { return std::abs(FileOf(a) - FileOf(b)); }

// How many files a rook on `rook` cuts `king` off from the pawn: the king at least two files
// away, the rook on a file between them (both ends included) with none of the others on it.
// 0 when there is no such cut.
int CutFiles(Square rook, Square king, Square p, const Square others[4]) {
  const int distance = FileDistance(king, p);
  if (distance < 2) return 0;
  const int low = std::min(FileOf(p), FileOf(king));
  const int high = std::max(FileOf(p), FileOf(king));
  if (FileOf(rook) < low || FileOf(rook) > high) return 0;
  for (int i = 0; i < 4; ++i) {
    if (FileOf(others[i]) == FileOf(rook)) return 0;
  }
  return distance;
}

}  // namespace

int RookAndPawn(Square wr, Square br, Square wk, Square bk, Square p) {
  const int pf = FileOf(p);
  const int pr = RankOf(p);
  const Square promotion = MakeSquare(pf, 7);
  if (bk == promotion) return 10;

  const Square besides_wr[4] = {br, wk, bk, p};
  const int c = CutFiles(wr, bk, p, besides_wr);
  if (c != 0) {
    // The winning bridge: king on the queening square, the pawn on the seventh, the defending
    // rook beside the pawn's file.
    if (wk == promotion && pr == 6 && pf != 0 && pf != 7 && FileDistance(br, p) == 1) {
      return 350 + 4 * c - 8 * std::abs(RankOf(wr) - 3);
    }
    if (c > 2 && p > 39) return 250 + 8 * c;
  }

  int v = 15 - Tables.king_distance[br][wk] + 4 * pr;
  if ((Tables.front_span[WHITE][p] & SquareBit(bk)) == 0) v += 45 + (c - 6 + pr) * 32;
  const int e = pr - RankOf(bk);
  if ((Tables.front_span[WHITE][p] & SquareBit(wk)) != 0) {
    if (c != 0) {
      v += 220;
    } else {
      v += e < 1 ? 60 : std::max(220, 32 * e + 100);
    }
  } else {
    const Square besides_br[4] = {wr, wk, bk, p};
    const int cut = CutFiles(br, wk, p, besides_br);
    if (cut != 0) {
      v -= 16 + 8 * cut;
    } else if (e > 0) {
      v += 8 * e;
    }
  }
  return std::max(v, 0);
}
