// The working record of the recursive search and the node function itself. Every node answers one
// question, whether the value of the tree's position is at least gamma, with gamma (yes) or
// gamma - 1 (no); quiescence is the same function at distance 0 and below.
#pragma once

#include <cstdint>
#include <memory>

#include "board/board.h"
#include "board/move_generator.h"
#include "evaluation/evaluation_record.h"
#include "search/extensions.h"
#include "search/history_table.h"

class Search;

// What is known about a position; the low five bits are kept in the hash entry.
constexpr int THREAT_SINGLE_MOVE = 0x01;      // exactly one legal move
constexpr int THREAT_MATE = 0x02;             // the opponent mates if this side passes
constexpr int THREAT_QUEEN_ATTACKED = 0x04;
constexpr int THREAT_QUEEN_SAFE = 0x08;       // the queen test was made and found nothing
constexpr int THREAT_PIN = 0x10;
constexpr int THREAT_PERPETUAL = 0x20;        // not stored in the hash entry
constexpr int THREAT_ANY = 0x37;
constexpr int THREAT_HASHED = 0x1f;

// What a parent switches off in a child. The low byte acts at the node itself; bits 8-12 act at
// the next ply, where they arrive shifted right by 5.
constexpr int NODE_NO_NULL_MOVE = 0x01;
constexpr int NODE_NO_ETTC = 0x02;
constexpr int NODE_NO_RECAPTURE_EXTENSION = 0x04;
constexpr int NODE_NO_RAZORING = 0x08;
constexpr int NODE_NO_EXTENDED_FUTILITY = 0x10;
constexpr int NODE_NO_PERPETUAL_TEST = 0x20;
constexpr int NODE_NO_HISTORY_PRUNING = 0x40;
constexpr int NODE_NO_LMR = 0x80;
constexpr int NEXT_PLY_SHIFT = 5;
constexpr int NEXT_PLY_FLAGS = 0x1f00;

// Expected kinds of node.
constexpr int NODE_PV = 0;
constexpr int NODE_CUT = 1;
constexpr int NODE_ALL = -1;

constexpr int SEARCH_PLIES = 80;
// Room for the move lists of a whole line even if every list were as long as possible.
constexpr int MOVE_STACK_SIZE = SEARCH_PLIES * MAX_MOVES;

struct SearchTree {
  Board board;
  Move move_stack[MOVE_STACK_SIZE];
  Move pv_table[SEARCH_PLIES][SEARCH_PLIES];  // row p: best line from ply p, ended by 0
  KillerPair killers[SEARCH_PLIES];
  std::unique_ptr<HistoryTable> history;
  Move line[SEARCH_PLIES];  // the move made at each ply; 0 for a null move
  PerpetualRecord perpetual_records[SEARCH_PLIES];
  PinRecord pin_records[SEARCH_PLIES];
  int position_types[SEARCH_PLIES];
  EvaluationRecord evaluator;
  std::uint64_t local_nodes = 0;
  std::uint64_t poll_countdown = 100;
  Search* search = nullptr;

  explicit SearchTree(Search* owner);

  // Takes a new position and starts a new search on it: poll countdown, node count, history
  // generation, perpetual records and the root pin.
  void Reset(const Board& position);

  // The draw score for the side to move at the current ply.
  int DrawValue() const;
  // Row ply of the PV table becomes `move` followed by row ply + 1.
  void UpdatePv(int ply, Move move);
  void SetPvToSingleMove(int ply, Move move);
};

// The recursive search: is the value of the tree's position at least gamma? `list` is where this
// node may write its moves.
int SearchNode(SearchTree& tree, Move* list, int gamma, int distance, int node_type, int position_type,
               int flags);

// Simple endgames are the types 3 to 16.
constexpr bool IsSimpleEndgame(int position_type) { return position_type >= 3 && position_type <= 16; }
// The null move is forbidden in the types 3 and 5 to 16; queen endings keep it.
constexpr bool NullMoveAllowed(int position_type) {
  return !(position_type == 3 || (position_type >= 5 && position_type <= 16));
}
// The mate threat test is skipped in the types 5, 6, 7, 8, 11, 12 and 15.
constexpr bool MateThreatTestAllowed(int position_type) {
  return !((position_type >= 5 && position_type <= 8) || position_type == 11 || position_type == 12 ||
           position_type == 15);
}
