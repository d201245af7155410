// Positions and walks shared by the evaluation tests.
#pragma once

#include <array>
#include <functional>
#include <stdexcept>
#include <vector>

#include "board/board.h"
#include "board/move_generator.h"
#include "evaluation/evaluation_record.h"
#include "evaluation/pawn_facts.h"
#include "board/board_test_helpers.h"

namespace evaluation_test {

using board_test::FromFen;

// A cleared record with the pawn lists and the passed pawns, as every evaluator starts.
inline EvaluationRecord PassedOf(const Board& board) {
  EvaluationRecord record{};
  ClearEvaluationRecord(record);
  BuildPawnSquares(record, board);
  FindPassedPawns(record, board);
  return record;
}

// The record with every fact the terms read computed, as the evaluators have it on a pawn table
// miss before the pawn structure is scored.
inline EvaluationRecord FactsOf(const Board& board) {
  EvaluationRecord record = PassedOf(board);
  ComputeFileSets(record, board);
  SetBishopPairs(record, board);
  StartSideFacts(record, board);
  ComputePawnFacts(record, board);
  return record;
}

// The sets of one colour's pawn facts that a pawn table hit restores or recomputes.
inline std::array<Bitboard, 14> KeptSets(const PawnFacts& f) {
  return {f.passed,   f.attacks,  f.attacked_once, f.attacked_twice, f.attack_majority,
          f.defended, f.blocked,  f.restrained,    f.duos,           f.doubled,
          f.safe_advance, f.isolated, f.backward,  f.backward_weak};
}

// The colour-flipped mirror: the board turned over rank by rank, colours, side to move, castling
// rights and en-passant square exchanged.
inline Board Mirrored(const Board& board) {
  Piece squares[64];
  for (Square s = 0; s < 64; ++s) squares[s ^ 56] = Piece(-board.squares[s]);
  const BoardPlyState& state = board.State();
  int ep = state.ep_square != 0 ? state.ep_square ^ 56 : 0;
  int castling = (state.castling & 3) << 2 | state.castling >> 2;
  Board mirror;
  if (!mirror.SetPosition(squares, board.side_to_move ^ 1, ep, castling)) {
    throw std::logic_error("the mirror of a valid position is invalid");
  }
  return mirror;
}

// Calls visit at every node of the legal move tree down to depth plies, the root included.
inline void ForEachNode(Board& board, int depth, const std::function<void(const Board&)>& visit) {
  visit(board);
  if (depth == 0) return;
  std::vector<Move> moves;
  GenerateLegalMoves(board, moves);
  for (Move move : moves) {
    board.MakeMove(move);
    ForEachNode(board, depth - 1, visit);
    board.UnmakeMove(move);
  }
}

struct WalkStart {
  const char* fen;
  int depth;
};

// Standard test positions and endgames of most position types, with walk depths small enough for
// the sanitizer build.
inline const std::vector<WalkStart>& WalkStarts() {
  static const std::vector<WalkStart> starts = {
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 2},
      {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 2},
      {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", 3},
      {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 2},
      {"rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 2},
      {"r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", 1},
      {"rnbqkb1r/pp1p1ppp/4pn2/2pP4/2P5/8/PP2PPPP/RNBQKBNR w KQkq c6 0 4", 2},
      {"r2q1r2/pp3ppp/2n1k3/2bp4/3P4/2N1KQ2/PPP2PPP/R4B1R w - - 0 1", 2},
      {"2k4r/ppp2ppp/2n5/3q4/8/2N5/PPP2PPP/R2Q1RK1 b - - 0 1", 2},
      {"2r3k1/5ppp/8/3p4/3P4/8/5PPP/2R3K1 b - - 0 1", 2},
      {"6k1/5ppp/3q4/8/8/3Q4/5PPP/6K1 w - - 0 1", 2},
      {"8/5pk1/8/3n4/8/4B3/5PK1/8 w - - 0 1", 2},
      {"8/8/4k3/3p4/3P4/4K3/8/8 w - - 0 1", 3},
      {"8/8/3k4/8/8/2QK4/8/8 w - - 0 1", 2},
      {"4k3/8/8/8/8/8/4P3/R3K2N b Q - 0 1", 2},
  };
  return starts;
}

}  // namespace evaluation_test
