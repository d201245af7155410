#include "evaluation/score_pair.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

// Half-by-half reference: each half on its own with 16-bit wrap.
int Wrap16(int value) { return std::int16_t(std::uint16_t(value)); }

TEST(ScorePair, HalvesKeepTheirSignsAndRange) {
  constexpr ScorePair pair(32767, -32768);
  static_assert(pair.Positional() == 32767 && pair.Dynamic() == -32768);
  EXPECT_EQ(ScorePair(-1, -1).word, 0xffffffffu);
  EXPECT_EQ(ScorePair(8, 20).word, 0x00140008u);
  EXPECT_EQ(ScorePair(-5, 7).Positional(), -5);
  EXPECT_EQ(ScorePair(-5, 7).Dynamic(), 7);
  EXPECT_EQ(ScorePair(5, -7).Dynamic(), -7);
  EXPECT_EQ(ScorePair().word, 0u);
}

TEST(ScorePair, NoCarryOrBorrowCrossesBetweenHalves) {
  // A carry out of the low half must not reach the high half, and the other way round.
  EXPECT_EQ(ScorePair(-1, 5) + ScorePair(1, 0), ScorePair(0, 5));
  EXPECT_EQ(ScorePair(-1, -1) + ScorePair(1, 1), ScorePair(0, 0));
  EXPECT_EQ(ScorePair(32767, 0) + ScorePair(1, 0), ScorePair(-32768, 0));
  EXPECT_EQ(ScorePair(0, 32767) + ScorePair(0, 1), ScorePair(0, -32768));
  EXPECT_EQ(ScorePair(-32768, -32768) + ScorePair(-32768, -32768), ScorePair(0, 0));
  // A borrow out of the low half must not reach the high half.
  EXPECT_EQ(ScorePair(0, 0) - ScorePair(1, 0), ScorePair(-1, 0));
  EXPECT_EQ(ScorePair(0, 3) - ScorePair(1, 1), ScorePair(-1, 2));
  EXPECT_EQ(ScorePair(-32768, -32768) - ScorePair(1, 1), ScorePair(32767, 32767));
  EXPECT_EQ(ScorePair(32767, 32767) - ScorePair(-1, -1), ScorePair(-32768, -32768));
  EXPECT_EQ(-ScorePair(-32768, 5), ScorePair(-32768, -5));
  EXPECT_EQ(-ScorePair(400, -180), ScorePair(-400, 180));

  ScorePair pair(10, -10);
  pair += ScorePair(-20, 30);
  EXPECT_EQ(pair, ScorePair(-10, 20));
  pair -= ScorePair(-10, 20);
  EXPECT_EQ(pair, ScorePair(0, 0));
}

TEST(ScorePair, AgreesWithHalfByHalfArithmeticEverywhere) {
  std::uint32_t state = 12345;
  auto next = [&state] {
    state = state * 1664525u + 1013904223u;
    return int(std::int16_t(state >> 16));
  };
  const int edges[] = {-32768, -32767, -1, 0, 1, 32766, 32767};
  for (int i = 0; i < 20000; ++i) {
    int a = i < 49 ? edges[i % 7] : next();
    int b = i < 49 ? edges[i / 7] : next();
    int c = next(), d = next();
    ScorePair x(a, c), y(b, d);
    ScorePair sum = x + y, difference = x - y;
    ASSERT_EQ(sum.Positional(), Wrap16(a + b));
    ASSERT_EQ(sum.Dynamic(), Wrap16(c + d));
    ASSERT_EQ(difference.Positional(), Wrap16(a - b));
    ASSERT_EQ(difference.Dynamic(), Wrap16(c - d));
    ASSERT_EQ((-x).Positional(), Wrap16(-a));
    ASSERT_EQ((-x).Dynamic(), Wrap16(-c));
  }
}

}  // namespace
