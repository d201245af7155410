#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "board/attacks.h"
#include "board/board_test_helpers.h"
#include "board/pseudo_legal.h"
#include "board/reference_moves.h"

namespace {

using board_test::FromFen;

#ifdef NDEBUG
constexpr int WALK_DEPTH = 3;
#else
constexpr int WALK_DEPTH = 2;  // the sanitizer build is many times slower
#endif

std::vector<Move> Generate(const Board& board, int mask) {
  Move moves[MAX_MOVES];
  return std::vector<Move>(moves, GenerateMoves(moves, board, mask));
}

bool IsCastling(Move m) {
  return MoveMoved(m) == KING && (MoveTo(m) - MoveFrom(m) == 2 || MoveFrom(m) - MoveTo(m) == 2);
}

// Whether the move classes that a partial mask names take this move (not in check).
bool Wanted(Move m, int mask, bool in_check) {
  const bool direct = m & MOVE_DIRECT_CHECK, discovered = m & MOVE_DISCOVERED_CHECK;
  const PieceType promotion = MovePromotion(m);
  if (promotion) {
    if (mask & (GEN_QUIET | GEN_UNDERPROMOTIONS)) return true;
    if (promotion == QUEEN && ((mask & GEN_QUEEN_PROMOTIONS) || (MoveCaptured(m) && (mask & GEN_CAPTURES))))
      return true;
    return direct && ((mask & GEN_DIRECT_CHECKS) || ((mask & GEN_DOUBLE_CHECKS) && discovered));
  }
  if (in_check) return true;
  if (IsCastling(m)) return (mask & GEN_CASTLING) || ((mask & GEN_DIRECT_CHECKS) && direct);
  if ((mask & GEN_QUIET) || (MoveCaptured(m) && (mask & GEN_CAPTURES))) return true;
  const int check_class = direct && discovered ? GEN_DOUBLE_CHECKS
                          : direct             ? GEN_DIRECT_CHECKS
                          : discovered         ? GEN_DISCOVERED_CHECKS
                                               : 0;
  return mask & check_class;
}

// Everything that make and undo must restore: the record up to the key history (copies are
// byte-exact there), the per-ply records up to ply (those above are stale) and the keys.
void ExpectSameBoard(const Board& a, const Board& b, const std::string& where) {
  ASSERT_EQ(0, std::memcmp(static_cast<const void*>(&a), static_cast<const void*>(&b), offsetof(Board, key_history)))
      << where;
  EXPECT_EQ(0, std::memcmp(a.plies, b.plies, sizeof(BoardPlyState) * (a.ply + 1))) << where;
  EXPECT_EQ(a.key_history - a.key_store, b.key_history - b.key_store) << where;
  EXPECT_TRUE(std::equal(a.key_history, a.key_history + a.ply + 1, b.key_history)) << where;
}

std::string Describe(const Board& board, Move m) {
  return ZephrinInterfaces::BoardToFen(board, 1) + " move " + board_test::MoveName(m) + " word " + std::to_string(m);
}

// Checks one move: keys, consistency, check bits against a slow test, and the exact undo.
void CheckMove(Board& board, Move m) {
  const Board before(board);
  const std::string where = Describe(board, m);
  const std::uint64_t predicted = board.KeyAfterMove(m), predicted_pawns = board.PawnKeyAfterMove(m);
  EXPECT_TRUE(IsMovePseudoLegal(board, m)) << where;
  EXPECT_FALSE(IsMovePseudoLegal(board, m ^ MOVE_DIRECT_CHECK)) << where;
  EXPECT_FALSE(IsMovePseudoLegal(board, m ^ MOVE_DISCOVERED_CHECK)) << where;
  EXPECT_FALSE(WouldLeaveOwnKingInCheck(board, m)) << where;

  board.MakeMove(m);
  EXPECT_TRUE(board.IsConsistent()) << where;
  EXPECT_EQ(board.Key(), predicted) << where;
  EXPECT_EQ(board.Key(), board.ComputeKey()) << where;
  EXPECT_EQ(board.PawnKey(), board.ComputePawnKey()) << where;
  EXPECT_EQ(board.PawnKey(), predicted_pawns) << where;
  // The checking piece of a castling is the rook, which the move word counts as direct.
  Square checker = MoveTo(m);
  if (IsCastling(m)) checker = MoveTo(m) > MoveFrom(m) ? MoveTo(m) - 1 : MoveTo(m) + 1;
  const Square q = board.sides[board.side_to_move].king_square;
  bool discovered = false;
  for (Square s = 0; s < 64; ++s)
    if (s != checker && board.squares[s] && ColorOf(board.squares[s]) != board.side_to_move)
      discovered = discovered || reference::PieceAttacks(board, s, q);
  EXPECT_EQ((m & MOVE_DIRECT_CHECK) != 0, reference::PieceAttacks(board, checker, q)) << where;
  EXPECT_EQ((m & MOVE_DISCOVERED_CHECK) != 0, discovered) << where;
  EXPECT_EQ(board.InCheck(), reference::Attacks(board, q, board.side_to_move ^ 1)) << where;
  board.UnmakeMove(m);
  EXPECT_TRUE(board.IsConsistent()) << where;
  ExpectSameBoard(board, before, where);
}

// Checks the lists of a node: legal moves against the slow reference, partial masks against the
// full list, and every move by CheckMove; then walks on.
void Walk(Board& board, int depth) {
  const std::vector<Move> all = Generate(board, GEN_ALL);
  const std::string where = ZephrinInterfaces::BoardToFen(board, 1);
  std::set<reference::MoveKey> generated;
  for (Move m : all) generated.insert({MoveFrom(m), MoveTo(m), MovePromotion(m)});
  ASSERT_EQ(generated.size(), all.size()) << where;
  ASSERT_EQ(generated, reference::LegalMoves(board)) << where;
  EXPECT_EQ(all, Generate(board, GEN_ALL)) << where;
  for (int mask : {0x5f, 0x1f, 0x51, 0x11, 0x0e}) {
    std::vector<Move> expected;
    for (Move m : all)
      if (Wanted(m, mask, board.InCheck())) expected.push_back(m);
    EXPECT_EQ(Generate(board, mask), expected) << where << " mask " << mask;
  }
  for (Move m : all) {
    CheckMove(board, m);
    if (depth > 1) {
      board.MakeMove(m);
      Walk(board, depth - 1);
      board.UnmakeMove(m);
    }
  }
}

const char* const WALK_POSITIONS[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
    "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    // Trickier corners: en passant along ranks and diagonals, promotions with check, castling
    // through attacks, double checks, discovered checks by every piece. Those with published perft
    // counts are in the perft test.
    "8/8/8/K2pP2r/8/8/8/7k w - d6 0 1",            // en passant would expose the king on the rank
    "8/8/8/1k1pP2R/8/8/8/7K w - d6 0 1",           // en passant gives discovered check on the rank
    "8/k7/8/2pP4/8/4B3/8/7K w - c6 0 1",           // the captured pawn shielded the king from the bishop
    "7k/8/8/3pP3/8/8/8/B6K w - d6 0 1",            // removal of d5 opens the long diagonal
    "8/8/8/3pP3/8/1k6/8/Q6K w - d6 0 1",           // en passant with the captured pawn on a queen line
    "4k3/8/8/2KpP3/8/8/8/8 w - d6 0 1",            // the double step gives check; en passant evades
    "4k3/8/8/3pP3/8/8/8/3RK3 w - d6 0 1",          // captured pawn on the file of a rook
    "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1",
    "r3k2r/8/8/8/8/5n2/8/R3K2R w KQkq - 0 1",      // the knight covers d2, e1, g1 and h2
    "r3k2r/8/8/8/8/8/6p1/R3K2R w KQkq - 0 1",      // pawn covers f1 and h1
    "1r2k2r/8/8/8/8/8/8/R3K2R w KQk - 0 1",        // b1 attacked, long castling still allowed
    "2r1k3/1P6/8/8/8/8/8/4K3 w - - 0 1",           // promotions with capture and check
    "4k3/2P5/8/8/8/8/8/K7 w - - 0 1",              // promotion to rook and queen check on the rank
    "1k6/8/8/8/8/8/1p6/R3K3 b - - 0 1",
    "8/1P6/8/8/8/1k6/8/K7 w - - 0 1",              // the new piece checks through its own from square
    "nkn5/1P6/8/8/8/8/8/1R5K w - - 0 1",           // capturing promotion uncovers the rook
    "4k3/4r3/8/8/8/8/8/4K3 w - - 0 1",             // stepping back along the check line
    "4k3/8/8/8/1b6/8/3n4/4K3 w - - 0 1",           // double check
    "4k3/8/8/8/8/8/4r3/R3K2q w Q - 0 1",
    "k7/8/8/3q4/8/8/8/3K3N w - - 0 1",
    "8/8/3k4/8/3N4/8/8/K2R4 w - - 0 1",            // discovered checks by a knight
    "3k4/8/8/3B4/8/8/8/K2R4 w - - 0 1",
    "k7/8/K7/8/8/8/8/Q7 w - - 0 1",                // king steps uncover the queen
    "8/8/8/8/k2Pp2Q/8/8/3K4 b - d3 0 1",           // black en passant, pinned on the rank
    "4k3/8/8/8/3pP3/8/8/4K2b b - e3 0 1",
    "8/5bk1/8/2Pp4/8/1K6/8/8 w - d6 0 1",          // pinned by the bishop along the diagonal
    "rnbqkbnr/pp1ppppp/8/2pP4/8/8/PPP1PPPP/RNBQKBNR w KQkq c6 0 2",
    "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1",
    "4k2r/8/8/8/8/8/8/4K2R w Kk - 0 1",
    "r3k3/1K6/8/8/8/8/8/8 w q - 0 1",
};

TEST(MoveGenerator, EveryNodeKeepsItsInvariantsAndAgreesWithTheSlowReference) {
  for (const char* fen : WALK_POSITIONS) {
    Board board = FromFen(fen);
    Walk(board, WALK_DEPTH);
  }
}

}  // namespace
