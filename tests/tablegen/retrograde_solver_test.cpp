#include <gtest/gtest.h>

#include <algorithm>
#include <string>

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
int LongestMateOf(const SolvedEnding& ending) {
  int longest = 0;
  for (const auto& values : ending.value)
    for (std::int8_t v : values)
      if (v > 0 && v != NO_POSITION) longest = std::max(longest, 127 - v);
  return longest;
}

// The known longest mates, in moves. One test each, so that each runs in a process of its own.
class LongestMate : public ::testing::TestWithParam<std::pair<const char*, int>> {};

TEST_P(LongestMate, IsTheKnownOne) {
  EXPECT_EQ(LongestMateOf(Solve(Library(), GetParam().first)), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(RetrogradeSolver, LongestMate,
                         ::testing::Values(std::pair{"kqk", 10}, std::pair{"krk", 16}, std::pair{"knk", 0},
                                           std::pair{"kbbk", 19}, std::pair{"kbnk", 33}, std::pair{"kqkr", 35}),
                         [](const auto& test) { return std::string(test.param.first); });

// (That king and pawn against king agrees with the single-pawn bitbase position by position is
// the verify command's end-to-end test.)
// The value of a board read from the solved tables: its men sorted into the slots of their
// ending, the board reflected when the ending's first side is black.
int ProbeBoard(const Board& board) {
  Material men;
  Square squares[MAX_MEN];
  for (Square s = 0; s < 64; ++s) {
    const Piece piece = board.squares[s];
    const Color colour = piece > 0 ? WHITE : BLACK;
    const PieceType type = board.TypeOn(s);
    if (type == NO_PIECE) continue;
    const int slot = type == KING ? colour : men.count++;
    men.type[slot] = type;
    men.colour[slot] = colour;
    squares[slot] = s;
  }
  bool exchanged = false;
  const std::string name = NormalEndingName(men, exchanged);
  if (name == "kk") return 0;
  const SolvedEnding& ending = Solve(Library(), name);
  Square slots[MAX_MEN];
  bool used[MAX_MEN] = {};
  for (int slot = 0; slot < ending.material.count; ++slot)
    for (int i = 0; i < men.count; ++i)
      if (!used[i] && men.type[i] == ending.material.type[slot] &&
          (men.colour[i] ^ exchanged) == ending.material.colour[slot]) {
        used[i] = true;
        slots[slot] = squares[i] ^ (exchanged ? 56 : 0);
        break;
      }
  return Probe(ending, slots, board.side_to_move ^ (exchanged ? 1 : 0));
}

// Every position's value is the best over its children, read through the engine's own board and
// move generator: a mate or stalemate without moves, otherwise a win in one more move than the
// quickest lost child, or a loss in one more than the slowest won one. On a sample of positions.
void ExpectValuesBackedByChildren(const std::string& name, std::uint64_t step) {
  const SolvedEnding& ending = Solve(Library(), name);
  int checked = 0, wrong = 0;
  std::vector<Move> moves;
  Board board;
  for (std::uint64_t number = 0; number < ending.size; number += step) {
    Square squares[MAX_MEN];
    if (!PositionSquares(ending, number, squares)) continue;
    for (Color side : {WHITE, BLACK}) {
      const int v = ending.value[side][number];
      if (v == NO_POSITION) continue;
      Piece board_squares[64] = {};
      for (int i = 0; i < ending.material.count; ++i)
        board_squares[squares[i]] = MakePiece(ending.material.colour[i], ending.material.type[i]);
      ASSERT_TRUE(board.SetPosition(board_squares, side, 0, 0)) << name << " " << number;
      GenerateLegalMoves(board, moves);
      int best = moves.empty() ? (board.InCheck() ? -126 : 0) : -127;
      for (Move move : moves) {
        board.MakeMove(move);
        const int child = ProbeBoard(board);
        board.UnmakeMove(move);
        best = std::max(best, child < 0 ? -child : child > 0 ? 1 - child : 0);
      }
      ++checked;
      wrong += best != v;
    }
  }
  EXPECT_EQ(wrong, 0) << name;
  EXPECT_GT(checked, 100) << name;
}

TEST(RetrogradeSolver, EveryValueIsTheBestOverTheChildren) {
  ExpectValuesBackedByChildren("kpk", 1);
  ExpectValuesBackedByChildren("kqkr", 997);
}

}  // namespace
