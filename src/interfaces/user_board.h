// The record of a game with value semantics: where it began, the moves played, the moves taken
// back that can be played again, and where it stands now. Copying a UserBoard copies all of it.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "board/board.h"
#include "frame/zephrin_exception.h"
#include "interfaces/game_board.h"

class UserBoard {
 public:
  class user_exception : public ZephrinException {
   public:
    using ZephrinException::ZephrinException;
  };
  class invalid_move : public user_exception {
   public:
    invalid_move() : user_exception("invalid move") {}
  };
  class invalid_position : public user_exception {
   public:
    invalid_position() : user_exception("invalid position") {}
  };
  class next_moves_empty : public user_exception {
   public:
    next_moves_empty() : user_exception("next move buffer is empty") {}
  };
  class no_moves_to_undo : public user_exception {
   public:
    no_moves_to_undo() : user_exception("no move to undo") {}
  };
  class invalid_board_after_changing_side : public user_exception {
   public:
    invalid_board_after_changing_side() : user_exception("invalid board after changing side") {}
  };
  class io_error : public user_exception {
   public:
    io_error() : user_exception("input/output error") {}
  };

  // A new game from the start position.
  UserBoard();

  // Back to the start position with no history.
  void Reset();
  // A new game from the given position: no history, first ply 0, and the end of the game
  // decided by the position alone.
  void SetPosition(const Board& position);
  // A new game from FEN text; raises io_error for malformed text and invalid_position for a
  // position that can't be played. The game is unchanged on failure.
  void SetFromFen(const std::string& fen);
  // The game from the current position with the other side to move, without history; raises
  // invalid_board_after_changing_side if that position is illegal.
  UserBoard WithSideChanged() const;

  // Plays a move of the current position. The move taken back last is replayed without a
  // legality test and keeps the rest of the next-move buffer; any other move must be legal
  // (else invalid_move) and clears the buffer.
  void PlayMove(Move move);
  // Replays the move taken back last; next_moves_empty if there is none.
  void PlayNext();
  void PlayAllNext();
  // Takes back the last move into the next-move buffer; no_moves_to_undo if there is none.
  void UndoMove();
  // Takes back two moves; no_moves_to_undo unless two have been played.
  void UndoTwoMoves();
  void UndoAll();

  // Ends the game with the given result and reason (see game_board.h).
  void SetResult(int result, int reason) { current_.SetResult(result, reason); }

  const GameBoard& Current() const { return current_; }
  const GameBoard& Initial() const { return initial_; }
  const std::vector<Move>& Moves() const { return moves_; }
  // Moves taken back and not replaced; the one taken back last is at the back.
  const std::deque<Move>& NextMoves() const { return next_moves_; }
  // The position key after each played move.
  const std::vector<std::uint64_t>& Keys() const { return keys_; }
  // Plies of the game before Initial(): 2 * (full move number - 1), plus 1 with Black to move.
  int FirstPly() const { return first_ply_; }
  // The full move number of the current position.
  int FullMoveNumber() const { return (first_ply_ + int(moves_.size())) / 2 + 1; }
  int SideToMove() const { return current_.side_to_move; }
  bool IsFinished() const { return current_.IsFinished(); }

  // Recomputes the current position, keys and result by playing all moves from Initial().
  void Replay();

 private:
  void ClearHistory();

  std::int32_t first_ply_ = 0;
  GameBoard initial_;
  GameBoard current_;
  std::vector<Move> moves_;
  std::deque<Move> next_moves_;
  std::vector<std::uint64_t> keys_;
};

// The FEN text of the current position, with the game's full move number.
std::string PositionToFen(const UserBoard& game);
