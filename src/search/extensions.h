// Extensions and threat detection as the node calls them. Node extensions (threats the node has
// found) are paid to every move of the node; move extensions belong to one move. Both are small
// additions to the distance, in 1/64 ply.
// Each measure exists in full (near the root) and limited (further out) form.
#pragma once

#include <cstdint>

#include "board/board.h"

struct SearchTree;

// One per ply: the pin that the line has created, if any.
struct PinRecord {
  std::int16_t pinned_square = -1;  // negative when no pin is known
  std::int16_t pinner_square = -2;
  std::int32_t pinner_side = -1;
};

// One per ply: the series of queen checks against the side to move.
struct PerpetualRecord {
  std::uint16_t count = 0;  // consecutive queen checks so far, 1 at the first
  std::uint16_t found = 0;  // nonzero if the series counts as a perpetual check
  std::int16_t king_square = 0;
  std::int16_t material = 0;
  Bitboard guards = 0;
};

// Bits of `kinds`: what is extended at a node and for a move.
constexpr int EXTEND_DIRECT_CHECK = 0x01;
constexpr int EXTEND_DISCOVERED_CHECK = 0x02;
constexpr int EXTEND_DOUBLE_CHECK = 0x04;
constexpr int EXTEND_SINGLE_REPLY = 0x08;
constexpr int EXTEND_RECAPTURE = 0x10;
constexpr int EXTEND_PASSER_6TH = 0x20;
constexpr int EXTEND_PAWN_7TH = 0x40;
constexpr int EXTEND_ROOK_7TH = 0x80;
constexpr int EXTEND_QUEEN_ATTACKED = 0x100;
constexpr int EXTEND_PERPETUAL = 0x200;
constexpr int EXTEND_PIN = 0x400;
constexpr int EXTEND_MATE_THREAT = 0x800;
constexpr int EXTEND_MOVE_BITS = 0xff;

struct NodeExtensionResult {
  int delayed = 0;  // paid to every move of the node
  bool full = false;
  int kinds = 0;    // node-level bits
};

// The node's delayed extension; may set 0x04 or 0x08 in threat_flags (the attacked queen test).
NodeExtensionResult NodeExtension(SearchTree& tree, int distance, int node_type, int position_type,
                                  int pin_code, int flags, int& threat_flags);

// The move's extension, delayed part and caps included, to be added to the distance; `kinds`
// receives the node bits with the move bits of this move.
int MoveExtension(const SearchTree& tree, Move move, int flags, int threat_flags,
                  const NodeExtensionResult& node, int& kinds);

// Whether a queen of the side to move is attacked by a pawn, knight, bishop or rook.
bool QueenIsAttacked(const Board& board);
// Whether a piece on `pinned`, pinned by `pinner` of `side`, is really held: it can't simply take
// the pinner or move along the line.
bool PinIsReal(const Board& board, Square pinner, Square pinned, Color side);
// Sets up the pin records at the start of a search.
void DetectRootPin(SearchTree& tree);
// 1 new pin, 2 tightened pin, 0 a known pin continues, -1 or -2 a pin ended, -3 nothing.
int DetectPinThreat(SearchTree& tree, Move last, Move previous);
// Whether a positive pin code counts as a threat.
bool PinIsThreat(const SearchTree& tree, int pin_code);
// Whether the side to move, in check, is being checked perpetually; fills this ply's record.
bool DetectPerpetualCheck(SearchTree& tree);
