#include <gtest/gtest.h>

#include "board/types.h"

TEST(MoveWord, FieldsRoundTrip) {
  const Move m = MakeMoveWord(12, 28, PAWN, KNIGHT, QUEEN) | MOVE_DISCOVERED_CHECK;
  EXPECT_EQ(MoveFrom(m), 12);
  EXPECT_EQ(MoveTo(m), 28);
  EXPECT_EQ(MoveMoved(m), PAWN);
  EXPECT_EQ(MoveCaptured(m), KNIGHT);
  EXPECT_EQ(MovePromotion(m), QUEEN);
  EXPECT_TRUE(MoveGivesCheck(m));
  EXPECT_FALSE(MoveGivesCheck(m & ~MOVE_CHECK_FLAGS));
}
