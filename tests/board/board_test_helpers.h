// Positions, squares and moves from their text, for the tests of the board, the hash tables and
// the search.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "board/board.h"
#include "board/move_generator.h"
#include "frame/string_conversions.h"
#include "interfaces/fen.h"

namespace board_test {

inline Board FromFen(const std::string& fen) {
  Board board;
  ZephrinInterfaces::ReadFen(fen, board);
  return board;
}

// The square named "e4"; the tests name only real squares.
inline Square At(const std::string& name) { return *ParseSquare(name); }

// The move as the tests write it: "e2e4", a promotion "a7b8n".
inline std::string MoveName(Move m) {
  std::string name = SquareText(MoveFrom(m)) + SquareText(MoveTo(m));
  if (MovePromotion(m)) name += " pnbrqk"[MovePromotion(m)];
  return name;
}

// The legal move of that name, as the generator words it; fails the test if there is none.
inline Move FindMove(const Board& board, const std::string& name) {
  std::vector<Move> moves;
  GenerateLegalMoves(board, moves);
  for (Move m : moves)
    if (MoveName(m) == name) return m;
  ADD_FAILURE() << "no move " << name << " in " << ZephrinInterfaces::BoardToFen(board, 1);
  return MOVE_INVALID;
}

// Plays moves as the game layer does: make, then rebase, checking the record after each.
inline void PlayInGame(Board& board, std::initializer_list<const char*> moves) {
  for (const char* name : moves) {
    board.MakeMove(FindMove(board, name));
    board.Rebase();
    ASSERT_TRUE(board.IsConsistent()) << name;
  }
}

}  // namespace board_test
