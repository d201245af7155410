#include "interfaces/game_board.h"

#include <algorithm>

#include "board/move_generator.h"

namespace {

bool HasLegalMove(const Board& board) {
  Move list[MAX_MOVES];
  return GenerateMoves(list, board, GEN_ALL) != list;
}

// Neither side can mate: no pawns, no rooks or queens, and at most one minor piece a side.
bool IsInsufficientMaterial(const Board& board) {
  for (const BoardSide& side : board.sides) {
    if (side.pawns != 0 || side.major_units != 0 || side.minor_units >= 6) return false;
  }
  return true;
}

// Keeps the key history inside its store: once a long run of reversible moves has pushed it past
// the room the search needs above it, the keys that the repetition test can still reach move down
// to the start of the store.
void CompactKeyHistory(Board& board) {
  const std::ptrdiff_t offset = board.key_history - board.key_store;
  if (offset <= Board::MAX_HISTORY) return;
  const int kept = std::min<int>(board.State().reversible_count, Board::MAX_HISTORY);
  std::copy(board.key_history - kept, board.key_history + 1, board.key_store);
  board.key_history = board.key_store + kept;
}

}  // namespace

bool GameBoard::IsMoveLegal(Move move) const { return !IsFinished() && IsLegalMove(*this, move); }

void GameBoard::PlayAndCheck(Move move, std::vector<std::uint64_t>& keys) {
  MakeMove(move);
  Rebase();
  CompactKeyHistory(*this);
  keys.push_back(Key());
  CheckGameEnd(keys);
}

void GameBoard::CheckGameEnd(const std::vector<std::uint64_t>& keys) {
  if (!HasLegalMove(*this)) {
    if (InCheck()) {
      SetResult(side_to_move == BLACK ? RESULT_WHITE_WINS : RESULT_BLACK_WINS, REASON_MATE);
    } else {
      SetResult(RESULT_DRAW, REASON_STALEMATE);
    }
    return;
  }
  if (State().reversible_count > 99) SetResult(RESULT_DRAW, REASON_FIFTY_MOVES);
  if (IsInsufficientMaterial(*this)) SetResult(RESULT_DRAW, REASON_INSUFFICIENT_MATERIAL);
  if (!keys.empty() && std::count(keys.begin(), keys.end(), Key()) == 3) {
    SetResult(RESULT_DRAW, REASON_REPETITION);
  }
}
