// A position of a game together with the game's result, and the rules that end a game.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "board/board.h"
#include "interfaces/game_result_text.h"

// Values of GameBoard::result.
constexpr int RESULT_NONE = 0;
constexpr int RESULT_WHITE_WINS = 1;
constexpr int RESULT_BLACK_WINS = 2;
constexpr int RESULT_DRAW = 3;
constexpr int RESULT_UNFINISHED = 4;  // "*": the game was stopped without a decision

// Values of GameBoard::reason, meaningful when result isn't RESULT_NONE.
constexpr int REASON_MATE = 0;
constexpr int REASON_RESIGNATION = 1;
constexpr int REASON_TIME = 2;
constexpr int REASON_STALEMATE = 3;
constexpr int REASON_INSUFFICIENT_MATERIAL = 4;
constexpr int REASON_REPETITION = 5;
constexpr int REASON_AGREEMENT = 6;
constexpr int REASON_FIFTY_MOVES = 7;
constexpr int REASON_ABORTED = 8;
constexpr int REASON_UNKNOWN = 9;

struct GameBoard : Board {
  std::int32_t result = RESULT_NONE;
  std::int32_t reason = REASON_MATE;

  GameBoard() = default;
  explicit GameBoard(const Board& position) : Board(position) {}

  bool IsFinished() const { return result != RESULT_NONE; }
  void SetResult(int new_result, int new_reason) {
    result = new_result;
    reason = new_reason;
  }

  // False on a finished game; otherwise whether the generator has this exact move word.
  bool IsMoveLegal(Move move) const;
  // Plays a move of the game record: make, rebase, append the new key, and look for the end.
  void PlayAndCheck(Move move, std::vector<std::uint64_t>& keys);
  // Mate, stalemate, fifty moves, insufficient material and threefold repetition (counted in
  // keys, the keys after each move of the game). Leaves result and reason alone if none applies.
  void CheckGameEnd(const std::vector<std::uint64_t>& keys);
};
