#include "interfaces/user_board.h"

#include "interfaces/fen.h"

namespace {

constexpr std::size_t RESERVED_MOVES = 100;

}  // namespace

UserBoard::UserBoard() { Reset(); }

void UserBoard::ClearHistory() {
  moves_.clear();
  keys_.clear();
  next_moves_.clear();
  moves_.reserve(RESERVED_MOVES);
  keys_.reserve(RESERVED_MOVES);
}

void UserBoard::Reset() {
  initial_ = GameBoard();
  initial_.SetResult(RESULT_NONE, REASON_MATE);
  current_ = initial_;
  first_ply_ = 0;
  ClearHistory();
}

void UserBoard::SetPosition(const Board& position) {
  GameBoard start(position);
  start.Rebase();
  start.SetResult(RESULT_NONE, REASON_UNKNOWN);
  start.CheckGameEnd({});
  initial_ = start;
  current_ = start;
  first_ply_ = 0;
  ClearHistory();
}

void UserBoard::SetFromFen(const std::string& fen) {
  GameBoard start;
  ZephrinInterfaces::FenCounts counts;
  try {
    counts = ZephrinInterfaces::ReadFen(fen, start);
  } catch (const ZephrinInterfaces::fen_io_error&) {
    throw io_error();
  } catch (const ZephrinInterfaces::fen_invalid_position&) {
    throw invalid_position();
  }
  start.SetResult(RESULT_NONE, REASON_UNKNOWN);
  start.CheckGameEnd({});
  initial_ = start;
  current_ = start;
  first_ply_ = counts.first_ply;
  ClearHistory();
}

UserBoard UserBoard::WithSideChanged() const {
  GameBoard position(current_);
  if (!position.ToggleSide()) throw invalid_board_after_changing_side();
  UserBoard changed;
  changed.SetPosition(position);
  return changed;
}

void UserBoard::PlayMove(Move move) {
  move &= MOVE_MASK;
  const bool replaying = !next_moves_.empty() && next_moves_.back() == move;
  if (!replaying && !current_.IsMoveLegal(move)) throw invalid_move();
  current_.PlayAndCheck(move, keys_);
  moves_.push_back(move);
  if (replaying) {
    next_moves_.pop_back();
  } else {
    next_moves_.clear();
  }
}

void UserBoard::PlayNext() {
  if (next_moves_.empty()) throw next_moves_empty();
  PlayMove(next_moves_.back());
}

void UserBoard::PlayAllNext() {
  while (!next_moves_.empty()) PlayNext();
}

void UserBoard::UndoMove() {
  if (moves_.empty()) throw no_moves_to_undo();
  next_moves_.push_back(moves_.back());
  moves_.pop_back();
  Replay();
}

void UserBoard::UndoTwoMoves() {
  if (moves_.size() < 2) throw no_moves_to_undo();
  UndoMove();
  UndoMove();
}

void UserBoard::UndoAll() {
  for (auto move = moves_.rbegin(); move != moves_.rend(); ++move) next_moves_.push_back(*move);
  current_ = initial_;
  moves_.clear();
  keys_.clear();
}

void UserBoard::Replay() {
  current_ = initial_;
  keys_.clear();
  for (Move move : moves_) current_.PlayAndCheck(move, keys_);
}

std::string PositionToFen(const UserBoard& game) {
  return ZephrinInterfaces::BoardToFen(game.Current(), game.FullMoveNumber());
}
