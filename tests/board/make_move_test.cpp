#include <gtest/gtest.h>

#include "board/board_test_helpers.h"

using namespace board_test;

TEST(MakeMove, CastlingRightsAndTheirKeys) {
  // A rook taken on a8 removes black's long right; the keys are checked against a fresh
  // computation by the generator walk.
  Board board = FromFen("r3k3/8/8/8/8/8/8/R3K3 w Qq - 0 1");
  board.MakeMove(FindMove(board, "a1a8"));
  EXPECT_EQ(board.State().castling, 0);  // the white rook left a1 as well
  // A rook leaving h1 without the short right keeps the long one.
  board = FromFen("4k3/8/8/8/8/8/8/R3K2R w Q - 0 1");
  board.MakeMove(FindMove(board, "h1h2"));
  EXPECT_EQ(board.State().castling, CASTLE_WHITE_LONG);
  // Castling moves the rook and clears both rights of the side.
  board = FromFen("r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1");
  board.MakeMove(FindMove(board, "e8c8"));
  EXPECT_EQ(board.squares[59], MakePiece(BLACK, ROOK));
  EXPECT_EQ(board.squares[56], 0);
  EXPECT_EQ(board.State().castling, CASTLE_WHITE_SHORT | CASTLE_WHITE_LONG);
  EXPECT_EQ(board.State().reversible_count, 1);
  EXPECT_TRUE(board.IsConsistent());
}

TEST(MakeMove, DoubleStepsAndNullMoves) {
  Board board;
  board.MakeMove(FindMove(board, "e2e4"));
  EXPECT_EQ(board.EpText(), "e3");  // set although no black pawn can take
  const std::uint64_t with_ep = board.Key();
  EXPECT_EQ(with_ep, board.ComputeKey());
  board.MakeNullMove();
  EXPECT_EQ(board.State().ep_square, 0);
  EXPECT_EQ(board.State().reversible_count, 0);
  EXPECT_EQ(board.side_to_move, WHITE);
  EXPECT_EQ(board.Key(), board.ComputeKey());
  EXPECT_EQ(board.State().material, 0);
  board.UnmakeNullMove();
  EXPECT_EQ(board.Key(), with_ep);
  EXPECT_TRUE(board.IsConsistent());

  // A transposition ending in the double step differs by exactly the en-passant key.
  Board one, two;
  for (const char* m : {"e2e4", "g8f6", "g1f3"}) one.MakeMove(FindMove(one, m));
  for (const char* m : {"g1f3", "g8f6", "e2e4"}) two.MakeMove(FindMove(two, m));
  EXPECT_EQ(one.Key() ^ two.Key(), Tables.ep_keys[0][4]);
  EXPECT_EQ(one.PawnKey(), two.PawnKey());
}

TEST(IsDraw, BareMinors) {
  EXPECT_TRUE(FromFen("4k3/8/8/8/8/8/8/4K3 w - - 0 1").IsDraw());
  EXPECT_TRUE(FromFen("4k1n1/8/8/8/8/8/8/1N2KN2 w - - 0 1").IsDraw());    // KNN v KN
  EXPECT_TRUE(FromFen("4k1b1/8/8/8/8/8/8/4KB2 w - - 0 1").IsDraw());      // KB v KB
  EXPECT_FALSE(FromFen("4k3/8/8/8/8/8/8/3BKB2 w - - 0 1").IsDraw());      // two bishops
  EXPECT_FALSE(FromFen("4k3/8/8/8/8/8/8/2NBK3 w - - 0 1").IsDraw());      // bishop and knight
  EXPECT_FALSE(FromFen("4k3/8/8/8/8/8/4P3/4KB2 w - - 0 1").IsDraw());     // a pawn
  EXPECT_FALSE(FromFen("4k3/8/8/8/8/8/8/4KR2 w - - 0 1").IsDraw());       // a rook
}

TEST(IsDraw, FiftyMovesAndRepetition) {
  EXPECT_TRUE(FromFen("4k3/8/8/8/8/8/8/R3K3 w - - 100 80").IsDraw());
  EXPECT_FALSE(FromFen("4k3/8/8/8/8/8/8/R3K3 w - - 99 80").IsDraw());

  // A single earlier occurrence counts, within the search's plies...
  Board board = FromFen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
  for (const char* m : {"a1a2", "e8d8", "a2a1"}) {
    board.MakeMove(FindMove(board, m));
    EXPECT_FALSE(board.IsDraw()) << m;
  }
  board.MakeMove(FindMove(board, "d8e8"));
  EXPECT_TRUE(board.IsDraw());
  // ...and across rebased game moves, but not across a pawn move.
  Board game = FromFen("4k3/p7/8/8/8/8/8/R3K3 w - - 0 1");
  PlayInGame(game, {"a1a2", "e8d8", "a2a1", "d8e8"});
  EXPECT_TRUE(game.IsDraw());
  // After a pawn move only the positions since then count.
  PlayInGame(game, {"a1a2", "a7a6"});
  for (const char* m : {"a2a1", "e8d8", "a1a2"}) {
    PlayInGame(game, {m});
    EXPECT_FALSE(game.IsDraw()) << m;
  }
  PlayInGame(game, {"d8e8"});
  EXPECT_TRUE(game.IsDraw());
}

TEST(IsDraw, ReversibleCountFromTextFindsOnlyRealHistory) {
  Board board = FromFen("4k3/8/8/8/8/8/8/R3K3 w - - 30 40");
  EXPECT_EQ(board.State().reversible_count, 30);
  EXPECT_EQ(board.key_history - board.key_store, 30);
  for (int i = 0; i < 30; ++i) EXPECT_EQ(board.key_store[i], std::uint64_t(i + 1));
  EXPECT_FALSE(board.IsDraw());
  PlayInGame(board, {"a1a2", "e8d8", "a2a1"});
  EXPECT_FALSE(board.IsDraw());
  PlayInGame(board, {"d8e8"});
  EXPECT_TRUE(board.IsDraw());
  EXPECT_EQ(board.State().reversible_count, 34);
}

TEST(Rebase, LongReversibleRunsStayInsideTheKeyStore) {
  // The rook circles a1-a2-b2-b1 while the black king steps e8-d8-e8: every position returns
  // exactly after eight plies.
  Board board = FromFen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
  const char* rook[] = {"a1a2", "a2b2", "b2b1", "b1a1"};
  const char* king[] = {"e8d8", "d8e8"};
  for (int ply = 1; ply <= 100; ++ply) {
    const int j = (ply - 1) / 2;
    PlayInGame(board, {ply % 2 ? rook[j % 4] : king[j % 2]});
    ASSERT_LE(board.key_history - board.key_store, Board::MAX_HISTORY);
    ASSERT_EQ(board.IsDraw(), ply >= 8) << ply;
  }
  EXPECT_EQ(board.State().reversible_count, 100);
  // A search from here still has its full room of plies.
  for (int i = 0; i < Board::MAX_PLIES - 1; ++i) board.MakeNullMove();
  EXPECT_TRUE(board.key_history + board.ply < board.key_store + Board::KEY_STORE_SIZE);
}

TEST(ToggleSide, HandsTheMoveOver) {
  Board board = FromFen("4k3/8/8/8/8/8/4P3/4K3 w - - 7 1");
  EXPECT_TRUE(board.ToggleSide());
  EXPECT_EQ(board.side_to_move, BLACK);
  EXPECT_EQ(board.State().reversible_count, 0);
  EXPECT_EQ(board.State().material, -100);
  EXPECT_EQ(board.Key(), board.ComputeKey());
  EXPECT_TRUE(board.IsConsistent());
  // A left-over en-passant square makes the position invalid.
  Board ep = FromFen("4k3/8/8/8/4P3/8/8/4K3 b - e3 0 1");
  EXPECT_FALSE(ep.ToggleSide());
  // Handing the move to a side that gives check is invalid.
  Board check = FromFen("4k3/8/8/8/8/8/8/R3K2r w - - 0 1");
  EXPECT_FALSE(check.ToggleSide());
}
