#include "evaluation/score_pair.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

// Half-by-half reference: each half on its own with 16-bit wrap.
int Wrap16(int value) { return std::int16_t(std::uint16_t(value)); }

// Every pair of edge values in both halves at once, where a carry or borrow would cross from one
// half to the other, and then random pairs.
TEST(ScorePair, AgreesWithHalfByHalfArithmeticEverywhere) {
  std::uint32_t state = 12345;
  auto next = [&state] {
    state = state * 1664525u + 1013904223u;
    return int(std::int16_t(state >> 16));
  };
  const int edges[] = {-32768, -32767, -1, 0, 1, 32766, 32767};
  constexpr int EDGE_CASES = 7 * 7 * 7 * 7;
  for (int i = 0; i < EDGE_CASES + 20000; ++i) {
    const bool edge = i < EDGE_CASES;
    const int a = edge ? edges[i % 7] : next(), b = edge ? edges[i / 7 % 7] : next();
    const int c = edge ? edges[i / 49 % 7] : next(), d = edge ? edges[i / 343] : next();
    const ScorePair x(a, c), y(b, d);
    ScorePair sum = x, difference = x;
    sum += y;
    difference -= y;
    ASSERT_EQ(x + y, sum);
    ASSERT_EQ(x - y, difference);
    ASSERT_EQ(sum, ScorePair(Wrap16(a + b), Wrap16(c + d))) << a << " " << b << " " << c << " " << d;
    ASSERT_EQ(difference, ScorePair(Wrap16(a - b), Wrap16(c - d))) << a << " " << b << " " << c << " " << d;
    ASSERT_EQ(-x, ScorePair(Wrap16(-a), Wrap16(-c))) << a << " " << c;
  }
}

}  // namespace
