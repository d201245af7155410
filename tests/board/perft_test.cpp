#include <array>
#include <cstdint>

#include <gtest/gtest.h>

#include "board/board_test_helpers.h"

namespace {

std::uint64_t Perft(Board& board, int depth) {
  if (depth == 0) return 1;
  Move moves[MAX_MOVES];
  Move* end = GenerateMoves(moves, board, GEN_ALL);
  std::uint64_t total = 0;
  for (Move* m = moves; m != end; ++m) {
    board.MakeMove(*m);
    total += Perft(board, depth - 1);
    board.UnmakeMove(*m);
  }
  return total;
}

// Published counts for depths 1..4 (depth 4 only where it stays fast under the sanitizers).
const std::pair<const char*, std::array<std::uint64_t, 4>> CASES[] = {
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", {20, 400, 8902, 197281}},
    {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", {48, 2039, 97862, 0}},
    {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", {14, 191, 2812, 43238}},
    {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", {6, 264, 9467, 0}},
    {"rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", {44, 1486, 62379, 0}},
    {"r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", {46, 2079, 89890, 0}},
};

TEST(Perft, PublishedCountsOfTheStandardPositions) {
  for (const auto& [fen, counts] : CASES) {
    Board board = board_test::FromFen(fen);
    for (int depth = 1; depth <= 4 && counts[depth - 1]; ++depth)
      EXPECT_EQ(Perft(board, depth), counts[depth - 1]) << fen << " depth " << depth;
  }
}

}  // namespace
