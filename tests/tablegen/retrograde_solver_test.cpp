#include <gtest/gtest.h>

#include <algorithm>

#include "bitbases/bitbase_probes.h"
#include "board/move_generator.h"
#include "ending_material.h"
#include "retrograde_solver.h"

namespace {

using namespace ZephrinTablegen;

// One library for the whole file: the four-man endings take a moment each.
EndingLibrary& Library() {
  static EndingLibrary library;
  return library;
}

// Longest mate, in moves, that the side to move can force anywhere in the ending.
int LongestMate(const SolvedEnding& ending) {
  int longest = 0;
  for (const auto& values : ending.value)
    for (std::int8_t v : values)
      if (v > 0 && v != NO_POSITION) longest = std::max(longest, 127 - v);
  return longest;
}

TEST(RetrogradeSolver, FindsTheKnownLongestMates) {
  EXPECT_EQ(LongestMate(Solve(Library(), "kqk")), 10);
  EXPECT_EQ(LongestMate(Solve(Library(), "krk")), 16);
  EXPECT_EQ(LongestMate(Solve(Library(), "kbbk")), 19);
  EXPECT_EQ(LongestMate(Solve(Library(), "kbnk")), 33);
  EXPECT_EQ(LongestMate(Solve(Library(), "kqkr")), 35);
  EXPECT_EQ(LongestMate(Solve(Library(), "knk")), 0);
}

// King and pawn against king agrees, position by position, with the project's own single-pawn
// bitbase, which is solved independently: white wins exactly where the bitbase says so, and the
// lone king never wins.
TEST(RetrogradeSolver, KingAndPawnAgreesWithTheSinglePawnBitbase) {
  const SolvedEnding& kpk = Solve(Library(), "kpk");
  int wins = 0, draws = 0, disagreements = 0;
  for (Color side : {WHITE, BLACK})
    for (Square pawn = 8; pawn < 56; ++pawn)
      for (Square white_king = 0; white_king < 64; ++white_king)
        for (Square black_king = 0; black_king < 64; ++black_king) {
          const Square squares[3] = {white_king, black_king, pawn};
          if (pawn == white_king || pawn == black_king || white_king == black_king) continue;
          const int v = Probe(kpk, squares, side);
          if (v == NO_POSITION) continue;
          const bool white_wins = side == WHITE ? v > 0 : v < 0;
          (white_wins ? wins : draws) += 1;
          disagreements += (side == BLACK && v > 0) || white_wins != SinglePawnWins(WHITE, side, pawn, white_king, black_king);
        }
  EXPECT_EQ(disagreements, 0);
  EXPECT_GT(wins, 0);
  EXPECT_GT(draws, 0);
}

}  // namespace
