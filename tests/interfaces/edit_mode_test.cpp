// The words of the edit loop; the loop itself is tested through the program.
#include "interfaces/edit_mode.h"

#include <gtest/gtest.h>

using namespace ZephrinInterfaces;

TEST(EditMode, Vocabulary) {
  Square square = -1;
  PieceType piece = -1;
  const std::pair<const char*, int> words[] = {
      {"#", EDIT_CLEAR_BOARD}, {"c", EDIT_CHANGE_COLOR}, {"restore", EDIT_RESTORE}, {"s", EDIT_CHANGE_SIDE},
      {".", EDIT_FINISH},      {"cancel", EDIT_CANCEL},  {"help", EDIT_HELP},       {"verify", EDIT_VERIFY},
      {"display", EDIT_DISPLAY}, {"quit", EDIT_QUIT},  {"C", EDIT_UNKNOWN},       {"Ze4", EDIT_UNKNOWN},
      {"Pe9", EDIT_UNKNOWN},   {"Pi4", EDIT_UNKNOWN},    {"Pe44", EDIT_UNKNOWN},    {"Ke", EDIT_UNKNOWN},
      {"cancel!", EDIT_UNKNOWN}};
  for (const auto& [word, code] : words) EXPECT_EQ(EditWordCode(word, square, piece), code) << word;

  EXPECT_EQ(EditWordCode("Pe4", square, piece), EDIT_PUT_PIECE);
  EXPECT_EQ(square, 28);
  EXPECT_EQ(piece, PAWN);
  EXPECT_EQ(EditWordCode("nA8", square, piece), EDIT_PUT_PIECE);
  EXPECT_EQ(square, 56);
  EXPECT_EQ(piece, KNIGHT);
  EXPECT_EQ(EditWordCode("Xh1", square, piece), EDIT_CLEAR_SQUARE);
  EXPECT_EQ(square, 7);
}
