#include "search/history_table.h"

#include <gtest/gtest.h>

namespace {

constexpr Move KNIGHT_G1_F3 = MakeMoveWord(6, 21, KNIGHT);
constexpr Move PAWN_E2_E4 = MakeMoveWord(12, 28, PAWN);

TEST(HistoryTable, BonusesGroupsGenerationsAndSaturation) {
  HistoryTable history;
  history.UpdateHistory(KNIGHT_G1_F3, WHITE, 192, 3);  // bonus 3*3+1, groups 1 and 0
  EXPECT_EQ(history.HistoryValue(KNIGHT_G1_F3, WHITE, 3), 10);
  EXPECT_EQ(history.HistoryValue(KNIGHT_G1_F3, BLACK, 3), 0);
  EXPECT_EQ(history.HistoryValue(KNIGHT_G1_F3, WHITE, 8), 20);  // groups 0 and 1 together
  history.UpdateHistory(KNIGHT_G1_F3, WHITE, 10, 3);  // below one ply: 1
  EXPECT_EQ(history.HistoryValue(KNIGHT_G1_F3, WHITE, 0), 11);

  history.UpdateHistory(PAWN_E2_E4, WHITE, 64, 17);  // groups 2 and 1
  EXPECT_EQ(history.HistoryValue(PAWN_E2_E4, WHITE, 17), 4);
  history.NewGroupGeneration(16);  // a node at ply 16 wipes group 2 only
  EXPECT_EQ(history.HistoryValue(PAWN_E2_E4, WHITE, 17), 2);
  EXPECT_EQ(history.HistoryValue(PAWN_E2_E4, WHITE, 9), 2);
  history.NewHistoryGeneration();
  EXPECT_EQ(history.HistoryValue(PAWN_E2_E4, WHITE, 9), 0);
  // Counts saturate.
  for (int i = 0; i < 10; ++i) history.UpdateHistory(PAWN_E2_E4, BLACK, 64 * 80, 30);
  EXPECT_EQ(history.HistoryValue(PAWN_E2_E4, BLACK, 31), 65535);
}

TEST(Killers, NewMoveBecomesKillerOneAndKillerTwoCanBePromoted) {
  KillerPair killers;
  UpdateKillers(killers, KNIGHT_G1_F3);
  UpdateKillers(killers, PAWN_E2_E4);
  EXPECT_EQ(killers.one, PAWN_E2_E4);
  EXPECT_EQ(killers.two, KNIGHT_G1_F3);
  UpdateKillers(killers, PAWN_E2_E4);
  EXPECT_EQ(killers.two, KNIGHT_G1_F3);
  UpdateKillers(killers, KNIGHT_G1_F3);
  EXPECT_EQ(killers.one, KNIGHT_G1_F3);
  EXPECT_EQ(killers.two, PAWN_E2_E4);
}

}  // namespace
