// Move ordering. Sort values live in the nine high bits of each Move word in a list, so that
// comparing words as unsigned numbers compares values first and move bits second.
//
// A node with distance above 0, or in check, takes its moves region by region from MovePicker:
// promising tacticals and killers, the other tacticals, history moves, then the rest by a static
// table. A quiescence node scores its whole list once with ScoreQuiescenceMoves.
#pragma once

#include "board/board.h"
#include "search/history_table.h"

constexpr int SORT_SHIFT = 23;
constexpr Move TACTICAL_BITS = 0x7f8000;  // captured, promotion and check fields

constexpr Move WithSortValue(Move move, int value) {
  return (move & MOVE_MASK) | (Move(value) << SORT_SHIFT);
}
constexpr int SortValueOf(Move move) { return int(move >> SORT_SHIFT); }
constexpr bool IsTactical(Move move) { return (move & TACTICAL_BITS) != 0; }

// Static ordering table: a bonus per moved piece and a square table per piece, from white's view.
struct OrderTable {
  int piece_bonus[6];
  int squares[6][64];
};
extern const OrderTable ORDER_MIDDLEGAME;
extern const OrderTable ORDER_ENDGAME;

// What the node knows that ordering depends on.
struct PickerContext {
  const Board& board;
  int distance;
  int gamma;
  Move hash_move;
  int node_type;
  KillerPair killers;
  const HistoryTable& history;
  int position_type;
};

// One region of the list handed out by MovePicker; the caller uses it up, in order if sorted,
// otherwise by selecting the highest word each time.
struct MoveRegion {
  Move* first = nullptr;
  Move* last = nullptr;
  bool sorted = true;
  bool final = false;
};

// The picker's progress through one node's list. The list is kept in regions: first the
// promising tacticals with the killers (A), then the other tacticals (the tacticals together are
// T), then the quiet moves (Q), whose front gathers the moves with a history count.
struct MovePickerState {
  int stage = 0;
  bool eager = false;
  bool history_partitioned = false;
  Move* list = nullptr;
  Move* end = nullptr;            // shrinks by one when the hash move is removed
  Move* promising_end = nullptr;  // end of A
  Move* tactical_end = nullptr;   // end of T
  Move* history_end = nullptr;    // end of the history moves at the front of Q

  MovePickerState() = default;
  MovePickerState(Move* list_begin, Move* list_end) : list(list_begin), end(list_end) {}
};

// Gives the next region of the list in `region`. Removes the hash move from the list.
void MovePicker(MovePickerState& state, const PickerContext& context, MoveRegion& region);

// Scores a quiescence list and removes the hash move; returns the new end.
Move* ScoreQuiescenceMoves(Move* list, Move* end, Move hash_move, KillerPair killers, int gamma,
                           const Board& board);

// The value of a capture, promotion or checking move, 256..511.
int TacticalValue(const Board& board, Move move, int gamma);

// Sorts by unsigned word, highest first: insertion sort with a gap of 3, then of 1.
void SortMoves(Move* first, Move* last);

// Moves the highest word in [cursor, end) to the cursor, the earliest of equals, and returns it.
Move SelectBest(Move* cursor, Move* end);
