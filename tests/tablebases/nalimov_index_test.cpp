#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "board/attack_tables.h"
#include "tablebases/nalimov_ending.h"
#include "tablebases/nalimov_index_tables.h"
#include "tablebases/nalimov_positions.h"

namespace {

using namespace NalimovTablebases;

int IdOf(const std::string& name) {
  for (int id = 1; id <= ENDING_COUNT; ++id) {
    if (name == Ending(id).name) return id;
  }
  return 0;
}

TEST(NalimovEnding, PublishedSizesAndSymmetricEndings) {
  struct Row {
    const char* name;
    std::uint64_t white, black;
  };
  const Row published[] = {{"kpk", 81664, 84012},        {"knk", 26282, 28644},
                           {"kqk", 25629, 28644},        {"kpkp", 3863492, 3863492},
                           {"knkn", 1603202, 1603202},   {"kppk", 1806671, 1912372},
                           {"kqqk", 698739, 873642},     {"kppkp", 84219361, 89391280},
                           {"kqqkq", 41944320, 46912050}};
  for (const Row& row : published) {
    const TB_ENDING& ending = Ending(IdOf(row.name));
    EXPECT_EQ(ending.sizes[0], row.white) << row.name;
    if (!(ending.flags & TB_SYMMETRIC)) {
      EXPECT_EQ(ending.sizes[1], row.black) << row.name;
    }
  }
  EXPECT_EQ(IdOf("kqqkq"), 110);
  std::vector<std::string> symmetric;
  for (int id = 1; id <= ENDING_COUNT; ++id) {
    EXPECT_EQ(Ending(id).id, id);
    if (Ending(id).flags & TB_SYMMETRIC) symmetric.push_back(Ending(id).name);
  }
  EXPECT_EQ(symmetric, (std::vector<std::string>{"knkn", "kbkb", "krkr", "kqkq"}));
}

TEST(NalimovEnding, FindEndingByCounts) {
  // White's pawns to queens, then Black's; a negative id when Black is the stronger side.
  const std::pair<std::array<int, 10>, int> rows[] = {
      {{}, 0}, {{0, 0, 0, 0, 1}, 5}, {{0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, -5}, {{0, 1, 0, 0, 0, 0, 1}, 8},
      {{0, 0, 0, 1, 0, 1, 0, 1}, -IdOf("kbpkr")}, {{1, 1, 1}, 0} /* four against none */,
      {{0, 0, 0, 0, 3}, 0}, {{2, 0, 0, 0, 0, 2}, 0} /* six men */, {{-1}, 0}};
  for (const auto& [counts, id] : rows) EXPECT_EQ(FindEnding(counts.data()), id) << id;
}

TEST(NalimovIndexTables, KingPairsAndOffsets) {
  int pawnless = 0, pawn = 0;
  for (int m = 0; m < 64; ++m) {
    for (int o = 0; o < 64; ++o) {
      pawnless += KK_PAWNLESS[m][o] != NO_KING_PAIR;
      pawn += KK_PAWN[m][o] != NO_KING_PAIR;
    }
  }
  EXPECT_EQ(pawnless, PAWNLESS_KING_PAIRS);
  EXPECT_EQ(pawn, PAWN_KING_PAIRS);
  EXPECT_EQ(KK_PAWNLESS[0][2], 0);                  // a1, c1: the first pair
  EXPECT_EQ(KK_PAWNLESS[27][63], 461);              // d4, h8: the last
  EXPECT_EQ(KK_PAWNLESS[27][35], NO_KING_PAIR);     // d4, d5: above the diagonal
  EXPECT_EQ(square_rank[KIND_QUEEN][0][9], NOT_USABLE);
  EXPECT_EQ(usable[KIND_QUEEN][0], 60);
  EXPECT_EQ(usable[KIND_PAWN][0], 48);
  EXPECT_EQ(usable[KIND_PAWN][36], 45);             // e5: pawns on d4 and f4 would check it
}

// Every legal position of the ending, with the mover's king in normal form, has its own index
// below the table size, en-passant positions included, and the largest is the table's last entry.
void ExpectDistinctIndices(int id) {
  const TB_ENDING& ending = Ending(id);
  const char* second = std::strchr(ending.name + 1, 'k');
  const bool pawns = std::strchr(ending.name, 'p') != nullptr;
  const bool ep = std::strchr(second, 'p') && std::find(ending.name, second, 'p') != second;
  for (int side = 0; side < ((ending.flags & TB_SYMMETRIC) ? 1 : 2); ++side) {
    std::vector<bool> seen(ending.sizes[side]);
    std::uint64_t largest = 0, count = 0;
    bool distinct = true;
    for (int m = 0; m < 64; ++m) {
      for (int o = 0; o < 64; ++o) {
        if ((pawns ? KK_PAWN[m][o] : KK_PAWNLESS[m][o]) == NO_KING_PAIR) continue;
        for (int pass = 0; pass < (ep ? 2 : 1); ++pass) {
          ForEachPlacement(id, side, side == 0 ? m : o, side == 0 ? o : m, pass == 1,
                           [&](const TB_PIECE_LIST& s, const TB_PIECE_LIST& w, int e) {
                             const std::uint64_t i = ending.index[side](s, w, e, false);
                             if (i >= seen.size() || seen[i]) return distinct = false;
                             seen[i] = true;
                             largest = std::max(largest, i);
                             ++count;
                             return true;
                           });
        }
      }
    }
    EXPECT_TRUE(distinct) << ending.name << " side " << side;
    EXPECT_EQ(largest + 1, ending.sizes[side]) << ending.name << " side " << side;
    EXPECT_GT(count, ending.sizes[side] / 2) << ending.name;
  }
}

TEST(NalimovIndex, ThreeAndFourMenHaveDistinctIndicesBelowTheSize) {
  InitAttackTables();
  // Every three-man ending, and a four-man ending of each form of index.
  for (const char* name : {"kpk", "knk", "kbk", "krk", "kqk", "kpkp", "knkn", "kbkp", "kppk", "knpk", "kbnk", "kqqk"}) {
    ExpectDistinctIndices(IdOf(name));
  }
}

// A mirror image of the board, left to right or top to bottom, and without pawns its transpose,
// gives the same index; with pawns, the board upside down with the colours exchanged does.
TEST(NalimovIndex, SymmetricImagesShareTheIndex) {
  InitAttackTables();
  std::mt19937 random(13);
  auto image = [](TB_PIECE_LIST list, const EndingMen& men, int l, int (*f)(int)) {
    list.squares[TB_KING_SLOT] = f(list.squares[TB_KING_SLOT]);
    for (int i = 0; i < men.count[l]; ++i) list.squares[men.slots[l][i]] = f(list.squares[men.slots[l][i]]);
    return list;
  };
  int (*const left_right)(int) = [](int s) { return s ^ 7; };
  int (*const top_bottom)(int) = [](int s) { return s ^ 56; };
  int (*const transpose)(int) = [](int s) { return ((s & 7) << 3) | (s >> 3); };
  for (int id = 1; id <= ENDING_COUNT; ++id) {
    const TB_ENDING& ending = Ending(id);
    const EndingMen men = MenOfEnding(id);
    const bool pawns = std::strchr(ending.name, 'p') != nullptr;
    for (int trial = 0; trial < 20; ++trial) {
      const int side = int(random() % 2), m = int(random() % 64), o = int(random() % 64);
      if (m == o || Tables.king_distance[m][o] < 2) continue;
      int skip = int(random() % 500);
      ForEachPlacement(id, side, m, o, false, [&](const TB_PIECE_LIST& s, const TB_PIECE_LIST& w, int) {
        if (skip-- > 0) return true;
        const IndexFunction index = ending.index[side];
        const std::uint64_t i = index(s, w, TB_NO_EP_SQUARE, false);
        EXPECT_EQ(index(image(s, men, 0, left_right), image(w, men, 1, left_right), 64, false), i) << ending.name;
        if (pawns) {
          EXPECT_EQ(index(image(s, men, 0, top_bottom), image(w, men, 1, top_bottom), 64, true), i) << ending.name;
          return false;
        }
        EXPECT_EQ(index(image(s, men, 0, top_bottom), image(w, men, 1, top_bottom), 64, false), i) << ending.name;
        const int mover_king = side == 0 ? m : o;
        const bool on_long_diagonal = (mover_king & 7) == (mover_king >> 3) || (mover_king & 7) == 7 - (mover_king >> 3);
        if (!on_long_diagonal) {
          EXPECT_EQ(index(image(s, men, 0, transpose), image(w, men, 1, transpose), 64, false), i) << ending.name;
        }
        return false;
      });
    }
  }
}

// Members of the family written out, which pin the layout of the published files: knk and krnk with
// black to move, kpk with either side.
TEST(NalimovIndex, WorkedMembers) {
  // The mover's king on b1 is in normal form: M = b1, O = e2, knight a6.
  TB_PIECE_LIST white{}, black{};
  white.squares[TB_KING_SLOT] = 12;
  black.squares[TB_KING_SLOT] = 1;
  white.squares[TB_KNIGHT_SLOT] = 40;
  EXPECT_EQ(Ending(IdOf("knk")).index[1](white, black, 64, false),
            std::uint64_t(KK_PAWNLESS[1][12]) * 62 + (40 - 1 - 1));
  white.squares[TB_ROOK_SLOT] = 20;  // e3
  EXPECT_EQ(Ending(IdOf("krnk")).index[1](white, black, 64, false),
            (std::uint64_t(KK_PAWNLESS[1][12]) * 62 + (20 - 2)) * 61 + (40 - 3));
  TB_PIECE_LIST pawn{};
  pawn.squares[TB_KING_SLOT] = 2;  // c1, the mover
  pawn.squares[TB_PAWN_SLOT] = 18; // c3
  black.squares[TB_KING_SLOT] = 42; // c6
  const int n = square_rank[KIND_PAWN][42][18];  // c1 is no pawn square, so it takes none away
  EXPECT_EQ(Ending(IdOf("kpk")).index[0](pawn, black, 64, false),
            PAWN_OFFSETS.pair_offset[KIND_PAWN][KK_PAWN[2][42]] + std::uint64_t(n));
  // Black to move: the pawn is ranked with kind 0, and kings and pawn are read upside down.
  pawn.squares[TB_KING_SLOT] = 42;  // c6
  black.squares[TB_KING_SLOT] = 2;  // c1
  EXPECT_EQ(Ending(IdOf("kpk")).index[1](pawn, black, 64, false),
            PAWN_OFFSETS.pair_offset[KIND_ANY_PAWN][KK_PAWN[2 ^ 56][42 ^ 56]] + square_rank[KIND_ANY_PAWN][42 ^ 56][18 ^ 56]);
}

}  // namespace
