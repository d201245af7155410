// Small helpers for the tests of the game record, its text forms and the protocols.
#pragma once

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>

#include "board/board_test_helpers.h"
#include "interfaces/fen.h"
#include "interfaces/move_text.h"
#include "interfaces/user_board.h"

namespace test_helpers {

using board_test::FromFen;

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

inline std::string DataFile(const std::string& name) {
  return std::string(ZEPHRIN_SOURCE_DIR) + "/tests/data/" + name;
}

// Keeps what the program writes to standard output while it lives.
class CapturedOutput {
 public:
  CapturedOutput() : saved_(std::cout.rdbuf(text_.rdbuf())) {}
  ~CapturedOutput() { std::cout.rdbuf(saved_); }
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;
  std::string Text() const { return text_.str(); }
  // The text so far, which is then forgotten.
  std::string Take() {
    std::string text = text_.str();
    text_.str("");
    return text;
  }

 private:
  std::ostringstream text_;
  std::streambuf* saved_;
};

}  // namespace test_helpers
