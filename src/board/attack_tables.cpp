#include "board/attack_tables.h"

#include <cstdlib>

#include "board/random.h"

AttackTables Tables;

namespace {

bool tables_ready = false;

constexpr int STEP[9] = {0, 1, 1, 8, 8, 7, 9, 9, 7};
constexpr int FILE_STEP[9] = {0, -1, 1, 0, 0, -1, 1, -1, 1};
constexpr int RANK_STEP[9] = {0, 0, 0, 1, -1, 1, 1, -1, -1};

bool OnBoard(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }

// Positions reached from p along a line of length n with occupancy o, stopping on blockers.
unsigned LineWalk(int p, unsigned o, int n) {
  unsigned result = 0;
  for (int i = p - 1; i >= 0; --i) {
    result |= 1u << i;
    if (o & (1u << i)) break;
  }
  for (int i = p + 1; i < n; ++i) {
    result |= 1u << i;
    if (o & (1u << i)) break;
  }
  return result;
}

void BuildKeys(LaggedFibonacci& random) {
  auto random64 = [&random] {
    std::uint64_t r = 0;
    for (int i = 0; i < 4; ++i) r |= std::uint64_t(random.Next() & 0xffff) << (16 * i);
    return r;
  };
  std::uint64_t* keys = &Tables.piece_keys[0][0];
  for (int entry = 0; entry < 64 * 13; ++entry) {
    bool unique;
    do {
      keys[entry] = random64();
      unique = true;
      for (int k = 0; k < entry; ++k) unique = unique && keys[k] != keys[entry];
    } while (!unique);
  }
  for (int file = 0; file < 8; ++file) {
    Tables.ep_keys[0][file] = random64();
    Tables.ep_keys[1][file] = random64();
  }
}

void BuildLineTables() {
  for (int d = 0; d < 15; ++d) {
    int start = rotation_detail::DiagonalStart(d), n = rotation_detail::DiagonalLength(d);
    for (int i = 0; i < n; ++i) {
      int diag_sq = DIAG_SQUARES[start + i], anti_sq = ANTI_SQUARES[start + i];
      Tables.diag_shift[diag_sq] = std::uint8_t(start);
      Tables.diag_mask[diag_sq] = std::uint16_t((1u << n) - 1);
      Tables.anti_shift[anti_sq] = std::uint8_t(start);
      Tables.anti_mask[anti_sq] = std::uint16_t((1u << n) - 1);
    }
  }
  for (Square s = 0; s < 64; ++s) {
    for (unsigned o = 0; o < 256; ++o) {
      unsigned along_rank = LineWalk(FileOf(s), o, 8), along_file = LineWalk(RankOf(s), o, 8);
      Bitboard rank = 0, file = 0;
      for (int i = 0; i < 8; ++i) {
        if (along_rank & (1u << i)) rank |= SquareBit(MakeSquare(i, RankOf(s)));
        if (along_file & (1u << i)) file |= SquareBit(MakeSquare(FileOf(s), i));
      }
      Tables.rank_attacks[s][o] = rank;
      Tables.file_attacks[s][o] = file;
    }
  }
  for (int d = 0; d < 15; ++d) {
    int start = rotation_detail::DiagonalStart(d), n = rotation_detail::DiagonalLength(d);
    for (int p = 0; p < n; ++p) {
      for (unsigned o = 0; o < (1u << n); ++o) {
        unsigned walk = LineWalk(p, o, n);
        Bitboard diag = 0, anti = 0;
        for (int i = 0; i < n; ++i) {
          if (walk & (1u << i)) {
            diag |= SquareBit(DIAG_SQUARES[start + i]);
            anti |= SquareBit(ANTI_SQUARES[start + i]);
          }
        }
        Tables.diag_attacks[DIAG_SQUARES[start + p]][o] = diag;
        Tables.anti_attacks[ANTI_SQUARES[start + p]][o] = anti;
      }
    }
  }
}

Bitboard OffsetTargets(Square s, const int (*offsets)[2]) {
  Bitboard result = 0;
  for (int i = 0; i < 8; ++i) {
    int f = FileOf(s) + offsets[i][0], r = RankOf(s) + offsets[i][1];
    if (OnBoard(f, r)) result |= SquareBit(MakeSquare(f, r));
  }
  return result;
}

void BuildStepTables() {
  static constexpr int knight[8][2] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
  static constexpr int king[8][2] = {{0, 1}, {1, 1}, {1, 0}, {1, -1}, {0, -1}, {-1, -1}, {-1, 0}, {-1, 1}};
  for (Square s = 0; s < 64; ++s) {
    Tables.knight_attacks[s] = OffsetTargets(s, knight);
    Tables.king_attacks[s] = OffsetTargets(s, king);
  }
}

int DirectionBetween(Square a, Square b) {
  int df = FileOf(b) - FileOf(a), dr = RankOf(b) - RankOf(a);
  if (a == b) return DIR_NONE;
  if (dr == 0) return df < 0 ? DIR_WEST : DIR_EAST;
  if (df == 0) return dr > 0 ? DIR_NORTH : DIR_SOUTH;
  if (df == dr) return dr > 0 ? DIR_NORTH_EAST : DIR_SOUTH_WEST;
  if (df == -dr) return dr > 0 ? DIR_NORTH_WEST : DIR_SOUTH_EAST;
  return DIR_NONE;
}

void BuildGeometry() {
  for (Square a = 0; a < 64; ++a)
    for (Square b = 0; b < 64; ++b) Tables.direction[a][b] = std::uint8_t(DirectionBetween(a, b));
  for (Square s = 0; s < 64; ++s) {
    Bitboard diagonals = SquareBit(s), straights = SquareBit(s);
    for (int d = 1; d <= 8; ++d) {
      for (Square t = 0; t < 64; ++t) {
        if (Tables.direction[s][t] != d) continue;
        if (IsStraightDirection(d)) straights |= SquareBit(t);
        else diagonals |= SquareBit(t);
      }
    }
    Tables.bishop_lines[s] = diagonals;
    Tables.rook_lines[s] = straights;
    Tables.queen_lines[s] = diagonals | straights;
  }
  for (Square a = 0; a < 64; ++a) {
    for (Square b = 0; b < 64; ++b) {
      int d = Tables.direction[a][b];
      Bitboard between = 0;
      if (d != DIR_NONE) {
        int low = a < b ? a : b, high = a < b ? b : a;
        for (int t = low + STEP[d]; t < high; t += STEP[d]) between |= SquareBit(t);
      }
      Tables.between[a][b] = between;
      int df = std::abs(FileOf(a) - FileOf(b)), dr = std::abs(RankOf(a) - RankOf(b));
      Tables.king_distance[a][b] = std::uint8_t(df > dr ? df : dr);
      Tables.manhattan_distance[a][b] = std::uint8_t(df + dr);
    }
  }
  for (int d = 1; d <= 8; ++d) {
    for (Square s = 0; s < 64; ++s) {
      Bitboard ray = 0;
      for (int f = FileOf(s) + FILE_STEP[d], r = RankOf(s) + RANK_STEP[d]; OnBoard(f, r);
           f += FILE_STEP[d], r += RANK_STEP[d])
        ray |= SquareBit(MakeSquare(f, r));
      Tables.rays[d - 1][s] = ray;
    }
  }
}

Bitboard Rectangle(int file_low, int file_high, int rank_low, int rank_high) {
  Bitboard result = 0;
  for (int r = rank_low; r <= rank_high; ++r)
    for (int f = file_low; f <= file_high; ++f)
      if (OnBoard(f, r)) result |= SquareBit(MakeSquare(f, r));
  return result;
}

void BuildPawnTables() {
  for (Square s = 0; s < 64; ++s) {
    int f = FileOf(s), r = RankOf(s);
    Bitboard white = 0, black = 0;
    if (r < 7) {
      if (f > 0) white |= SquareBit(s + 7);
      if (f < 7) white |= SquareBit(s + 9);
    }
    if (r > 0) {
      if (f > 0) black |= SquareBit(s - 9);
      if (f < 7) black |= SquareBit(s - 7);
    }
    Tables.pawn_attacks[WHITE][s] = white;
    Tables.pawn_attacks[BLACK][s] = black;
    Tables.front_span[WHITE][s] = r < 7 ? Rectangle(f - 1, f + 1, r + 1, 7) : 0;
    Tables.front_span[BLACK][s] = r > 0 ? Rectangle(f - 1, f + 1, 0, r - 1) : 0;
  }
  for (Square s = 0; s < 64; ++s) {
    Bitboard white = 0, black = 0;
    for (int t = s; t >= 16; t -= 8) white |= Tables.pawn_attacks[BLACK][t];
    for (int t = s; t < 48; t += 8) black |= Tables.pawn_attacks[WHITE][t];
    Tables.attack_span[WHITE][s] = white;
    Tables.attack_span[BLACK][s] = black;
  }
  for (Square s = 8; s < 56; ++s) {
    int f = FileOf(s), r = RankOf(s);
    int wr = r == 1 ? 2 : r, wd = 7 - wr;
    int wlow = f - (wd < f ? wd : f), whigh = f + (wd < 7 - f ? wd : 7 - f);
    Tables.pawn_square[WHITE][WHITE][s] = Rectangle(wlow, whigh, wr, 7);
    Tables.pawn_square[WHITE][BLACK][s] = Rectangle(wlow - 1, whigh + 1, wr - 1, 7) | Tables.king_attacks[s];
    int br = r == 6 ? 5 : r, bd = br;
    int blow = f - (bd < f ? bd : f), bhigh = f + (bd < 7 - f ? bd : 7 - f);
    Tables.pawn_square[BLACK][BLACK][s] = Rectangle(blow, bhigh, 0, br);
    Tables.pawn_square[BLACK][WHITE][s] = Rectangle(blow - 1, bhigh + 1, 0, br + 1) | Tables.king_attacks[s];
  }
  for (Color c = 0; c < 2; ++c)
    for (Square q = 0; q < 64; ++q)
      for (Color m = 0; m < 2; ++m) {
        Bitboard outside = 0;
        for (Square s = 8; s < 56; ++s)
          if (!(Tables.pawn_square[c][m][s] & SquareBit(q))) outside |= SquareBit(s);
        Tables.king_outside_square[c][q][m] = outside;
      }
}

}  // namespace

void InitAttackTables() {
  if (tables_ready) return;
  // A fresh generator makes the keys the same whatever has been drawn before; the program's
  // sequence then continues from it, as if the tables had drawn first.
  LaggedFibonacci fresh;
  BuildKeys(fresh);
  SetRandomSource(fresh);
  BuildLineTables();
  BuildStepTables();
  BuildGeometry();
  BuildPawnTables();
  tables_ready = true;
}
