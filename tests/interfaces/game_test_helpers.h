// Small helpers for the tests of the game record, its text forms and the protocols.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <iostream>
#include <sstream>
#include <string>

#include "board/board_test_helpers.h"
#include "frame/input.h"
#include "interfaces/fen.h"
#include "interfaces/move_text.h"
#include "interfaces/user_board.h"
#include "search/search.h"

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

// A script of input lines, then "quit"; with a search given, each line is noted with the iteration
// of the search that read it (0: no search ran).
class ScriptedInput : public InputSource {
 public:
  explicit ScriptedInput(std::deque<std::string> script, const Search* reader = nullptr)
      : lines(std::move(script)), search(reader) {}
  std::string ReadLine() override {
    if (lines.empty()) return "quit";
    std::string line = lines.front();
    lines.pop_front();
    if (search) read_in_iteration.push_back(search->running ? search->iteration : 0);
    return line;
  }
  bool InputAvailable() override { return !lines.empty(); }
  std::deque<std::string> lines;
  std::vector<int> read_in_iteration;
  const Search* search;
};

}  // namespace test_helpers
