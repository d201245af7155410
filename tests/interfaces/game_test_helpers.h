// Small helpers for the tests of the game record and its text forms.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "interfaces/move_text.h"
#include "interfaces/user_board.h"

namespace test_helpers {

// A game from FEN text, or from the start position for an empty text.
inline UserBoard GameFrom(const std::string& fen = "") {
  UserBoard game;
  if (!fen.empty()) game.SetFromFen(fen);
  return game;
}

// Plays blank-separated moves in any notation ParseMove reads; fails the test on the first that
// doesn't parse.
inline void Play(UserBoard& game, const std::string& moves) {
  std::istringstream in(moves);
  for (std::string text; in >> text;) {
    Move move = MOVE_INVALID;
    ASSERT_EQ(ZephrinInterfaces::ParseMove(game.Current(), text, move), ZephrinInterfaces::PARSE_OK)
        << "move " << text << " in " << PositionToFen(game);
    game.PlayMove(move);
    ASSERT_TRUE(game.Current().IsConsistent()) << "after " << text;
  }
}

inline Move Parse(const GameBoard& board, const std::string& text) {
  Move move = MOVE_INVALID;
  EXPECT_EQ(ZephrinInterfaces::ParseMove(board, text, move), ZephrinInterfaces::PARSE_OK) << text;
  return move;
}

inline std::string Slurp(const std::string& file_name) {
  std::ifstream in(file_name, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

inline std::string DataFile(const std::string& name) {
  return std::string(ZEPHRIN_SOURCE_DIR) + "/tests/data/" + name;
}

}  // namespace test_helpers
